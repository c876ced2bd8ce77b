#include "platform/key_lines.h"

#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <cstddef>
#include <string>

#include "platform/environment.h"
#include "tests/gfx/pictures.h"

namespace {

struct KeyLines : testing::Test {
  void SetUp() override { environment.keys_socket = folder.path() + "/keys"; }
  void TearDown() override { environment.keys_socket.clear(); }

  int listen_at_path() const {
    unlink(environment.keys_socket.c_str());
    const int server = socket(AF_UNIX, SOCK_STREAM, 0);
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    environment.keys_socket.copy(address.sun_path, sizeof address.sun_path - 1);
    EXPECT_EQ(bind(server, reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
    EXPECT_EQ(listen(server, 1), 0);
    return server;
  }
  static std::string received(int client) {
    char text[256];
    const ssize_t size = recv(client, text, sizeof text, MSG_DONTWAIT);
    return size > 0 ? std::string(text, static_cast<std::size_t>(size)) : "";
  }
  PictureFolder folder;
};

TEST_F(KeyLines, AreSentWheneverThereIsAListener) {
  key_line_send(true, "A");  // no listener
  const int server = listen_at_path();
  key_line_send(true, "Left Shift");
  key_line_send(false, "Left Shift");
  const int client = accept(server, nullptr, nullptr);
  EXPECT_EQ(received(client), "press Left Shift\nrelease Left Shift\n");
  close(client);
  close(server);
  for (int i = 0; i < 3; ++i) key_line_send(true, "B");  // the listener has gone
  const int next = listen_at_path();
  key_line_send(true, "C");
  const int again = accept(next, nullptr, nullptr);
  EXPECT_EQ(received(again), "press C\n");
  close(again);
  close(next);
}

TEST_F(KeyLines, ListenerThatDoesNotReadBlocksNothing) {
  const int server = listen_at_path();
  for (int i = 0; i < 100000; ++i) key_line_send(true, "Keypad Enter");
  close(server);
  environment.keys_socket = std::string(300, 'x');
  key_line_send(true, "A");
}

}  // namespace
