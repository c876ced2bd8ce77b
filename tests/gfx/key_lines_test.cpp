#include "platform/key_lines.h"

#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <string>

#include "platform/environment.h"
#include "tests/temp_folder.h"

namespace {

struct KeyLines : testing::Test {
  KeyLines() { environment.keys_socket = folder.file("keys"); }
  ~KeyLines() override { environment.keys_socket.clear(); }

  int listen_at_path() const {
    unlink(environment.keys_socket.c_str());
    const int server = socket(AF_UNIX, SOCK_STREAM, 0);
    sockaddr_un address{AF_UNIX, {}};
    environment.keys_socket.copy(address.sun_path, sizeof address.sun_path - 1);
    EXPECT_EQ(bind(server, reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
    EXPECT_EQ(listen(server, 1), 0);
    return server;
  }
  // What has come from a key's sender, which is let go with its listener.
  static std::string received(int server) {
    const int client = accept(server, nullptr, nullptr);
    char text[256] = {};
    recv(client, text, sizeof text - 1, MSG_DONTWAIT);
    close(client);
    close(server);
    return text;
  }
  TempFolder folder;
};

TEST_F(KeyLines, AreSentWheneverThereIsAListener) {
  key_line_send(true, "A");  // no listener
  const int server = listen_at_path();
  key_line_send(true, "Left Shift");
  key_line_send(false, "Left Shift");
  EXPECT_EQ(received(server), "press Left Shift\nrelease Left Shift\n");
  for (int i = 0; i < 3; ++i) key_line_send(true, "B");  // the listener has gone
  const int next = listen_at_path();
  key_line_send(true, "C");
  EXPECT_EQ(received(next), "press C\n");
}

TEST_F(KeyLines, ListenerThatDoesNotReadBlocksNothing) {
  const int server = listen_at_path();
  for (int i = 0; i < 100000; ++i) key_line_send(true, "Keypad Enter");
  close(server);
  environment.keys_socket = std::string(300, 'x');
  key_line_send(true, "A");
}

}  // namespace
