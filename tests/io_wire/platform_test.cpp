#include <gtest/gtest.h>
#include <sched.h>
#include <sys/inotify.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <fstream>
#include <string>

#include "platform/clock.h"
#include "platform/environment.h"
#include "platform/serial.h"
#include "platform/thread.h"
#include "tests/fakes/pty.h"
#include "tests/open_files.h"

namespace {

int processors() {
  cpu_set_t set;
  CPU_ZERO(&set);
  sched_getaffinity(0, sizeof set, &set);
  return CPU_COUNT(&set);
}

}  // namespace

TEST(Threads, JoinOfAStuckThreadTimesOut) {
  static std::atomic<bool> release{false};
  const auto thread = thread_start(
      "a-name-that-is-too-long", THREAD_PRIORITY_TIME_CRITICAL,
      [](const Thread& self, void*) {
        while (!release || !thread_stop_requested(self)) clock_sleep_ms(1);
      },
      nullptr);
  ASSERT_NE(thread, nullptr);
  thread_request_stop(*thread);
  const std::int64_t start = clock_ms();
  EXPECT_FALSE(thread_join(*thread, 50));
  EXPECT_GE(clock_ms() - start, 50);
  EXPECT_LT(clock_ms() - start, 500);
  release = true;
  EXPECT_TRUE(thread_join(*thread, 2000));
  EXPECT_TRUE(thread_join(*thread, 0)) << "a second time";
}

TEST(Threads, JoinedThreadLeavesNoStackBehind) {
  const auto pages_in_use = [] {
    std::int64_t pages = 0;
    std::ifstream("/proc/self/statm") >> pages;
    return pages;
  };
  const auto run = [] {
    const auto thread =
        thread_start("short", THREAD_PRIORITY_NORMAL, [](const Thread&, void*) {}, nullptr);
    ASSERT_NE(thread, nullptr);
    EXPECT_TRUE(thread_join(*thread, 20000));
  };
  run();  // the first one leaves what later ones use
  const std::int64_t before = pages_in_use();
  for (int i = 0; i < 50; ++i) run();
  EXPECT_LT(pages_in_use(), before + 50'000'000 / getpagesize()) << "a stack has 2 MB or more";
}

TEST(Threads, PinnedCallerStartsUnpinnedThreads) {
  const int all = processors();
  thread_pin_to_one_processor();
  EXPECT_EQ(processors(), 1);
  static std::atomic<int> seen{0};
  const auto thread = thread_start(
      "free", THREAD_PRIORITY_NORMAL, [](const Thread&, void*) { seen = processors(); }, nullptr);
  ASSERT_NE(thread, nullptr);
  EXPECT_TRUE(thread_join(*thread, 2000));
  EXPECT_EQ(seen, all);
  thread_unpin();
  EXPECT_EQ(processors(), all);
}

TEST(Serial, OpensOnlyNamesOfConfiguredPorts) {
  Pty pty;
  environment.com[15] = pty.path();
  environment.com[14] = "/dev/null";
  const auto files = open_files();
  for (const char* name : {"COM0", "COM1", "COM15", "COM17", "COM", "COM16 ", "COM1x", "com16",
                           "LPT1", "COM99999999999"}) {
    int error = 0;
    EXPECT_EQ(serial_open(name, &error), nullptr) << name;
    EXPECT_NE(error, 0) << name;
  }
  EXPECT_EQ(open_files(), files);
  int error = 0;
  SerialPort* const port = serial_open("COM16", &error);
  ASSERT_NE(port, nullptr) << error;
  EXPECT_FALSE(serial_configure(port, 1200));
  EXPECT_TRUE(serial_configure(port, 9600));
  EXPECT_TRUE(serial_configure(port, 115200));
  serial_close(port);
  environment.com[15].clear();
  environment.com[14].clear();
}

class SerialLine : public testing::Test {
 protected:
  void SetUp() override {
    environment.com[0] = pty.path();
    int error = 0;
    port = serial_open("COM1", &error);
    ASSERT_NE(port, nullptr);
    ASSERT_TRUE(serial_configure(port, 115200));
  }
  void TearDown() override {
    serial_close(port);
    environment.com[0].clear();
  }
  Pty pty;
  SerialPort* port = nullptr;
};

TEST_F(SerialLine, BytesPassUnchanged) {
  std::string all;
  for (int i = 0; i < 256; ++i) all += static_cast<char>(i);
  EXPECT_EQ(serial_wait(port, 0), 0);
  char bytes[300];
  EXPECT_EQ(serial_read(port, bytes, sizeof bytes), 0) << "no byte yet";
  pty.send(all);
  EXPECT_EQ(serial_wait(port, 1000), 1);
  std::string got;
  while (got.size() < all.size() && serial_wait(port, 1000) == 1) {
    got.append(bytes, static_cast<std::size_t>(serial_read(port, bytes, sizeof bytes)));
  }
  EXPECT_EQ(got, all);
  EXPECT_EQ(serial_write(port, all.data(), all.size()), 256);
  std::string back;
  for (std::string more = "-"; back.size() < all.size() && !more.empty(); back += more) {
    more = pty.receive(1000);
  }
  EXPECT_EQ(back, all) << "no echo, no translation";
}

TEST_F(SerialLine, DrainLastsAsLongAsTheBytesTakeOnTheLine) {
  ASSERT_TRUE(serial_configure(port, 9600));
  const std::int64_t begun = clock_ms();
  serial_drain(port, 96);
  EXPECT_GE(clock_ms() - begun, 100);
}

TEST_F(SerialLine, WakeEndsTheCurrentOrTheNextWait) {
  serial_wake(port);
  EXPECT_EQ(serial_wait(port, -1), 0);
  const auto waker = thread_start(
      "waker", THREAD_PRIORITY_NORMAL,
      [](const Thread&, void* context) {
        clock_sleep_ms(50);
        serial_wake(static_cast<SerialPort*>(context));
      },
      port);
  EXPECT_EQ(serial_wait(port, -1), 0);
  EXPECT_TRUE(thread_join(*waker, 1000));
}

TEST_F(SerialLine, BlockedWriteTimesOut) {
  const std::string much(1 << 20, 'x');
  const std::int64_t start = clock_ms();
  EXPECT_EQ(serial_write(port, much.data(), much.size()), -1);
  EXPECT_GE(clock_ms() - start, 95);
  EXPECT_LT(clock_ms() - start, 400);
}

TEST_F(SerialLine, HungUpPortFailsWithoutSpinning) {
  pty.send("last");
  pty.unplug();
  char bytes[16];
  int wait = serial_wait(port, 1000);
  if (wait == 1) {
    EXPECT_EQ(serial_read(port, bytes, sizeof bytes), 4) << "the bytes before the hang-up";
  }
  const std::int64_t start = clock_ms();
  int rounds = 0;
  for (; clock_ms() - start < 500; ++rounds) {
    wait = serial_wait(port, -1);
    EXPECT_EQ(wait, -1);
    EXPECT_EQ(serial_read(port, bytes, sizeof bytes), -1);
    EXPECT_EQ(serial_write(port, "x", 1), -1);
  }
  EXPECT_LE(rounds, 7);
  serial_wake(port);
  EXPECT_EQ(serial_wait(port, -1), 0);
}

namespace {

// The error of serial_open in a program of an ordinary user, which is killed if it succeeds.
int error_of_a_killed_user() {
  const pid_t child = fork();
  if (child == 0) {
    constexpr uid_t NOBODY = 65534;
    if (geteuid() == 0 && (setgid(NOBODY) != 0 || setuid(NOBODY) != 0)) _exit(EXIT_FAILURE);
    int error = 0;
    if (serial_open("COM1", &error) == nullptr) _exit(error);
    kill(getpid(), SIGKILL);
  }
  int status = 0;
  waitpid(child, &status, 0);
  return WIFEXITED(status) ? WEXITSTATUS(status) : 0;
}

// True if a byte gets through in the time of a few attempts to reopen a lost port.
bool repaired(SerialPort* port) {
  const std::int64_t end = clock_ms() + 800;
  while (clock_ms() < end) {
    if (serial_write(port, "x", 1) == 1) return true;
    clock_sleep_ms(20);
  }
  return false;
}

}  // namespace

TEST(Serial, PortOfAKilledProgramCanBeReopened) {
  Pty pty;
  const int held = open(pty.path().c_str(), O_RDWR | O_NOCTTY | O_CLOEXEC);
  ASSERT_GE(held, 0);
  ASSERT_EQ(chmod(pty.path().c_str(), 0666), 0);
  environment.com[0] = pty.path();
  for (int start = 0; start < 3; ++start) EXPECT_EQ(error_of_a_killed_user(), 0) << start;
  int error = 0;
  SerialPort* const port = serial_open("COM1", &error);
  ASSERT_NE(port, nullptr);
  EXPECT_EQ(error_of_a_killed_user(), EWOULDBLOCK) << "in use";
  serial_close(port);
  close(held);
  environment.com[0].clear();
}

TEST(Serial, LostPortReopensOnlyADeviceOfItsKind) {
  const std::string device = testing::TempDir() + "lilyhop_port_" + std::to_string(getpid());
  const auto lead_to = [&device](const std::string& path) {
    unlink(device.c_str());
    ASSERT_EQ(symlink(path.c_str(), device.c_str()), 0);
  };
  Pty first;
  lead_to(first.path());
  environment.com[0] = device;
  int error = 0;
  SerialPort* const port = serial_open("COM1", &error);
  ASSERT_NE(port, nullptr);
  lead_to("/dev/full");  // of another driver
  const int opened = inotify_init1(IN_NONBLOCK | IN_CLOEXEC);
  ASSERT_GE(inotify_add_watch(opened, "/dev/full", IN_OPEN), 0);
  first.unplug();
  EXPECT_FALSE(repaired(port));
  inotify_event event{};
  EXPECT_EQ(read(opened, &event, sizeof event), -1) << "opening a stranger raises its lines";
  close(opened);
  lead_to("/dev/ptmx");  // a terminal, also of another driver
  EXPECT_FALSE(repaired(port));
  const Pty second;
  lead_to(second.path());
  EXPECT_TRUE(repaired(port));
  EXPECT_EQ(second.receive(1000).substr(0, 1), "x");
  serial_close(port);
  unlink(device.c_str());
  environment.com[0].clear();
}
