// Keys of the game's window: the game sends lines "press NAME" and "release NAME" to a socket.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

struct Cabinet;

struct KeyClient {
  int socket = -1;
  std::string pending;    // an incomplete line
  std::vector<int> held;  // switches that its keys hold
};

struct Keys {
  int listener = -1;
  std::string folder, path;  // the socket, alone in its folder
  std::vector<KeyClient> clients;
};

// Makes the socket. Returns an error text, empty on success.
std::string keys_open(Keys& keys);
void keys_close(Keys& keys);

// Accepts new clients and reads their lines. Doesn't wait. When a client goes, its keys are
// released.
void keys_take(Cabinet& cabinet, std::int64_t now_ms);

// One line of a client, "press NAME" or "release NAME". Returns an error text, empty on success.
std::string keys_line(Cabinet& cabinet, KeyClient& client, const std::string& line,
                      std::int64_t now_ms);

// Releases everything that a client holds.
void keys_let_go(Cabinet& cabinet, KeyClient& client, std::int64_t now_ms);

// The list of keys for the help.
std::string keys_help();
