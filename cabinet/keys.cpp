#include "cabinet/keys.h"

#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <utility>

#include "cabinet/cabinet.h"
#include "cabinet/commands.h"
#include "cabinet/unix_listener.h"

namespace {

struct KeyRow {
  const char* names;    // SDL names, separated by spaces; the space in "Keypad +" is written "_"
  int input;            // switch that the key holds, or -1
  const char* command;  // what the key does without a switch
  const char* help;
};

constexpr KeyRow KEYS[] = {
    {"5", INPUT_COIN_LEFT, "", "coin left"},
    {"6", INPUT_COIN_RIGHT, "", "coin right"},
    {"1", INPUT_START_LEFT, "", "start left"},
    {"2", INPUT_START_RIGHT, "", "start right"},
    {"9", INPUT_SERVICE, "", "service"},
    {"F2 T", INPUT_TEST, "", "test, held as long as the key"},
    {"= + Keypad_+", INPUT_VOLUME_UP, "", "volume up"},
    {"- Keypad_-", INPUT_VOLUME_DOWN, "", "volume down"},
    {"3", -1, "swipe left", "swipe a card left"},
    {"4", -1, "swipe right", "swipe a card right"},
    {"J", -1, "jam left toggle", "jam the left dispenser, or clear it"},
    {"K", -1, "jam right toggle", "jam the right dispenser, or clear it"},
    {"E", -1, "empty left", "take the paper out on the left"},
    {"D", -1, "empty right", "take the paper out on the right"},
    {"R", -1, "refill left", "put paper in on the left"},
    {"F", -1, "refill right", "put paper in on the right"},
    {"U", -1, "unplug toggle", "pull the board's cable, or plug it in"},
    {"B", -1, "restart", "restart the board"},
};

const KeyRow* find_key(std::string name) {
  std::replace(name.begin(), name.end(), ' ', '_');
  for (const KeyRow& row : KEYS) {
    if (name.empty()) break;
    const std::string names = std::string(" ") + row.names + " ";
    if (names.find(" " + name + " ") != std::string::npos) return &row;
  }
  return nullptr;
}

// False once the client has disconnected.
bool take_client(Cabinet& cabinet, KeyClient& client, std::int64_t now_ms) {
  char buffer[512];
  const ssize_t n = recv(client.socket, buffer, sizeof buffer, MSG_DONTWAIT);
  if (n < 0) return errno == EAGAIN || errno == EINTR;
  client.pending.append(buffer, static_cast<std::size_t>(n));
  for (std::size_t end; (end = client.pending.find('\n')) != std::string::npos;) {
    const std::string line = client.pending.substr(0, end);
    client.pending.erase(0, end + 1);
    keys_line(cabinet, client, line, now_ms);
  }
  if (n > 0) return true;
  keys_let_go(cabinet, client, now_ms);
  close(client.socket);
  return false;
}

}  // namespace

std::string keys_open(Keys& keys) {
  const char* runtime = std::getenv("XDG_RUNTIME_DIR");
  std::string folder = runtime != nullptr && strlen(runtime) < 60 ? runtime : "/tmp";
  folder += "/lilyhop-keys-XXXXXX";
  if (mkdtemp(folder.data()) == nullptr) return folder + ": " + std::strerror(errno);
  keys.folder = folder;
  keys.path = folder + "/keys";
  return unix_listen(keys.path, SOCK_STREAM, keys.listener);
}

void keys_close(Keys& keys) {
  for (const KeyClient& client : keys.clients) close(client.socket);
  keys.clients.clear();
  if (keys.listener >= 0) close(keys.listener);
  keys.listener = -1;
  if (keys.folder.empty()) return;
  unlink(keys.path.c_str());
  rmdir(keys.folder.c_str());
  keys.folder.clear();
}

void keys_take(Cabinet& cabinet, std::int64_t now_ms) {
  Keys& keys = cabinet.keys;
  for (;;) {
    const int client = accept4(keys.listener, nullptr, nullptr, SOCK_NONBLOCK | SOCK_CLOEXEC);
    if (client < 0) break;
    keys.clients.push_back({client, {}, {}});
  }
  std::vector<KeyClient> stay;
  for (KeyClient& client : keys.clients) {
    if (take_client(cabinet, client, now_ms)) stay.push_back(std::move(client));
  }
  keys.clients = std::move(stay);
}

std::string keys_line(Cabinet& cabinet, KeyClient& client, const std::string& line,
                      std::int64_t now_ms) {
  const bool press = line.compare(0, 6, "press ") == 0;
  if (!press && line.compare(0, 8, "release ") != 0) {
    return "a key is \"press NAME\" or \"release NAME\"";
  }
  const KeyRow* row = find_key(line.substr(press ? 6 : 8));
  if (row == nullptr) return "no key is called \"" + line + "\"";
  if (row->input < 0) return press ? commands_do(cabinet, row->command, now_ms) : "";
  client.held.erase(std::remove(client.held.begin(), client.held.end(), row->input),
                    client.held.end());
  if (press) client.held.push_back(row->input);
  board_switch(cabinet.board, row->input, press, now_ms);
  return {};
}

void keys_let_go(Cabinet& cabinet, KeyClient& client, std::int64_t now_ms) {
  for (const int input : client.held) board_switch(cabinet.board, input, false, now_ms);
  client.held.clear();
}

std::string keys_help() {
  std::string text;
  for (const KeyRow& row : KEYS) {
    std::string names = row.names;
    std::replace(names.begin(), names.end(), ' ', '/');
    std::replace(names.begin(), names.end(), '_', ' ');
    text += help_line(names, row.help);
  }
  return text;
}
