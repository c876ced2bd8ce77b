#include "tests/platform/system_bus.h"

#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <systemd/sd-bus.h>
#include <unistd.h>

#include <cstdint>
#include <cstdlib>
#include <cstring>

namespace {

constexpr int LOOK_MS = 20;
constexpr std::uint64_t LOOK_US = 20'000;

int on_message(sd_bus_message* message, void* context, sd_bus_error* /*error*/) {
  auto& bus = *static_cast<SystemBus*>(context);
  if (sd_bus_message_is_method_call(message, "org.freedesktop.DBus", "Hello") > 0) {
    return sd_bus_reply_method_return(message, "s", ":1.1");
  }
  if (sd_bus_message_is_method_call(message, "org.freedesktop.login1.Manager", "Reboot") <= 0) {
    return 0;
  }
  int flag = 1;
  sd_bus_message_read(message, "b", &flag);
  bus.interactive = flag != 0;
  ++bus.asked;
  if (bus.error.empty()) return sd_bus_reply_method_return(message, "");
  return sd_bus_reply_method_errorf(message, bus.error.c_str(), "told to say so");
}

}  // namespace

SystemBus::SystemBus() {
  const std::string path = folder.file("bus");
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  std::strncpy(address.sun_path, path.c_str(), sizeof address.sun_path - 1);
  listener = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
  if (bind(listener, reinterpret_cast<sockaddr*>(&address), sizeof address) != 0) std::abort();
  listen(listener, 4);
  setenv("DBUS_SYSTEM_BUS_ADDRESS", ("unix:path=" + path).c_str(), 1);
  server = std::thread([this] { serve(); });
}

SystemBus::~SystemBus() {
  ends = true;
  server.join();
  close(listener);
}

void SystemBus::serve() {
  while (!ends) {
    pollfd waiting{listener, POLLIN, 0};
    if (poll(&waiting, 1, LOOK_MS) <= 0) continue;
    const int line = accept4(listener, nullptr, nullptr, SOCK_CLOEXEC | SOCK_NONBLOCK);
    sd_bus* bus = nullptr;
    sd_bus_new(&bus);
    sd_id128_t id{};
    sd_id128_randomize(&id);
    sd_bus_set_fd(bus, line, line);
    sd_bus_set_server(bus, 1, id);
    sd_bus_add_filter(bus, nullptr, on_message, this);
    sd_bus_start(bus);
    int left = 0;
    while (!ends && left >= 0) {
      left = sd_bus_process(bus, nullptr);
      if (left == 0) sd_bus_wait(bus, LOOK_US);
    }
    sd_bus_flush_close_unref(bus);
  }
}
