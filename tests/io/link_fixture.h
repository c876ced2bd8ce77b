// A link on a pseudo-terminal without its threads: the test feeds the bytes and turns the clock.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <cstdio>
#include <initializer_list>
#include <map>
#include <string>
#include <vector>

#include "io/jamma_input_tables.h"
#include "io/jamma_link.h"
#include "platform/clock.h"
#include "platform/environment.h"
#include "platform/headless/clock_control.h"
#include "tests/fakes/pty.h"

using Frames = std::vector<std::string>;

class LinkTest : public testing::Test {
 protected:
  void SetUp() override {
    headless_clock_reset();
    headless_system_tick_set(first_tick);
    jamma_link_error = 0;
    environment.com[0] = pty.path();
    link = &jamma_reset();
    int error = 0;
    link->port = serial_open("COM1", &error);
    ASSERT_NE(link->port, nullptr) << error;
    ASSERT_TRUE(serial_configure(link->port, 115200));
    jamma_bring_up(*link);
    start_frames = sent();
    jamma_pump();  // the first round's duties
    first_round = sent();
  }
  void TearDown() override {
    JammaShutdown();
    environment.com[0].clear();
  }

  // Flushes and returns the frames that reached the board, without LF and CR.
  Frames sent() {
    if (tx_used() == 0) return {};
    jamma_tx_flush(*link);
    // What the rounds before have sent may arrive in pieces; this byte arrives last.
    constexpr char LAST = '\x04';
    serial_write(link->port, &LAST, 1);
    std::string bytes;
    while (bytes.empty() || bytes.back() != LAST) {
      const std::string more = pty.receive(1000);
      if (more.empty()) break;
      bytes += more;
    }
    EXPECT_TRUE(bytes.ends_with(std::string{'\0', LAST})) << "a burst ends in a NUL";
    Frames frames;
    for (const char byte : bytes) {
      if (byte == '\n') {
        frames.emplace_back();
      } else if (byte > ' ' && !frames.empty()) {
        frames.back() += byte;
      }
    }
    return frames;
  }

  // Bytes that wait in the transmit ring.
  [[nodiscard]] std::uint32_t tx_used() const {
    const MutexLock lock(link->tx_mutex);
    return link->tx_used;
  }

  void feed(const std::string& bytes) {
    jamma_receive_bytes(*link, reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());
  }
  // Lets the board say frames, and runs a round of the pump thread.
  void say(std::initializer_list<std::string> frames) {
    for (const std::string& frame : frames) feed("\n" + frame + "\r");
    round();
  }
  void round() {
    jamma_pump();
    jamma_presses_count();
  }
  // Runs a round each millisecond.
  void run(int ms) {
    for (; ms > 0; --ms) {
      headless_clock_advance(1);
      round();
    }
  }

  // An S frame of the table in force, with these raw counters, others 0.
  std::string counters(const std::map<JammaCounter, int>& raw, int first = 0x80) const {
    int bytes[9] = {0, first};
    for (const InputRow& row : jamma_input_table(link->input_table)) {
      const auto found = raw.find(static_cast<JammaCounter>(row.counter));
      if (found != raw.end()) bytes[row.byte] |= (found->second & row.mask) << row.shift;
    }
    char text[32];
    std::snprintf(text, sizeof text, "S%02x%02x%02x%02x%02x%02x%02x%02x", bytes[1], bytes[2],
                  bytes[3], bytes[4], bytes[5], bytes[6], bytes[7], bytes[8]);
    return text;
  }

  [[nodiscard]] bool flag(std::uint32_t mask) const { return jamma_flag(*link, mask); }
  [[nodiscard]] std::uint32_t counter(JammaCounter which) const {
    return link->inputs.counters[which];
  }

  std::uint32_t first_tick = 0;
  Pty pty;
  JammaLink* link = nullptr;
  Frames start_frames, first_round;
};
