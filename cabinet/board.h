// The I/O board: bytes in, bytes out, and the time from the caller. It uses no pseudo-terminal and
// no clock.
#pragma once

#include <cstdint>
#include <random>
#include <string>

#include "cabinet/coils.h"
#include "cabinet/dispenser.h"
#include "cabinet/frame_log.h"
#include "cabinet/switches.h"
#include "cabinet/wire.h"

// The two stations of the cabinet.
enum Side { LEFT = 0, RIGHT = 1, SIDES = 2 };

constexpr int WATCHDOG_BY_FRAME = -1;

struct BoardSettings {
  std::uint8_t hardware = 0x01;
  std::uint8_t firmware = 0x51;  // high nibble 5: the family with a trackball
  std::uint8_t dips = 0;         // a 1 is a switch that is on
  std::uint8_t config_bits = 0;  // second byte of the c answer
  int watchdog_ask_ms = 1000;    // how often the board asks for a W frame; 0: never
  // Time without one until it restarts: 0 never, WATCHDOG_BY_FRAME the seconds of the last frame.
  int watchdog_bite_ms = WATCHDOG_BY_FRAME;
};

struct BoardCounts {  // since the cabinet began
  long checksum_errors = 0;
  long malformed = 0;  // unknown letters, wrong lengths, capitals, impossible values
  long restarts = 0;
  long watchdog_fed = 0;
  long watchdog_bites = 0;
};

struct Board {
  BoardSettings settings;
  bool powered = true;
  bool silent = false;  // it receives but sends nothing

  // Cleared by a restart.
  bool checksums = false;
  bool counters_valid = false;       // a C frame has come
  std::uint8_t config = 0;           // first byte of that frame
  bool watchdog_armed = false;       // a W frame has come
  std::int64_t watchdog_fed_ms = 0;  // when the last one came
  int watchdog_unanswered = 0;       // requests since then
  std::int64_t watchdog_ask_at_ms = 0;
  int watchdog_allowance_ms = 0;   // what it allowed
  std::int64_t digits_due_ms = 0;  // until then the host may still lack checksums
  WireReceiver receiver;

  Switches switches;
  Dispenser dispensers[SIDES];
  Coils coils;
  BoardCounts counts;
  FrameLog log;
  std::mt19937 random;  // where the counters start

  std::string to_host;  // bytes for the line; the caller takes them
};

constexpr int BOARD_RANDOM_COUNTERS = -1;

// Restarts the board: counters begin at `counter`, or each at a random value, and *R is sent. Only
// mechanical state is kept, such as closed switches and paper.
void board_restart(Board& board, int counter, std::int64_t now_ms);

// Switches the power off: the board receives and sends nothing until `board_restart`.
void board_power_off(Board& board);

// Takes one byte from the host.
void board_receive(Board& board, std::uint8_t byte, std::int64_t now_ms);

// Lets time pass: tickets come out, the watchdog asks and restarts. Call it every few milliseconds.
void board_advance(Board& board, std::int64_t now_ms);

// Moves a switch. Each edge sends an S frame at once.
void board_switch(Board& board, int input, bool closed, std::int64_t now_ms);

// Asks for a W frame now. The host answers in the order of the line: it has read what was sent
// before.
void board_ask_for_watchdog(Board& board, std::int64_t now_ms);

// Sends the S frame without a change.
void board_send_counters(Board& board, std::int64_t now_ms);

// Sends a frame of any content, even from a silent board.
void board_say(Board& board, const std::string& body, std::int64_t now_ms);

// Turns the trackball by `steps`; axis 0 is x, 1 is y.
void board_turn_ball(Board& board, int axis, int steps, std::int64_t now_ms);

// Turns checksums on, with a u frame to the host, or off, without a frame.
void board_set_checksums(Board& board, bool on, std::int64_t now_ms);
