// The frames that the host sends.
#include <cstddef>
#include <cstdint>
#include <initializer_list>

#include "io/jamma_link.h"

namespace {

constexpr std::uint32_t H_LEFT_COIN_METER = 0x10, H_UNUSED = 0x01, H_AUX_OUT_1 = 0x04,
                        H_AUX_OUT_2 = 0x08, H_GUN1_OUTPUT = 0x20, H_GUN2_OUTPUT = 0x80;
constexpr std::uint8_t T_RIGHT = 0x08, T_MODE = 0x10, T_ABSOLUTE = 0x80;

struct SideFlags {
  std::uint32_t dispensing, fault, mode;
};
constexpr SideFlags SIDE_FLAGS[2] = {
    {LEFT_DISPENSING, LEFT_TICKET_FAULT, LEFT_TICKET_MODE},
    {RIGHT_DISPENSING, RIGHT_TICKET_FAULT, RIGHT_TICKET_MODE},
};

std::int32_t send(JammaLink& link, char letter, std::initializer_list<std::uint8_t> data = {}) {
  std::uint8_t frame[WIRE_FRAME_MAX];
  const std::size_t size =
      wire_build(frame, letter, data.begin(), data.size(), jamma_flag(link, CHECKSUMS_ON));
  return jamma_tx_queue(link, frame, size);
}

std::uint8_t byte_of(std::uint32_t value) {
  return static_cast<std::uint8_t>(value);
}

// The board takes the whole byte, so each change sends all bits again.
std::int32_t send_h_bit(JammaLink& link, std::uint32_t bit, bool on) {
  if (on) {
    link.h_bits |= bit;
  } else {
    link.h_bits &= ~bit;
  }
  return jamma_send_h(link);
}

std::int32_t send_config(JammaLink& link) {
  const std::uint8_t second = jamma_flag(link, CONFIG_PENDING) ? 0xC1 : 0x81;
  const std::int32_t result = send(link, 'C', {jamma_config_byte(link), second});
  if (!jamma_flag(link, H_FOLLOWS_AUX)) return result;
  const std::uint32_t aux = (jamma_flag(link, GUN1_AUX) ? H_GUN1_OUTPUT : 0) |
                            (jamma_flag(link, GUN2_AUX) ? H_GUN2_OUTPUT : 0);
  link.h_bits &= ~(H_GUN1_OUTPUT | H_GUN2_OUTPUT);
  return send_h_bit(link, aux, true);
}

std::int32_t send_status_query(JammaLink& link) {
  ++link.status_unanswered;
  return send(link, 's');
}

std::int32_t send_f(JammaLink& link) {
  const std::uint32_t a = link.config_f[0], b = link.config_f[1], c = link.config_f[2],
                      d = link.config_f[3];
  return send(link, 'F',
              {byte_of(a), byte_of(b), byte_of((((a >> 4) & 0x30) | (b & 0x300)) >> 4), byte_of(c),
               byte_of(d), byte_of((((c >> 4) & 0x70) | (d & 0x700)) >> 4)});
}

std::uint8_t ticket_byte(int side, std::int32_t count) {
  return byte_of(((static_cast<std::uint32_t>(count) >> 8) & 3) | (side ? T_RIGHT : 0));
}

void open_order(JammaLink& link, int side) {
  if (link.order_open[side]) return;
  link.ordered_ms[side] = clock_ms();
  link.order_open[side] = true;
}

// Moves the tickets in flight to those owed. A dispenser that runs gets the number to add; one that
// stands gets the whole sum, which also corrects a count that it may have lost.
std::int32_t send_tickets(JammaLink& link, int side) {
  const SideFlags& side_flags = SIDE_FLAGS[side];
  const std::int32_t more = link.tickets_in_flight[side].exchange(0);
  const std::int32_t owed = link.tickets_owed[side].fetch_add(more) + more;
  link.tickets_unanswered[side] += more;
  open_order(link, side);
  jamma_set_flag(link, side_flags.fault, false);
  if (jamma_flag(link, side_flags.dispensing)) {
    return send(link, 'T', {ticket_byte(side, more), byte_of(static_cast<std::uint32_t>(more))});
  }
  const std::uint8_t mode = jamma_flag(link, side_flags.mode) ? T_MODE : 0;
  const std::int32_t result = send(link, 'T',
                                   {byte_of(ticket_byte(side, owed) | T_ABSOLUTE | mode),
                                    byte_of(static_cast<std::uint32_t>(owed))});
  // A frame without room in the ring starts nothing; the next one has the whole sum again.
  if (result == 0) jamma_set_flag(link, side_flags.dispensing, true);
  link.start_unanswered[side] = true;
  return result;
}

std::int32_t send_stop(JammaLink& link, int side) {
  open_order(link, side);
  const std::uint8_t mode = jamma_flag(link, SIDE_FLAGS[side].mode) ? T_MODE : 0;
  return send(link, 'T', {byte_of(ticket_byte(side, 0) | T_ABSOLUTE | mode), 0});
}

std::int32_t send_last_lamp(JammaLink& link) {
  const std::uint32_t channel = link.last_lamp;
  return jamma_send_lamp(link, channel, link.lamp_value[channel]);
}

struct PacketRow {
  JammaPacket packet;
  std::int32_t (*send)(JammaLink& link, bool on);  // `on`: with PACKET_BIT_ON
};

// A new frame is a number in io/jamma_link.h and a row here.
constexpr PacketRow PACKETS[] = {
    {PACKET_CONFIG, [](JammaLink& link, bool) { return send_config(link); }},
    {PACKET_WATCHDOG,
     [](JammaLink& link, bool) { return send(link, 'W', {byte_of(link.watchdog_byte)}); }},
    {PACKET_H_LEFT_COIN_METER,
     [](JammaLink& link, bool on) { return send_h_bit(link, H_LEFT_COIN_METER, on); }},
    {PACKET_H_UNUSED, [](JammaLink& link, bool on) { return send_h_bit(link, H_UNUSED, on); }},
    {PACKET_QUERY_CONFIG, [](JammaLink& link, bool) { return send(link, 'c'); }},
    {PACKET_QUERY_COUNTERS, [](JammaLink& link, bool) { return send(link, 'S'); }},
    {PACKET_QUERY_STATUS, [](JammaLink& link, bool) { return send_status_query(link); }},
    {PACKET_QUERY_VERSION, [](JammaLink& link, bool) { return send(link, 'v'); }},
    {PACKET_H_GUN1_OUTPUT,
     [](JammaLink& link, bool on) { return send_h_bit(link, H_GUN1_OUTPUT, on); }},
    {PACKET_H_GUN2_OUTPUT,
     [](JammaLink& link, bool on) { return send_h_bit(link, H_GUN2_OUTPUT, on); }},
    {PACKET_F, [](JammaLink& link, bool) { return send_f(link); }},
    {PACKET_H_AUX_OUT_1,
     [](JammaLink& link, bool on) { return send_h_bit(link, H_AUX_OUT_1, on); }},
    {PACKET_H_AUX_OUT_2,
     [](JammaLink& link, bool on) { return send_h_bit(link, H_AUX_OUT_2, on); }},
    {PACKET_LEFT_TICKETS, [](JammaLink& link, bool) { return send_tickets(link, 0); }},
    {PACKET_LEFT_STOP, [](JammaLink& link, bool) { return send_stop(link, 0); }},
    {PACKET_RIGHT_TICKETS, [](JammaLink& link, bool) { return send_tickets(link, 1); }},
    {PACKET_RIGHT_STOP, [](JammaLink& link, bool) { return send_stop(link, 1); }},
    {PACKET_LAMP, [](JammaLink& link, bool) { return send_last_lamp(link); }},
    {PACKET_NUL, [](JammaLink& link, bool) { return jamma_tx_queue(link, "", 1); }},
    {PACKET_CHECKSUMS_ON, [](JammaLink& link, bool) { return send(link, 'U', {1}); }},
};

}  // namespace

std::int32_t jamma_send_h(JammaLink& link) {
  return send(link, 'H', {byte_of(link.h_bits ^ link.h_invert)});
}

std::uint8_t jamma_config_byte(const JammaLink& link) {
  const std::uint32_t flags = link.flags;
  return byte_of((flags & C_BIT0 ? 0x01 : 0) | (flags & GUN1_ON ? 0x10 : 0) |
                 (flags & GUN2_ON ? 0x20 : 0) | (flags & GUN1_AUX ? 0x40 : 0) |
                 (flags & GUN2_AUX ? 0x80 : 0));
}

std::int32_t jamma_send_lamp(JammaLink& link, std::uint32_t channel, std::uint32_t value) {
  return send(link, 'P', {byte_of(channel << 4 | value >> 8), byte_of(value)});
}

std::int32_t jamma_send_packet(JammaLink& link, std::uint32_t packet) {
  for (const PacketRow& row : PACKETS) {
    if (row.packet == (packet & 0xFF)) return row.send(link, packet & PACKET_BIT_ON);
  }
  return JAMMA_ERR_BAD_ARGUMENT;
}
