// The LED board at the other end of a pseudo-terminal: search, value, blinking, reconnection.
#include "io/led_board.h"

#include <gtest/gtest.h>
#include <sched.h>
#include <sys/ioctl.h>

#include <atomic>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
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

class Led : public testing::Test {
 protected:
  Led() {
    jamma_fake_reset();
    jamma_fake.port = 15;  // the I/O board was found, and is out of the way
    plain_sheets();
    for (std::string& port : environment.com) port.clear();
    reset_rules(1000);
    prefs[PREF_BONUS_VALUE].int_value = 25;
  }
  ~Led() override {
    led_close();
    for (std::string& port : environment.com) port.clear();
  }
};

TEST_F(Led, SearchSkipsTakenSilentAndMissingPorts) {
  Pty silent;
  Pty board_of_another;
  Board led;
  environment.com[0] = board_of_another.path();
  environment.com[2] = silent.path();
  environment.com[3] = "/dev/null";
  environment.com[6] = led.path();
  int error = 0;
  SerialPort* taken = serial_open("COM1", &error);  // held as by the I/O board's link
  ASSERT_NE(taken, nullptr);
  search();
  led_start();
  EXPECT_TRUE(led_active());
  EXPECT_GE(led.types, 1);
  EXPECT_EQ(board_of_another.receive(50), "") << "no byte may reach the I/O board";
  serial_close(taken);
}

TEST_F(Led, SearchSkipsIoBoardsPortEvenWhenClosed) {
  Board io_board;
  environment.com[0] = io_board.path();
  jamma_fake.port = 0;
  led_open();
  led_start();
  EXPECT_FALSE(led_active());
  EXPECT_EQ(io_board.types, 0);
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
  EXPECT_GT(led_board.types, 0);
  int error = 0;
  SerialPort* freed = serial_open("COM1", &error);
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

TEST_F(Led, ControlLinesAreLowOnLedPortAndHighOnOthers) {
  constexpr int BOTH = TIOCM_DTR | TIOCM_RTS;
  Board led;
  environment.com[0] = led.path();
  serial_lines_seen.raised = serial_lines_seen.lowered = 0;
  search();
  EXPECT_TRUE(led_active());
  EXPECT_EQ(serial_lines_seen.lowered, BOTH);
  EXPECT_EQ(serial_lines_seen.raised, 0);
  Pty io_board;
  environment.com[1] = io_board.path();
  int error = 0;
  SerialPort* const port = serial_open("COM2", &error);
  ASSERT_NE(port, nullptr);
  EXPECT_TRUE(serial_configure(port, 115200));
  EXPECT_EQ(serial_lines_seen.raised, BOTH);
  serial_close(port);
}

// Any answer is the board's; 32 bytes of it are read.
TEST_F(Led, SearchLogsEachPortAndTheAnswer) {
  static std::string heard;
  heard.clear();
  io_log.callback = [](int /*kind*/, const char* text) { heard += std::string(text) + "\n"; };
  Board led("0123456789abcdefghijklmnopqrstuvwxyz\r\n");
  environment.com[1] = led.path();
  search([] { heard.clear(); });
  io_log.callback = nullptr;
  EXPECT_TRUE(led_active());
  EXPECT_TRUE(
      heard.starts_with("Attempting to open LED port COM1\n"
                        "Open LED port failed with code 0x"))
      << heard;
  EXPECT_NE(heard.find("\nLED handle is 0x0\nAttempting to open LED port COM2\nLED handle is 0x"),
            std::string::npos)
      << heard;
  EXPECT_TRUE(
      heard.ends_with("LED board returned 0123456789abcdefghijklmnopqrstuv\nLED is ACTIVE\n"))
      << heard;
}

TEST_F(Led, SearchWithoutBoardLogsEveryFailure) {
  static std::mutex mutex;
  static std::string heard;
  heard.clear();
  const auto text = [] {
    const std::lock_guard guard(mutex);
    return heard;
  };
  io_log.callback = [](int kind, const char* line) {
    const std::lock_guard guard(mutex);
    heard += std::string(kind == LOG_ERROR ? "! " : "") + line + "\n";
  };
  environment.com[0] = "/dev/null";  // the port of the I/O board, which is unplugged
  jamma_fake.port = 0;
  led_open();
  const std::string searched = text();
  EXPECT_TRUE(
      searched.starts_with("Attempting to open LED port COM1\n"
                           "! Open LED port failed with code 0x10\nLED handle is 0x0\n"
                           "Attempting to open LED port COM2\n"
                           "! Open LED port failed with code 0x13\nLED handle is 0x0\n"))
      << searched;
  led_start();
  const std::string again =
      "Attempting to set LED type 2\n! Set LED type (write) failed with code 0x9\n"
      "Restarting LED board\nClosing LED handle\nLED is INACTIVE\n" +
      searched;
  EXPECT_TRUE(soon([&] { return text().starts_with(searched + again); }, 20000)) << text();
  led_close();
  io_log.callback = nullptr;
}

TEST_F(Led, CloseIsLoggedWithAndWithoutBoard) {
  static std::string heard;
  constexpr const char* END = "Closing LED handle\nLED is INACTIVE\n";
  Board led;
  environment.com[1] = led.path();
  search();
  ASSERT_TRUE(led_active());
  io_log.callback = [](int /*kind*/, const char* text) { heard += std::string(text) + "\n"; };
  heard.clear();
  led_close();
  EXPECT_EQ(heard, END);
  heard.clear();
  led_close();
  EXPECT_EQ(heard, END) << "no port is open";
  io_log.callback = nullptr;
}

TEST_F(Led, ShowsJackpotValueAndBlinks) {
  Board led;
  environment.com[0] = led.path();
  search_and_start(led);
  led_update();
  EXPECT_TRUE(soon([&] { return led.value == 25 && led.blink == 0; }));
  const int types = led.types;
  led_set_blink(1);
  EXPECT_TRUE(soon([&] { return led.blink == 1; }));
  led_set_value(-5);
  EXPECT_TRUE(soon([&] { return led.value == 0; }));
  led_set_value(8888);
  EXPECT_TRUE(soon([&] { return led.value == 8888; }));
  EXPECT_EQ(led.types, types) << "none is a check";

  prefs[PREF_TWO_POINT_TICKETS].int_value = 1;
  led_update();
  EXPECT_TRUE(soon([&] { return led.value == 30 && led.blink == 0; })) << led.value;
  prefs[PREF_FIXED_TICKET].int_value = 1;
  led_update();
  EXPECT_TRUE(soon([&] { return led.value == 0; }));
  prefs[PREF_FIXED_TICKET].int_value = 0;
  prefs[PREF_TICKET_USE].int_value = 0;
  led_set_value(7);
  EXPECT_TRUE(soon([&] { return led.value == 7; }));
  led_update();
  EXPECT_TRUE(soon([&] { return led.value == 0; }));
  prefs[PREF_TICKET_USE].int_value = 1;
  led_set_value(7);
  led_set_blink(1);
  game_mode = MODE_OPERATOR;
  lamps_update();
  EXPECT_TRUE(soon([&] { return led.value == 0 && led.blink == 0; })) << "dark in the menus";
  game_mode = MODE_PLAY;
  lamps_update();
  EXPECT_TRUE(soon([&] { return led.value == 30; }));
  EXPECT_EQ(led.odd, 0);
}

TEST_F(Led, SilentBoardIsFoundAgainOnAnyPort) {
  static std::atomic<int> failed_searches;
  failed_searches = 0;
  io_log.callback = [](int /*kind*/, const char* line) {
    static bool last_port = false;  // logged before its handle, by one thread
    const std::string_view text(line);
    if (text.starts_with("Attempting to open")) last_port = text.ends_with(" COM16");
    if (last_port && text.starts_with("LED handle is 0x0")) ++failed_searches;
  };
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
  const int before = failed_searches;
  led->deaf = true;
  EXPECT_TRUE(let_time_pass_until(false)) << "the check gets no answer";
  EXPECT_TRUE(soon([&] { return failed_searches > before; }, 60'000));
  led.reset();
  Board again;
  environment.com[1].clear();
  environment.com[4] = again.path();  // the adapter is back under another name
  EXPECT_FALSE(soon([] { return led_active(); }, 100)) << "no search before its time";
  EXPECT_TRUE(let_time_pass_until(true));
  EXPECT_TRUE(soon([&] { return again.value == 25; }, 60'000)) << "it is told the value";
  led_close();
  io_log.callback = nullptr;
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
  TempFolder sys;
  const auto device = [&](const char* name, const char* vendor, const char* product) {
    const std::string folder = sys.path() + "/" + name;
    std::filesystem::create_directories(folder);
    std::ofstream(folder + "/idVendor") << vendor << "\n";
    std::ofstream(folder + "/idProduct") << product << "\n";
    std::ofstream(folder + "/authorized") << "x";
    return folder + "/authorized";
  };
  const auto text = [](const std::string& path) {
    std::string word;
    std::ifstream(path) >> word;
    return word;
  };
  const std::string hub = device("usb1", "1d6b", "0002");
  const std::string other = device("1-1", "c1ca", "0005");
  EXPECT_FALSE(usb_reset_below(sys.path(), 0xC1CA, 0x0004));
  const std::string adapter = device("1-2", "c1ca", "0004");
  std::filesystem::create_directories(sys.path() + "/1-2:1.0");  // an interface has no idVendor
  EXPECT_TRUE(usb_reset_below(sys.path(), 0xC1CA, 0x0004));
  EXPECT_EQ(text(adapter), "1");
  EXPECT_EQ(text(hub), "x");
  EXPECT_EQ(text(other), "x");
  EXPECT_FALSE(usb_reset_below(sys.path() + "/nowhere", 0xC1CA, 0x0004));
}

}  // namespace
