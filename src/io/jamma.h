// The only interface to the cabinet's I/O board.
#pragma once

#include <cstdint>

#include "platform/shared.h"  // Shared

enum JammaCommand : std::int32_t {
  JAMMA_GET_DIPS = 1,
  JAMMA_GET_INPUTS = 2,
  JAMMA_RESET = 3,
  JAMMA_SET_TRACE = 4,
  JAMMA_SET_CAPTURE = 5,
  JAMMA_NOP = 6,
  JAMMA_CLEAR_ERRORS = 7,
  JAMMA_SEND_RAW = 8,
  JAMMA_GET_VERSION_TEXT = 9,
  JAMMA_GET_TICKS = 10,
  JAMMA_SET_RAW_MODE = 14,
  JAMMA_SEND_WATCHDOG = 15,
  JAMMA_SET_GUN_AUX = 16,
  JAMMA_SET_GUN_OUTPUT = 17,
  JAMMA_GET_COUNTERS = 18,
  JAMMA_QUERY_SWITCHES = 19,
  JAMMA_SET_WATCHDOG_MUTE = 20,
  JAMMA_PULSE_COIN_METER = 21,
  JAMMA_PULSE_TICKET_METER = 22,
  JAMMA_SET_LOCKOUT = 23,
  JAMMA_QUERY_COUNTERS = 28,
  JAMMA_QUERY_CONFIG = 29,
  JAMMA_QUERY_VERSION = 30,
  JAMMA_SET_H_FOLLOWS = 31,
  JAMMA_SEND_F = 32,
  JAMMA_SET_WATCHDOG_BYTE = 33,
  JAMMA_GET_GUN_OUTPUT = 35,
  JAMMA_SET_INPUT_TABLE = 36,
  JAMMA_ADD_TICKETS = 37,
  JAMMA_SET_AUX_OUT = 38,
  JAMMA_SET_LAMP = 39,
  JAMMA_GET_HARDWARE_VERSION = 41,
  JAMMA_GET_FIRMWARE_VERSION = 42,
  JAMMA_SET_TICKET_MODE = 43,
  JAMMA_CLEAR_TICKETS = 44,
  JAMMA_GET_TICKETS_OWED = 45,
  JAMMA_GET_TICKETS_QUEUED = 46,
  JAMMA_SET_C_BIT0 = 47,
  JAMMA_SET_GUN = 48,
  JAMMA_SET_STATUS_EVENTS = 49,
  JAMMA_SET_TICKETS_QUEUED = 50,
  JAMMA_GET_FLAGS = 51,
  JAMMA_GET_COMM_ERRORS = 52,
  JAMMA_SEND_NUL = 53,
};

enum JammaError : std::int32_t {
  JAMMA_ERR_BAD_ARGUMENT = -2,
  JAMMA_ERR_TX_FULL = -10,
  JAMMA_ERR_LINK_STILL_CLOSED = -100,
  JAMMA_ERR_BAD_COMMAND = -9088,
  JAMMA_ERR_NOTHING_NEW = -9089,
  JAMMA_ERR_NOT_SYNCED = -9090,
  JAMMA_ERR_NO_MEMORY = -9091,
  JAMMA_ERR_THREAD = -9093,
  JAMMA_ERR_PORT_TIMEOUTS = -9094,
  JAMMA_ERR_PORT_SET = -9095,
  JAMMA_ERR_PORT_GET = -9096,
  JAMMA_ERR_PORT_OPEN = -9097,
  JAMMA_ERR_NOT_OPEN = -9098,
};

enum JammaFlags : std::uint32_t {
  RAW_MODE = 0x00000004,
  WATCHDOG_MUTE = 0x00000008,
  GUN1_ON = 0x00000010,
  GUN2_ON = 0x00000020,
  CHECKSUMS_ON = 0x00000040,
  GUN1_AUX = 0x00000100,
  GUN2_AUX = 0x00000200,
  GUN1_OUTPUT = 0x00000400,
  GUN2_OUTPUT = 0x00000800,
  COUNTERS_MOVED = 0x00001000,
  CONFIG_BIT_A = 0x00002000,
  CONFIG_BIT_B = 0x00004000,
  CONFIG_KNOWN = 0x00008000,
  H_FOLLOWS_AUX = 0x00020000,
  COUNTERS_SYNCED = 0x00040000,
  C_BIT0 = 0x00080000,
  CONFIG_PENDING = 0x00100000,
  AUX_OUT_1 = 0x00200000,
  AUX_OUT_2 = 0x00400000,
  LEFT_DISPENSING = 0x00800000,
  LEFT_TICKET_FAULT = 0x01000000,
  LEFT_TICKET_MODE = 0x02000000,
  RIGHT_DISPENSING = 0x04000000,
  RIGHT_TICKET_FAULT = 0x08000000,
  RIGHT_TICKET_MODE = 0x10000000,
};

enum JammaCounter {  // indexes of JammaInputs.counters
  COUNTER_G1A = 1,
  COUNTER_G2A = 2,
  COUNTER_G1B = 3,
  COUNTER_G2B = 4,
  COUNTER_P1S = 5,
  COUNTER_P2S = 6,
  COUNTER_C1 = 7,
  COUNTER_C2 = 8,
  COUNTER_BIL = 9,
  COUNTER_SRV = 10,
  COUNTER_TST = 11,
  COUNTER_VLU = 12,
  COUNTER_VLD = 13,
  COUNTER_TBX = 15,
  COUNTER_TBY = 16,
  COUNTER_TLT = 17,
  COUNTER_COUNT = 20,
};

struct JammaInputs {  // read by the game without a lock, word by word
  Shared<std::uint32_t> dips;
  Shared<std::uint32_t> previous_switches, switches;
  Shared<std::uint32_t> counters[COUNTER_COUNT];  // edges; bit 0 is the level of that input
};

enum JammaPress {  // rows of jamma_presses, in the order they are counted
  PRESS_P1S,
  PRESS_P2S,
  PRESS_C1,
  PRESS_C2,
  PRESS_BIL,
  PRESS_SRV,
  PRESS_TST,
  PRESS_VLU,
  PRESS_VLD,
  PRESS_COUNT,
};

// Set while the board doesn't answer, or at bring-up without one; the scene shows it.
extern Shared<std::int32_t> jamma_link_error;

// Running count of frames dropped for a bad checksum.
extern Shared<std::uint32_t> jamma_checksum_failures;

// Searches the ports for the board, brings the link up and starts its two threads. 0 or a
// JammaError; the game then goes on without a board. Takes up to 2 s when there is none.
std::int32_t JammaInit();

// After a JammaInit that found no board: looks again every five seconds, on a thread of its own,
// and brings the link up as soon as a board answers. Start-up.
void jamma_search_start();

// Ends the link's threads within a bound and closes the port. JammaInit may follow.
void JammaShutdown();

// True while the board answers. Any thread.
bool jamma_link_alive();

inline constexpr std::int32_t NO_PORT = 16;

// The port that the board was found on, 0 for "COM1"; NO_PORT if there is none. It stays the
// board's while that is unplugged. Start-up's end and later, any thread.
std::int32_t jamma_port();

// Carries out one command of the table in io/jamma_commands.cpp. Never waits. 0 or a value,
// failures negative (JammaError). Arguments are whole numbers, out-arguments pointers cast to
// intptr_t. Any thread.
std::int32_t jamma_command(std::int32_t command, std::intptr_t a = 0, std::intptr_t b = 0,
                           std::intptr_t c = 0, std::intptr_t d = 0);

// The board's own small counters, as it last sent them. They outlive this program, but not the
// board's power. False before the first good S frame; then `counters` stays as it was. Any thread.
bool jamma_board_counters(std::uint8_t (&counters)[COUNTER_COUNT]);

// True once the board has reported that it owes tickets. Any thread.
bool jamma_tickets_reported();

// Tickets that were ordered and that the board hasn't answered for, which it does at once. Any
// thread.
std::int32_t jamma_tickets_unanswered(int side);

// Asks the board how many tickets it owes on a side, by an order to add none. Its answer becomes
// JAMMA_GET_TICKETS_OWED. For a board that has tickets of an earlier run. Any thread.
void jamma_tickets_ask(int side);

// Presses of an input that the game has not consumed yet. A press counts when it ends. Game thread.
std::uint32_t jamma_presses_pending(JammaPress press);
// Any of them?
inline bool jamma_pressed(JammaPress press) {
  return jamma_presses_pending(press) > 0;
}

// Consumes the presses of an input that `jamma_presses_pending` showed since the last clear; a
// press that lands between the two is kept for the next tick. If nobody looked since the last
// clear, all of them are lost: that is how coins in the operator's menus go uncounted. Game thread.
void jamma_presses_clear(JammaPress press);
