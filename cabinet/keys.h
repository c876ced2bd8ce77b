// Keys of the game's window: it sends a line "press NAME" or "release NAME" to a socket.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

struct Cabinet;

struct KeyClient {
  int socket = -1;
  std::string pending;    // a line that isn't whole yet
  std::vector<int> held;  // switches that its keys hold
};

struct Keys {
  int listener = -1;
  std::string folder, path;  // the socket, alone in its folder
  std::vector<KeyClient> clients;
};

// Makes the socket. Returns an error text, empty if all went well.
std::string keys_open(Keys& keys);
void keys_close(Keys& keys);

// Takes new clients and what they sent. Doesn't wait. A game that goes lets go of its keys.
void keys_take(Cabinet& cabinet, std::int64_t now_ms);

// One line of a client, "press NAME" or "release NAME". Returns an error text, empty if all went
// well.
std::string keys_line(Cabinet& cabinet, KeyClient& client, const std::string& line,
                      std::int64_t now_ms);

// Lets go of all that a client holds.
void keys_let_go(Cabinet& cabinet, KeyClient& client, std::int64_t now_ms);

// The keys and what they do, for the help.
std::string keys_help();
