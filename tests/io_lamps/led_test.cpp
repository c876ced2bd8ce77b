// The LED board at the other end of a pseudo-terminal: search, value, blinking, reconnection.
#include "io/led_board.h"

#include <gtest/gtest.h>
#include <sched.h>
#include <sys/ioctl.h>

#include <atomic>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <thread>
#include <utility>

#include "books/prefs.h"
#include "frame/game_clock.h"
#include "frame/game_mode.h"
#include "io/lamps.h"
#include "io/led_value.h"
#include "io/log.h"
#include "platform/clock.h"
#include "platform/environment.h"
#include "platform/serial.h"
#include "platform/usb_reset.h"
#include "playfield/frog_queue.h"
#include "playfield/playfield.h"
#include "tests/fakes/jamma_fake.h"
#include "tests/fakes/pty.h"
#include "tests/io_lamps/serial_lines.h"
#include "tests/plain_sheets.h"
#include "tests/reset_rules.h"
#include "tests/temp_folder.h"

namespace {

// Answers the type command and keeps the last value and blink.
class Board {
 public:
  explicit Board(std::string answer = "LED v1\r\n") : answer_(std::move(answer)) {
    thread_ = std::thread([this] { run(); });
  }
  ~Board() {
    stop_ = true;
    thread_.join();
  }
  [[nodiscard]] const std::string& path() const { return pty_.path(); }

  std::atomic<int> value{-1}, blink{-1}, types{0}, odd{0};
  std::atomic<bool> deaf{false};

 private:
  void run() {
    // Hardware doesn't wait for a processor; on a busy machine a plain thread misses its 10 ms.
    sched_param lowest{};
    lowest.sched_priority = sched_get_priority_min(SCHED_RR);
    sched_setscheduler(0, SCHED_RR, &lowest);
    std::string bytes;
    while (!stop_) {
      bytes += pty_.receive(2);
      if (deaf) bytes.clear();
      for (; bytes.size() >= 6; bytes.erase(0, 6)) take(bytes);
    }
  }
  void take(const std::string& bytes) {
    const auto at = [&](int i) { return static_cast<unsigned char>(bytes[i]); };
    const int operand = at(2) << 8 | at(3);
    if (at(0) != 0x55 || at(4) != 0xAA) ++odd;
    if (at(1) == 0x55) value = operand;
    if (at(1) == 0x59) blink = operand;
    if (at(1) != 0x57) return;
    if (operand != 2) ++odd;
    ++types;
    pty_.send(answer_);
  }

  Pty pty_;
  std::string answer_;
  std::atomic<bool> stop_{false};
  std::thread thread_;
};

bool soon(const std::function<bool()>& what, int within_ms = 20000) {
  const std::int64_t end = clock_ms() + within_ms;
  while (!what() && clock_ms() < end) clock_sleep_ms(1);
  return what();
}

// The type commands so far, once no more come.
int settled(const Board& board) {
  for (int i = 0; i < 100; ++i) {
    const int before = board.types;
    clock_sleep_ms(60);
    if (board.types == before) return before;
  }
  ADD_FAILURE() << "type commands without end";
  return -1;
}

// The board's thread may miss the ten milliseconds for its answer on a busy machine.
void search(const std::function<void()>& before = [] {}) {
  for (int tries = 0; tries < 5 && !led_active(); ++tries) {
    led_close();
    before();
    led_open();
  }
}

// The thread's first check comes at once, and the next in half a minute.
void search_and_start(const Board& board) {
  search();
  const int searched = board.types;
  led_start();
  EXPECT_TRUE(soon([&] { return board.types > searched; }));
}

// The searches' messages, errors with a mark and handles without their address.
class Log {
 public:
  Log() {
    clear();
    io_log.callback = [](int kind, const char* line) {
      const bool handle = std::string_view(line).starts_with("LED handle is 0x");
      const std::lock_guard guard(mutex);
      heard += kind == LOG_ERROR ? "! " : "";
      heard +=
          handle && std::string_view(line) != "LED handle is 0x0" ? "LED handle is good" : line;
      heard += '\n';
    };
  }
  ~Log() {
    led_stop();
    io_log.callback = nullptr;
  }
  static void clear() {
    const std::lock_guard guard(mutex);
    heard.clear();
  }
  static std::string text() {
    const std::lock_guard guard(mutex);
    return heard;
  }

 private:
  static inline std::mutex mutex;
  static inline std::string heard;
};

class Led : public testing::Test {
 protected:
  Led() {
    jamma_fake_reset();
    jamma_fake.port = 15;  // the I/O board was found, and is out of the way
    plain_sheets();
    for (std::string& port : environment.com) port.clear();
    reset_rules(1000);
    lamps_reset();
    prefs[PREF_BONUS_VALUE].int_value = 25;
  }
  ~Led() override {
    led_close();
    for (std::string& port : environment.com) port.clear();
  }
};

// Any answer is the board's; 32 bytes of it are read. The lines of LED boards are held low.
TEST_F(Led, SearchSkipsTakenSilentAndMissingPorts) {
  constexpr int BOTH = TIOCM_DTR | TIOCM_RTS;
  jamma_fake.port = 0;
  Board io_board;
  Pty silent, board_of_another;
  Board led("0123456789abcdefghijklmnopqrstuvwxyz\r\n");
  environment.com[0] = io_board.path();
  environment.com[1] = board_of_another.path();
  environment.com[2] = silent.path();
  environment.com[3] = "/dev/null";
  environment.com[5] = led.path();
  int error = 0;
  SerialPort* const taken = serial_open("COM2", &error);
  ASSERT_NE(taken, nullptr);
  ASSERT_TRUE(serial_configure(taken, 115200));
  EXPECT_EQ(serial_lines_seen.raised, BOTH);
  serial_lines_seen.raised = serial_lines_seen.lowered = 0;
  Log log;
  search([&] { log.clear(); });
  EXPECT_EQ(log.text(),
            "Attempting to open LED port COM1\n! Open LED port failed with code 0x10\n"
            "LED handle is 0x0\n"
            "Attempting to open LED port COM2\n! Open LED port failed with code 0xb\n"
            "LED handle is 0x0\n"
            "Attempting to open LED port COM3\nLED handle is good\nAttempting to set LED type 2\n"
            "LED board returned \n! Bad or no response from LED board\nClosing LED handle\n"
            "Attempting to open LED port COM4\n! Open LED port failed with code 0x19\n"
            "LED handle is 0x0\n"
            "Attempting to open LED port COM5\n! Open LED port failed with code 0x13\n"
            "LED handle is 0x0\n"
            "Attempting to open LED port COM6\nLED handle is good\nAttempting to set LED type 2\n"
            "LED board returned 0123456789abcdefghijklmnopqrstuv\nLED is ACTIVE\n");
  EXPECT_TRUE(led_active());
  EXPECT_EQ(serial_lines_seen.lowered, BOTH);
  EXPECT_EQ(serial_lines_seen.raised, 0);
  EXPECT_EQ(io_board.types, 0) << "also while its port is closed";
  EXPECT_EQ(board_of_another.receive(50), "");
  log.clear();
  led_close();
  led_close();  // no port is open any more
  EXPECT_EQ(log.text(),
            "Closing LED handle\nLED is INACTIVE\nClosing LED handle\nLED is INACTIVE\n");
  serial_close(taken);
}

TEST_F(Led, SearchLeavesAPortThatSpeaksUnaskedWhileNoIoBoardIsKnown) {
  jamma_fake.port = NO_PORT;
  Board led_board("LED\r\n");
  Pty late_io_board;
  std::atomic<bool> stop{false};
  std::thread voice([&] {
    for (; !stop; clock_sleep_ms(200)) late_io_board.send("*");  // a byte is enough
  });
  environment.com[0] = late_io_board.path();
  environment.com[1] = led_board.path();
  search();
  EXPECT_TRUE(led_active());
  int error = 0;
  SerialPort* const freed = serial_open("COM1", &error);
  EXPECT_NE(freed, nullptr);
  if (freed != nullptr) serial_close(freed);
  stop = true;
  voice.join();
}

TEST_F(Led, AnswerTimeoutStartsWhenBytesAreSent) {
  static Pty* slow = nullptr;
  Pty pty;
  slow = &pty;
  environment.com[0] = pty.path();
  serial_lines_seen.left = [] { slow->send("LED\r\n"); };
  led_open();
  serial_lines_seen.left = nullptr;
  EXPECT_TRUE(led_active());
}

TEST_F(Led, ShowsJackpotValueAndBlinks) {
  Board led;
  environment.com[0] = led.path();
  search_and_start(led);
  const auto shows = [&](int value, int blink) {
    EXPECT_TRUE(soon([&] { return led.value == value && led.blink == blink; }))
        << led.value << " and " << led.blink << " instead of " << value << " and " << blink;
  };
  led_update();
  shows(25, 0);
  const int types = led.types;
  led_set_blink(1);
  shows(25, 1);
  for (const auto& [value, shown] : {std::pair{-5, 0}, {8888, 8888}, {70000, 65535}}) {
    led_set_value(value);
    shows(shown, 1);
  }
  EXPECT_EQ(led.types, types) << "none is a check";

  prefs[PREF_TWO_POINT_TICKETS].int_value = 1;
  led_update();
  shows(30, 0);
  prefs[PREF_FIXED_TICKET].int_value = 1;
  led_update();
  shows(0, 0);
  prefs[PREF_FIXED_TICKET].int_value = 0;
  prefs[PREF_TICKET_USE].int_value = 0;
  led_set_value(7);
  shows(7, 0);
  led_update();
  shows(0, 0);
  prefs[PREF_TICKET_USE].int_value = 1;
  led_set_value(7);
  led_set_blink(1);
  shows(7, 1);
  game_mode = MODE_OPERATOR;
  lamps_update();
  shows(0, 0);  // dark in the menus
  game_mode = MODE_PLAY;
  lamps_update();
  shows(30, 0);
  EXPECT_EQ(led.odd, 0);
}

TEST_F(Led, SilentBoardIsFoundAgainOnAnyPort) {
  Log log;
  // A search takes over two seconds, and is repeated if a busy board has missed it.
  const auto let_time_pass_until = [](bool active) {
    return soon(
        [&] {
          game_clock.now_ms = now_ms() + 30100;
          return led_active() == active;
        },
        60'000);
  };
  auto led = std::make_unique<Board>();
  environment.com[1] = led->path();
  search();
  led_start();
  ASSERT_TRUE(led_active());
  log.clear();
  led->deaf = true;
  EXPECT_TRUE(let_time_pass_until(false)) << "the check gets no answer";
  const std::string searched = "COM16\n! Open LED port failed";
  EXPECT_TRUE(soon([&] { return log.text().find(searched) != std::string::npos; }, 60'000))
      << log.text();
  led.reset();
  Board again;
  environment.com[1].clear();
  environment.com[4] = again.path();  // the adapter is back under another name
  EXPECT_FALSE(soon([] { return led_active(); }, 100)) << "no search before its time";
  EXPECT_TRUE(let_time_pass_until(true));
  EXPECT_NE(log.text().find("Attempting to set LED type 2\n"
                            "! Set LED type (write) failed with code 0x9\nRestarting LED board\n"),
            std::string::npos)
      << "no port was open: " << log.text();
  EXPECT_TRUE(soon([&] { return again.value == 25; }, 60'000)) << "it is told the value";
}

TEST_F(Led, BoardIsNotCheckedWhileFrogsAreInPlay) {
  Board led;
  environment.com[0] = led.path();
  search_and_start(led);
  frog_launch(SIDE_LEFT, false);
  ASSERT_FALSE(station_idle(SIDE_LEFT));
  int before = settled(led);
  game_clock.now_ms = now_ms() + 30100;
  clock_sleep_ms(50);
  EXPECT_EQ(led.types, before);
  playfield_reset();
  before = settled(led);
  game_clock.now_ms = now_ms() + 29000;
  clock_sleep_ms(50);
  EXPECT_EQ(led.types, before) << "the check that was due is skipped";
  game_clock.now_ms = now_ms() + 1100;
  EXPECT_TRUE(soon([&] { return led.types == before + 1; }));
}

TEST(UsbReset, ResetsOnlyTheAdapter) {
  const TempFolder sys;
  const auto device = [&](const std::string& name, const char* vendor, const char* product) {
    std::filesystem::create_directories(sys.file(name));
    sys.write(name + "/idVendor", std::string(vendor) + "\n");
    sys.write(name + "/idProduct", std::string(product) + "\n");
    sys.write(name + "/authorized", "x");
  };
  device("usb1", "1d6b", "0002");  // a hub
  device("1-1", "c1ca", "0005");
  EXPECT_FALSE(usb_reset_below(sys.path(), 0xC1CA, 0x0004));
  device("1-2", "c1ca", "0004");
  std::filesystem::create_directories(sys.file("1-2:1.0"));  // an interface has no idVendor
  EXPECT_TRUE(usb_reset_below(sys.path(), 0xC1CA, 0x0004));
  EXPECT_EQ(sys.read("1-2/authorized")[0], '1');
  EXPECT_EQ(sys.read("usb1/authorized") + sys.read("1-1/authorized"), "xx");
  EXPECT_FALSE(usb_reset_below(sys.file("nowhere"), 0xC1CA, 0x0004));
}

}  // namespace
