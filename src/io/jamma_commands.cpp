// The table of commands.
#include <atomic>
#include <cstdint>
#include <cstdio>
#include <iterator>

#include "io/jamma_link.h"
#include "platform/clock.h"

namespace {

struct Call {
  JammaLink* link;  // null while the link is down
  std::uint32_t modifiers;
  std::intptr_t a, b, c, d;
};

enum Need { ANY_TIME, NEEDS_LINK };

struct CommandRow {
  std::uint32_t number;
  Need need;
  std::int32_t (*run)(const Call& call);  // null: no such command
};

constexpr std::uint32_t GET_AND_CLEAR = 0x100, ONLY_IF_SYNCED = 0x200;
constexpr std::uint32_t DIPS_CONFIG_KNOWN = 0x20000, DIPS_CONFIG_A = 0x40000,
                        DIPS_CONFIG_B = 0x80000;
constexpr std::uint32_t PULSE_STEP_MS = 250;

template <typename T>
T* pointer(std::intptr_t argument) {
  return reinterpret_cast<T*>(argument);
}
std::uint32_t word(std::intptr_t argument) {
  return static_cast<std::uint32_t>(argument);
}
std::int32_t count(std::intptr_t argument) {
  return static_cast<std::int32_t>(argument);
}
bool is_side(std::intptr_t argument) {
  return word(argument) < 2;
}

std::int32_t reserved(const Call&) {
  return 0;
}

template <std::uint32_t Packet>
std::int32_t send(const Call& call) {
  return jamma_send_packet(*call.link, Packet);
}

template <std::uint32_t Flag>
std::int32_t set_flag(const Call& call) {
  jamma_set_flag(*call.link, Flag, call.a != 0);
  return 0;
}

// Sets the flag of one of two, named by `a`, to `b`.
template <std::uint32_t First, std::uint32_t Second>
std::int32_t set_flag_of(const Call& call) {
  if (!is_side(call.a)) return JAMMA_ERR_BAD_ARGUMENT;
  jamma_set_flag(*call.link, call.a == 0 ? First : Second, call.b != 0);
  return 0;
}

template <std::uint32_t First, std::uint32_t Second>
std::int32_t set_flag_of_and_send_config(const Call& call) {
  const std::int32_t result = set_flag_of<First, Second>(call);
  return result < 0 ? result : jamma_send_packet(*call.link, PACKET_CONFIG);
}

template <std::uint32_t First, std::uint32_t Second, std::uint32_t FirstH, std::uint32_t SecondH>
std::int32_t set_flag_of_and_send_h(const Call& call) {
  const std::int32_t result = set_flag_of<First, Second>(call);
  if (result < 0) return result;
  return jamma_send_packet(*call.link,
                           (call.a == 0 ? FirstH : SecondH) | (call.b != 0 ? PACKET_BIT_ON : 0));
}

std::uint32_t config_dips(const JammaLink& link) {
  const std::uint32_t flags = link.flags;
  if (!(flags & CONFIG_KNOWN)) return 0;
  return DIPS_CONFIG_KNOWN | (flags & CONFIG_BIT_A ? DIPS_CONFIG_A : 0) |
         (flags & CONFIG_BIT_B ? DIPS_CONFIG_B : 0);
}

std::int32_t get_dips(const Call& call) {
  return static_cast<std::int32_t>(call.link->inputs.dips | config_dips(*call.link));
}

std::int32_t get_inputs(const Call& call) {
  JammaInputs& inputs = call.link->inputs;
  const std::uint32_t bits = config_dips(*call.link);
  // Any thread may call this while the pump stores new DIPs.
  if (bits & ~inputs.dips) std::atomic_ref(inputs.dips.word).fetch_or(bits);
  *pointer<const JammaInputs*>(call.a) = &inputs;
  return 0;
}

// Brings up a link that is down. Null if that fails.
JammaLink* link_or_restart(JammaLink* link) {
  if (link) return link;
  JammaInit();
  return jamma_link;
}

std::int32_t clear_errors(JammaLink& link) {
  link.comm_errors = 0;
  serial_purge(link.port);
  return jamma_send_packet(link, PACKET_CONFIG);
}

std::int32_t reset(const Call& call) {
  JammaLink* const link = link_or_restart(call.link);
  if (!link) return JAMMA_ERR_LINK_STILL_CLOSED;
  jamma_clear_rings(*link);
  return clear_errors(*link);
}

std::int32_t clear_errors_only(const Call& call) {
  JammaLink* const link = link_or_restart(call.link);
  return link ? clear_errors(*link) : JAMMA_ERR_LINK_STILL_CLOSED;
}

std::int32_t set_trace(const Call& call) {
  call.link->trace = call.a == 0 ? false : call.a == 1 ? true : !call.link->trace;
  return 0;
}

std::int32_t set_capture(const Call& call) {
  const bool on = call.a == 0 ? false : call.a == 1 ? true : !call.link->capture_on;
  jamma_capture(*call.link, pointer<std::uint8_t>(call.b), word(call.c), on);
  return 0;
}

std::int32_t send_raw(const Call& call) {
  return jamma_tx_queue(*call.link, pointer<const void>(call.a), word(call.b));
}

std::int32_t send_nul(const Call& call) {
  return call.link ? jamma_send_packet(*call.link, PACKET_NUL) : JAMMA_ERR_NOT_OPEN;
}

std::int32_t get_version_text(const Call& call) {
  const std::uint32_t hardware = call.link ? call.link->hardware_version.get() : 0;
  const std::uint32_t firmware = call.link ? call.link->firmware_version.get() : 0;
  std::snprintf(pointer<char>(call.a), word(call.b), "19l.H%02X.F%02X R", hardware, firmware);
  return 0;
}

std::int32_t get_ticks(const Call& call) {
  *pointer<std::uint32_t>(call.a) = clock_system_tick_ms();
  return 0;
}

std::int32_t get_counters(const Call& call) {
  JammaLink& link = *call.link;
  if (call.modifiers & ONLY_IF_SYNCED) {
    if (!jamma_flag(link, COUNTERS_SYNCED)) return JAMMA_ERR_NOT_SYNCED;
  } else if (!jamma_flag(link, COUNTERS_MOVED)) {
    return JAMMA_ERR_NOTHING_NEW;
  }
  const bool clear = call.modifiers & GET_AND_CLEAR;
  *pointer<std::uint32_t>(call.a) = clear ? link.changed.exchange(0) : link.changed.load();
  *pointer<const Shared<std::uint32_t>*>(call.b) = link.inputs.counters;
  return 0;
}

// The deadline moves first, so the first half-period has its full length.
std::int32_t pulse(JammaLink& link, std::atomic<std::int32_t> (&steps)[2], const Call& call) {
  if (!is_side(call.a) || count(call.b) < 0) return 0;
  link.step_deadline = clock_system_tick_ms() + PULSE_STEP_MS;
  steps[call.a] += 2 * count(call.b);
  return 0;
}

std::int32_t pulse_coin_meter(const Call& call) {
  return pulse(*call.link, call.link->coin_meter_steps, call);
}

std::int32_t pulse_ticket_meter(const Call& call) {
  return pulse(*call.link, call.link->ticket_meter_steps, call);
}

std::int32_t set_lockout(const Call& call) {
  if (is_side(call.a) && call.b != 0) call.link->lockout_request[call.a] = count(call.b);
  return 0;
}

std::int32_t send_f(const Call& call) {
  const std::intptr_t values[4] = {call.a, call.b, call.c, call.d};
  for (int i = 0; i < 4; ++i) call.link->config_f[i] = word(values[i]);
  return jamma_send_packet(*call.link, PACKET_F);
}

std::int32_t set_watchdog_byte(const Call& call) {
  call.link->watchdog_byte = word(call.a);
  return 0;
}

std::int32_t get_gun_output(const Call& call) {
  const std::uint32_t flags = call.link->flags;
  *pointer<std::uint8_t>(call.a) =
      static_cast<std::uint8_t>((flags & GUN1_OUTPUT ? 1 : 0) | (flags & GUN2_OUTPUT ? 2 : 0));
  return 0;
}

std::int32_t set_input_table(const Call& call) {
  if (call.a != 0 && call.a != 1) return 0;
  call.link->input_table = word(call.a);
  call.link->h_invert = 0;
  return 0;
}

std::int32_t add_tickets(const Call& call) {
  if (!is_side(call.a)) return JAMMA_ERR_BAD_ARGUMENT;
  if (count(call.b) > 0) call.link->tickets_queued[call.a] += count(call.b);
  return 0;
}

std::int32_t set_tickets_queued(const Call& call) {
  if (!is_side(call.a)) return JAMMA_ERR_BAD_ARGUMENT;
  if (count(call.b) >= 0) call.link->tickets_queued[call.a] = count(call.b);
  return 0;
}

std::int32_t clear_tickets(const Call& call) {
  if (!is_side(call.a)) return JAMMA_ERR_BAD_ARGUMENT;
  const MutexLock lock(call.link->ticket_mutex);
  call.link->tickets_queued[call.a] = 0;
  call.link->tickets_owed[call.a] = 0;
  call.link->tickets_in_flight[call.a] = 0;
  call.link->tickets_unanswered[call.a] = 0;
  call.link->start_unanswered[call.a] =
      true;  // after an outage that lost the stop it is sent again
  return jamma_send_packet(*call.link, call.a == 0 ? PACKET_LEFT_STOP : PACKET_RIGHT_STOP);
}

std::int32_t get_tickets_owed(const Call& call) {
  if (!is_side(call.a)) return JAMMA_ERR_BAD_ARGUMENT;
  return call.link->tickets_owed[call.a];
}

std::int32_t get_tickets_queued(const Call& call) {
  if (!is_side(call.a)) return JAMMA_ERR_BAD_ARGUMENT;
  return call.link->tickets_queued[call.a];
}

// The frame takes its channel from here and not from `last_lamp`: the pump moves meters on lamp
// channels while the game thread sets lamps, and neither's frame may turn into the other's.
std::int32_t set_lamp(const Call& call) {
  if (call.a < 0 || call.a >= LAMP_CHANNELS) return JAMMA_ERR_BAD_ARGUMENT;
  const std::uint32_t value = word(call.b) & LAMP_FULL;
  call.link->lamp_value[call.a] = value;
  call.link->last_lamp = word(call.a);
  return jamma_send_lamp(*call.link, word(call.a), value);
}

std::int32_t get_hardware_version(const Call& call) {
  return call.link ? static_cast<std::int32_t>(call.link->hardware_version) : 0;
}

std::int32_t get_firmware_version(const Call& call) {
  return call.link ? static_cast<std::int32_t>(call.link->firmware_version) : 0;
}

std::int32_t set_c_bit0(const Call& call) {
  set_flag<C_BIT0>(call);
  return jamma_send_packet(*call.link, PACKET_CONFIG);
}

std::int32_t set_status_events(const Call& call) {
  call.link->status_events = call.a != 0;
  return 0;
}

std::int32_t get_flags(const Call& call) {
  *pointer<std::uint32_t>(call.a) = call.link->flags;
  return 0;
}

std::int32_t get_comm_errors(const Call& call) {
  return call.link ? static_cast<std::int32_t>(call.link->comm_errors) : 0;
}

constexpr CommandRow rows[] = {
    {0, ANY_TIME, nullptr},
    {JAMMA_GET_DIPS, NEEDS_LINK, get_dips},
    {JAMMA_GET_INPUTS, NEEDS_LINK, get_inputs},
    {JAMMA_RESET, ANY_TIME, reset},
    {JAMMA_SET_TRACE, NEEDS_LINK, set_trace},
    {JAMMA_SET_CAPTURE, NEEDS_LINK, set_capture},
    {JAMMA_NOP, ANY_TIME, reserved},
    {JAMMA_CLEAR_ERRORS, ANY_TIME, clear_errors_only},
    {JAMMA_SEND_RAW, NEEDS_LINK, send_raw},
    {JAMMA_GET_VERSION_TEXT, ANY_TIME, get_version_text},
    {JAMMA_GET_TICKS, ANY_TIME, get_ticks},
    {11, NEEDS_LINK, reserved},
    {12, NEEDS_LINK, reserved},
    {13, NEEDS_LINK, reserved},
    {JAMMA_SET_RAW_MODE, NEEDS_LINK, set_flag<RAW_MODE>},
    {JAMMA_SEND_WATCHDOG, NEEDS_LINK, send<PACKET_WATCHDOG>},
    {JAMMA_SET_GUN_AUX, NEEDS_LINK, set_flag_of_and_send_config<GUN1_AUX, GUN2_AUX>},
    {JAMMA_SET_GUN_OUTPUT, NEEDS_LINK,
     set_flag_of_and_send_h<GUN1_OUTPUT, GUN2_OUTPUT, PACKET_H_GUN1_OUTPUT, PACKET_H_GUN2_OUTPUT>},
    {JAMMA_GET_COUNTERS, NEEDS_LINK, get_counters},
    {JAMMA_QUERY_SWITCHES, NEEDS_LINK, send<PACKET_QUERY_STATUS>},
    {JAMMA_SET_WATCHDOG_MUTE, NEEDS_LINK, set_flag<WATCHDOG_MUTE>},
    {JAMMA_PULSE_COIN_METER, NEEDS_LINK, pulse_coin_meter},
    {JAMMA_PULSE_TICKET_METER, NEEDS_LINK, pulse_ticket_meter},
    {JAMMA_SET_LOCKOUT, NEEDS_LINK, set_lockout},
    {24, NEEDS_LINK, reserved},
    {25, NEEDS_LINK, reserved},
    {26, NEEDS_LINK, reserved},
    {27, NEEDS_LINK, reserved},
    {JAMMA_QUERY_COUNTERS, NEEDS_LINK, send<PACKET_QUERY_COUNTERS>},
    {JAMMA_QUERY_CONFIG, NEEDS_LINK, send<PACKET_QUERY_CONFIG>},
    {JAMMA_QUERY_VERSION, NEEDS_LINK, send<PACKET_QUERY_VERSION>},
    {JAMMA_SET_H_FOLLOWS, NEEDS_LINK, set_flag<H_FOLLOWS_AUX>},
    {JAMMA_SEND_F, NEEDS_LINK, send_f},
    {JAMMA_SET_WATCHDOG_BYTE, NEEDS_LINK, set_watchdog_byte},
    {34, NEEDS_LINK, reserved},
    {JAMMA_GET_GUN_OUTPUT, NEEDS_LINK, get_gun_output},
    {JAMMA_SET_INPUT_TABLE, NEEDS_LINK, set_input_table},
    {JAMMA_ADD_TICKETS, NEEDS_LINK, add_tickets},
    {JAMMA_SET_AUX_OUT, NEEDS_LINK,
     set_flag_of_and_send_h<AUX_OUT_1, AUX_OUT_2, PACKET_H_AUX_OUT_1, PACKET_H_AUX_OUT_2>},
    {JAMMA_SET_LAMP, NEEDS_LINK, set_lamp},
    {40, ANY_TIME, nullptr},
    {JAMMA_GET_HARDWARE_VERSION, ANY_TIME, get_hardware_version},
    {JAMMA_GET_FIRMWARE_VERSION, ANY_TIME, get_firmware_version},
    {JAMMA_SET_TICKET_MODE, NEEDS_LINK, set_flag_of<LEFT_TICKET_MODE, RIGHT_TICKET_MODE>},
    {JAMMA_CLEAR_TICKETS, NEEDS_LINK, clear_tickets},
    {JAMMA_GET_TICKETS_OWED, NEEDS_LINK, get_tickets_owed},
    {JAMMA_GET_TICKETS_QUEUED, NEEDS_LINK, get_tickets_queued},
    {JAMMA_SET_C_BIT0, NEEDS_LINK, set_c_bit0},
    {JAMMA_SET_GUN, NEEDS_LINK, set_flag_of_and_send_config<GUN1_ON, GUN2_ON>},
    {JAMMA_SET_STATUS_EVENTS, NEEDS_LINK, set_status_events},
    {JAMMA_SET_TICKETS_QUEUED, NEEDS_LINK, set_tickets_queued},
    {JAMMA_GET_FLAGS, NEEDS_LINK, get_flags},
    {JAMMA_GET_COMM_ERRORS, ANY_TIME, get_comm_errors},
    {JAMMA_SEND_NUL, ANY_TIME, send_nul},
};

constexpr bool rows_are_in_place() {
  for (std::uint32_t i = 0; i < std::size(rows); ++i) {
    if (rows[i].number != i) return false;
  }
  return true;
}
static_assert(rows_are_in_place());

}  // namespace

std::int32_t jamma_command(std::int32_t command, std::intptr_t a, std::intptr_t b, std::intptr_t c,
                           std::intptr_t d) {
  const std::uint32_t number = word(command) & 0xFF;
  if (number >= std::size(rows) || !rows[number].run) return JAMMA_ERR_BAD_COMMAND;
  JammaLink* const link = jamma_link;
  if (!link && rows[number].need == NEEDS_LINK) return JAMMA_ERR_NOT_OPEN;
  return rows[number].run(Call{link, word(command) & ~0xFFu, a, b, c, d});
}
