// An ordered reboot: who is asked for it, what a refusal does, and the program's own new start.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <sched.h>
#include <sys/reboot.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <systemd/sd-bus.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <thread>

#include "platform/clock.h"
#include "platform/environment.h"
#include "platform/files.h"
#include "platform/headless/clock_control.h"
#include "platform/power.h"
#include "platform/thread.h"
#include "tests/temp_folder.h"

namespace {

std::atomic<int> reboots = 0;  // asked of the kernel
std::atomic<int> reboot_errno = 0;
std::atomic<std::int64_t> rebooted_at_ms = 0;

}  // namespace

// In place of the kernel's.
extern "C" int __wrap_reboot(int how) {
  rebooted_at_ms = clock_ms();
  if (how == RB_AUTOBOOT) ++reboots;
  errno = reboot_errno;
  return reboot_errno == 0 ? 0 : -1;
}

namespace {

// A system bus of the test's own, with a login manager on it that answers as it is told.
class SystemBus {
 public:
  SystemBus() {  // DBUS_SYSTEM_BUS_ADDRESS leads to it
    const std::string path = folder.file("bus");
    sockaddr_un address{AF_UNIX, {}};
    path.copy(address.sun_path, sizeof address.sun_path - 1);
    if (bind(listener, reinterpret_cast<sockaddr*>(&address), sizeof address) != 0) std::abort();
    listen(listener, 4);
    setenv("DBUS_SYSTEM_BUS_ADDRESS", ("unix:path=" + path).c_str(), 1);
    server = std::thread([this] { serve(); });
  }
  ~SystemBus() {
    ends = true;
    server.join();
    close(listener);
  }
  SystemBus(const SystemBus&) = delete;
  SystemBus& operator=(const SystemBus&) = delete;

  std::string error;           // the answer to Reboot, "" for yes; set it before the question
  std::atomic<int> asked = 0;  // calls of Reboot
  std::atomic<bool> interactive = false;  // what the last one asked for

 private:
  static int on_message(sd_bus_message* message, void* context, sd_bus_error* /*error*/) {
    auto& bus = *static_cast<SystemBus*>(context);
    if (sd_bus_message_is_method_call(message, "org.freedesktop.DBus", "Hello") > 0) {
      return sd_bus_reply_method_return(message, "s", ":1.1");
    }
    if (sd_bus_message_is_method_call(message, "org.freedesktop.login1.Manager", "Reboot") <= 0 ||
        std::string(sd_bus_message_get_destination(message)) != "org.freedesktop.login1" ||
        std::string(sd_bus_message_get_path(message)) != "/org/freedesktop/login1") {
      return 0;
    }
    int flag = 1;
    sd_bus_message_read(message, "b", &flag);
    bus.interactive = flag != 0;
    ++bus.asked;
    if (bus.error.empty()) return sd_bus_reply_method_return(message, "");
    return sd_bus_reply_method_errorf(message, bus.error.c_str(), "told to say so");
  }

  void serve() {
    while (!ends) {
      pollfd waiting{listener, POLLIN, 0};
      if (poll(&waiting, 1, 20) <= 0) continue;
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
        if (left == 0) sd_bus_wait(bus, 20'000);
      }
      sd_bus_flush_close_unref(bus);
    }
  }

  TempFolder folder;
  const int listener = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
  std::atomic<bool> ends = false;
  std::thread server;
};

class Power : public testing::Test {
 protected:
  Power() {
    environment = {};
    environment.power_reboot = true;
    headless_clock_reset();
    reboots = 0;
    reboot_errno = EPERM;
    testing::internal::CaptureStderr();
  }
  ~Power() override { unsetenv("DBUS_SYSTEM_BUS_ADDRESS"); }

  // Orders a reboot that must be refused. Returns what was said.
  static std::string refused() {
    power_reboot("it is time");
    bool told = false;
    for (int i = 0; i < 3000 && !(told = power_reboot_refused()); ++i) {
      std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    EXPECT_TRUE(told);
    EXPECT_FALSE(power_reboot_refused()) << "told once";
    return testing::internal::GetCapturedStderr();
  }
};

TEST_F(Power, RefusalOfTheLoginManagerIsTold) {
  SystemBus bus;
  bus.error = "org.freedesktop.DBus.Error.AccessDenied";
  bus.interactive = true;
  EXPECT_EQ(refused(),
            "Reboot ordered: it is time.\n"
            "The reboot was refused: org.freedesktop.DBus.Error.AccessDenied: told to say so. Play "
            "goes on; it is tried again later.\n");
  EXPECT_EQ(bus.asked, 1);
  EXPECT_FALSE(bus.interactive);
  EXPECT_EQ(reboots, 0) << "a No is a No";
  testing::internal::CaptureStderr();
  refused();
  EXPECT_EQ(bus.asked, 2);
}

TEST_F(Power, KernelIsAskedIfThereIsNoLoginManager) {
  int asked = 0;
  for (const std::string name :
       {"org.freedesktop.DBus.Error.ServiceUnknown", "org.freedesktop.DBus.Error.NameHasNoOwner",
        "org.freedesktop.DBus.Error.NoReply", "org.freedesktop.DBus.Error.Timeout",
        "org.freedesktop.DBus.Error.Disconnected", "org.freedesktop.DBus.Error.Spawn.ChildExited",
        "System.Error.ETIMEDOUT", "System.Error.ECONNRESET", "System.Error.ENOTCONN"}) {
    SystemBus bus;
    bus.error = name;
    const std::string said = refused();
    EXPECT_EQ(reboots, ++asked) << name;
    const std::string reason = name + ": told to say so";
    EXPECT_EQ(said, "Reboot ordered: it is time.\nReboot without ending the services: " + reason +
                        ".\nThe reboot was refused: " + reason +
                        "; the kernel: Operation not permitted. Play goes on; it is tried again "
                        "later.\n");
    testing::internal::CaptureStderr();
  }
  const std::string said = refused();
  EXPECT_EQ(reboots, ++asked);
  EXPECT_NE(said.find("no system bus"), std::string::npos) << said;
}

// It said yes, and the machine still runs: two minutes are well within the watchdog's food.
TEST_F(Power, KernelIsAskedIfTheMachineHangsOnItsWayDown) {
  SystemBus bus;
  refused();
  EXPECT_EQ(bus.asked, 1);
  EXPECT_EQ(reboots, 1);
  EXPECT_GE(rebooted_at_ms, 120'000);
  EXPECT_LT(rebooted_at_ms, 121'000);
}

constexpr int LEFT_OPEN = STDERR_FILENO + 1;

// Run by the test below, as the program that has started anew.
TEST(NewStart, DISABLED_TellsWhatItInherited) {
  cpu_set_t processors;
  CPU_ZERO(&processors);
  sched_getaffinity(0, sizeof processors, &processors);
  std::fprintf(stderr, "processors %d, file %s\n", CPU_COUNT(&processors),
               fcntl(LEFT_OPEN, F_GETFD) < 0 ? "closed" : "open");
}

TEST_F(Power, OffStartsTheProgramAnew) {
  testing::internal::GetCapturedStderr();
  environment.power_reboot = false;
  cpu_set_t processors;
  CPU_ZERO(&processors);
  sched_getaffinity(0, sizeof processors, &processors);
  const std::string inherited = "LILYHOP_POWER is off(.|\n)*processors " +
                                std::to_string(CPU_COUNT(&processors)) + ", file closed";
  const auto start_anew = [] {
    power_reboot("it is time");
    if (!power_restart_ordered()) std::_Exit(1);
    thread_pin_to_one_processor();
    dup2(STDERR_FILENO, LEFT_OPEN);
    std::string words[] = {"test", "--gtest_filter=NewStart.*", "--gtest_also_run_disabled_tests"};
    char* argv[] = {words[0].data(), words[1].data(), words[2].data(), nullptr};
    power_restart(argv);
    std::_Exit(2);
  };
  EXPECT_EXIT(start_anew(), testing::ExitedWithCode(0), inherited);
  EXPECT_EQ(reboots, 0);
}

}  // namespace
