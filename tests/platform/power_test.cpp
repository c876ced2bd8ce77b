// An ordered reboot: who is asked for it, what a refusal does, and the program's own new start.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sched.h>
#include <sys/reboot.h>
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
#include "tests/platform/system_bus.h"

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

template <typename Condition>
bool soon(Condition condition) {
  for (int i = 0; i < 3000; ++i) {
    if (condition()) return true;
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
  }
  return false;
}

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
    EXPECT_TRUE(soon(power_reboot_refused));
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
    EXPECT_NE(said.find("Reboot without ending the services: " + name), std::string::npos) << said;
    EXPECT_NE(said.find("Operation not permitted"), std::string::npos) << said;
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

constexpr int LEFT_OPEN = 77;

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
