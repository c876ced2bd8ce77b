// USB transfers over a socket, whose other end is the test's.
#include <gtest/gtest.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include "platform/environment.h"
#include "platform/usb_device.h"
#include "tests/open_files.h"
#include "tests/temp_folder.h"

namespace {

using namespace std::string_literals;

class UsbSocket : public testing::Test {
 protected:
  // The driver keeps its first path, so all tests use the same.
  void SetUp() override {
    static TempFolder& folder = *new TempFolder;
    path = folder.file("usb");
    environment.usbio = USBIO_SOCKET;
    environment.usbio_socket = path;
  }
  void TearDown() override {
    stop();
    environment.usbio = USBIO_NONE;
  }

  void listen_at_path() {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    std::strncpy(address.sun_path, path.c_str(), sizeof address.sun_path - 1);
    listener = socket(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0);
    ASSERT_EQ(bind(listener, reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
    ASSERT_EQ(listen(listener, 4), 0);
  }
  void stop() {
    for (int* fd : {&peer, &listener}) {
      if (*fd >= 0) close(*fd);
      *fd = -1;
    }
    unlink(path.c_str());
  }
  std::unique_ptr<UsbFile> open_file() {
    auto file = usb_driver().open(path);
    if (file != nullptr) peer = accept(listener, nullptr, nullptr);
    return file;
  }
  void say(const std::string& packet) const {
    ASSERT_EQ(send(peer, packet.data(), packet.size(), MSG_NOSIGNAL),
              static_cast<ssize_t>(packet.size()));
  }
  [[nodiscard]] std::string hear() const {
    char bytes[512];
    pollfd watched{peer, POLLIN, 0};
    if (poll(&watched, 1, 1000) <= 0) return "nothing";
    const ssize_t count = recv(peer, bytes, sizeof bytes, 0);
    return {bytes, static_cast<std::size_t>(std::max<ssize_t>(count, 0))};
  }

  std::string path;
  int listener = -1, peer = -1;
};

TEST_F(UsbSocket, DeviceIsListedWhileItsSocketListens) {
  EXPECT_TRUE(usb_driver().list({})->paths.empty());
  EXPECT_EQ(usb_driver().open(path), nullptr);
  listen_at_path();
  const auto before = open_files();
  EXPECT_EQ(usb_driver().list({})->paths, std::vector<std::string>{path});
  EXPECT_EQ(open_files(), before);
  EXPECT_NE(usb_driver().open(R"(\\.\USBIO_Device0)"), nullptr);
  for (const char* none :
       {R"(\\.\USBIO_Device1)", R"(\\.\USBIO_Device)", R"(\\.\USBIO_Device0x)"}) {
    EXPECT_EQ(usb_driver().open(none), nullptr) << none;
  }
  stop();
  EXPECT_TRUE(usb_driver().list({})->paths.empty());
}

TEST_F(UsbSocket, TransfersArePacketsEachWay) {
  listen_at_path();
  const auto file = open_file();
  ASSERT_NE(file, nullptr);
  std::uint8_t data[4] = {0x1B, 0x20, 0x33, 0x4C};
  UsbOverlapped transfer{data, 4, 0, 0};
  EXPECT_EQ(file->start_write(transfer), USB_PENDING);
  EXPECT_EQ(hear(), "W\x1B\x20\x33\x4C"s);
  EXPECT_FALSE(file->has_ended(transfer, 0)) << "not before the device has answered";
  say("W\0\0\0\0"s);
  EXPECT_TRUE(file->has_ended(transfer, 0));
  EXPECT_EQ(transfer.status, 0U);
  EXPECT_EQ(transfer.transferred, 4U);

  EXPECT_EQ(file->start_read(transfer), USB_PENDING);
  EXPECT_EQ(hear(), "R\x04\0\0\0"s);
  EXPECT_FALSE(file->has_ended(transfer, 0));
  say("R\0\0\0\0\x1C\x20"s);
  EXPECT_TRUE(file->has_ended(transfer, 0));
  EXPECT_EQ(transfer.transferred, 2U);
  EXPECT_EQ(data[0], 0x1C);

  file->start_read(transfer);
  say("R\0\0\0\0more than asked"s);
  EXPECT_TRUE(file->has_ended(transfer, 0));
  EXPECT_EQ(transfer.status, USB_ERROR_NEEDS_RESET);
  file->start_read(transfer);
  say("R"s);  // too short for a packet
  EXPECT_FALSE(file->has_ended(transfer, 0));
  close(peer);
  peer = -1;
  EXPECT_TRUE(file->has_ended(transfer, 0));
  EXPECT_EQ(transfer.status, USB_ERROR_GONE);
  EXPECT_EQ(file->start_write(transfer), USB_ERROR_GONE);
}

TEST_F(UsbSocket, RequestIsAnsweredOrTimesOut) {
  listen_at_path();
  const auto file = open_file();
  ASSERT_NE(file, nullptr);
  say("C\0\0\0\0\x41\x01"s);  // ahead, as only a tenth of a second is left for it
  std::uint8_t out[12] = {};
  std::size_t returned = 0;
  EXPECT_EQ(file->control(USB_GET_DRIVER_INFO, nullptr, 0, out, sizeof out, returned), USB_OK);
  EXPECT_EQ(hear(), "C\x6C\x20\x94\x80\x0C\0\0\0"s);
  EXPECT_EQ(returned, 2U);
  EXPECT_EQ(out[0], 0x41);

  EXPECT_EQ(file->control(USB_RESET_DEVICE, nullptr, 0, nullptr, 0, returned), USB_ERROR_TIMEOUT);
}

}  // namespace
