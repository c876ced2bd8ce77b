// The link to the I/O board, written a second time: what it holds and what it sends after each
// order of the game, each frame of the board and each millisecond.
#pragma once

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <initializer_list>
#include <string>
#include <vector>

struct ModelInput {
  int counter, byte, shift, mask;
  std::uint32_t event;
};

// The small counters of an S frame. The trackball's may turn back.
inline std::vector<ModelInput> model_inputs(int table) {
  std::vector<ModelInput> rows = {
      {5, 4, 4, 15, 0x10},   {6, 4, 0, 15, 0x20},    {7, 5, 4, 15, 0x40},   {8, 5, 0, 15, 0x80},
      {12, 6, 4, 15, 0x800}, {13, 6, 0, 15, 0x1000}, {11, 7, 4, 15, 0x400}, {10, 7, 0, 15, 0x200},
      {9, 8, 0, 15, 0x100},  {17, 8, 4, 15, 0x10000}};
  const std::vector<ModelInput> more =
      table == 1 ? std::vector<ModelInput>{{15, 2, 0, 255, 0x4000}, {16, 3, 0, 255, 0x8000}}
                 : std::vector<ModelInput>{
                       {1, 2, 4, 15, 1}, {2, 2, 0, 15, 2}, {3, 3, 4, 15, 4}, {4, 3, 0, 15, 8}};
  rows.insert(rows.end(), more.begin(), more.end());
  return rows;
}

struct ModelPress {
  std::uint32_t last = 0, pending = 0, shown = 0;
  bool looked = false;
};

struct LinkModel {
  using Bytes = std::vector<int>;

  std::int64_t now = 0;  // ms
  std::vector<std::string> out;

  bool mute = false, checksums = false, moved = false, bit_a = false, bit_b = false, known = false,
       follows = false, synced = false, c_bit0 = false, config_pending = false;
  bool gun_on[2] = {}, gun_aux[2] = {}, gun_output[2] = {}, aux_out[2] = {};
  bool dispensing[2] = {}, fault[2] = {}, mode[2] = {};

  int hardware = 0, firmware = 0, table = 1, watchdog = 75;
  std::uint32_t dips = 0, switches = 0, previous_switches = 0;
  std::uint32_t counters[20] = {}, changed = 0;
  int offset[20] = {}, raw[20] = {};
  ModelPress presses[9];
  int keys = 0;
  std::vector<int> key_queue;

  int coin_steps[2] = {}, ticket_steps[2] = {}, lockout[2] = {};
  int lamps[16] = {}, last_lamp = 0, h = 0;
  int queued[2] = {}, owed[2] = {};
  int unanswered[2] = {};  // tickets whose order the board did not answer yet
  int on_board[2] = {};    // its last count
  std::int64_t counted[2] = {};
  bool open[2] = {};  // an order, a stop or a question is without an answer
  std::int64_t ordered[2] = {};
  bool count_asked[2] = {};  // after an outage, until a count comes
  bool start_unanswered[2] = {}, reported = false;

  std::int64_t step_at = 0, status_at = 0, heard = 0;  // the last one in seconds; 0: never
  int asked = 0;                                       // status queries since the last answer
  int answers_due = 0;  // after an outage, until the board speaks of the present again
  bool alive = true;

  [[nodiscard]] std::uint32_t flags() const {
    const bool from_bit_3_on[] = {
        mute,       gun_on[0],     gun_on[1],     checksums, false,   gun_aux[0],
        gun_aux[1], gun_output[0], gun_output[1], moved,     bit_a,   bit_b,
        known,      false,         follows,       synced,    c_bit0,  config_pending,
        aux_out[0], aux_out[1],    dispensing[0], fault[0],  mode[0], dispensing[1],
        fault[1],   mode[1]};
    std::uint32_t word = 0, bit = 0x8;
    for (const bool on : from_bit_3_on) {
      word += on ? bit : 0;
      bit *= 2;
    }
    return word;
  }

  // What goes out.

  int send(char letter, const Bytes& data = {}) {
    std::string frame(1, letter);
    char digits[8];
    for (const int byte : data) {
      std::snprintf(digits, sizeof digits, "%02x", static_cast<unsigned>(byte));
      frame += digits;
    }
    if (checksums) {
      int sum = 10 + 13;
      for (const char byte : frame) sum += byte;
      std::snprintf(digits, sizeof digits, "%02X", static_cast<unsigned>(sum % 256));
      frame += digits;
    }
    out.push_back(frame);
    return 0;
  }
  int send_h() { return send('H', {h}); }
  int set_h(int bit, bool on) {
    if (((h & bit) != 0) != on) h += on ? bit : -bit;
    return send_h();
  }
  [[nodiscard]] int config_byte() const {
    return (c_bit0 ? 1 : 0) + (gun_on[0] ? 16 : 0) + (gun_on[1] ? 32 : 0) + (gun_aux[0] ? 64 : 0) +
           (gun_aux[1] ? 128 : 0);
  }
  int send_config() {
    send('C', {config_byte(), config_pending ? 0xC1 : 0x81});
    if (!follows) return 0;
    h = h % 32 + (gun_aux[0] ? 32 : 0) + (h / 64 % 2) * 64 + (gun_aux[1] ? 128 : 0);
    return send_h();
  }
  int send_lamp(int channel) {
    return send('P', {channel * 16 + lamps[channel] / 256, lamps[channel] % 256});
  }
  int set_lamp(int channel, int value) {
    lamps[channel] = value;
    last_lamp = channel;
    return send_lamp(channel);
  }
  // An order of more tickets: what a running dispenser gets on top, the whole sum for one that
  // stands.
  void send_tickets(int side, int more) {
    owed[side] += more;
    unanswered[side] += more;
    if (!open[side]) ordered[side] = now;
    open[side] = true;
    fault[side] = false;
    if (dispensing[side]) {
      send('T', {more / 256 % 4 + 8 * side, more % 256});
      return;
    }
    send('T', {owed[side] / 256 % 4 + 8 * side + 0x80 + (mode[side] ? 0x10 : 0), owed[side] % 256});
    dispensing[side] = start_unanswered[side] = true;
  }
  void ask_status() {
    status_at = now + 5000;
    ++asked;
    send('s');
  }
  // To a board that has lost what it held.
  void restore_outputs(bool also_dark) {
    for (int channel = 0; channel < 16; ++channel) {
      if (also_dark || lamps[channel] != 0) send_lamp(channel);
    }
    if (also_dark || h != 0) send_h();
  }
  void after_restart() {
    restore_outputs(false);
    for (int side = 0; side < 2; ++side) {
      dispensing[side] = open[side] = start_unanswered[side] = false;
      on_board[side] = 0;
      unanswered[side] = owed[side];
      if (owed[side] > 0 && !fault[side]) send_tickets(side, 0);
    }
  }
  [[nodiscard]] bool order_is_late() const {
    return (open[0] && now - ordered[0] >= 2000) || (open[1] && now - ordered[1] >= 2000);
  }
  void ask_counts() {
    for (int side = 0; side < 2; ++side) {
      const bool stopped = unanswered[side] == 0 && start_unanswered[side];
      if (!open[side] || stopped) continue;
      dispensing[side] = count_asked[side] = true;
      send_tickets(side, 0);
    }
  }
  void order_lost() {
    for (int side = 0; side < 2; ++side) {
      if (!open[side] || count_asked[side]) continue;
      const int lost = unanswered[side];
      if (start_unanswered[side] && lost == 0) dispensing[side] = false;
      unanswered[side] = 0;
      open[side] = start_unanswered[side] = false;
      send_tickets(side, lost);
    }
  }

  // What the board says.

  void hear_counters(const Bytes& frame) {
    if (frame[1] < 0x80) {
      const bool news = synced;
      synced = false;
      send_config();
      send('S');
      if (news) after_restart();
      return;
    }
    for (const ModelInput& row : model_inputs(table)) {
      const int c = row.counter;
      const int value = frame[row.byte] >> row.shift & row.mask;
      if (!synced) {
        offset[c] = static_cast<int>((counters[c] - static_cast<std::uint32_t>(value)) &
                                     static_cast<std::uint32_t>(row.mask));
        raw[c] = value;
      }
      const std::uint32_t before = counters[c];
      if (row.mask == 15) {  // forward, until the low digit fits
        while ((counters[c] - static_cast<std::uint32_t>(offset[c] + value)) % 16 != 0) {
          ++counters[c];
        }
      } else {  // as the hand of a clock takes the nearer way; half round up only if the value fell
        int way = value - raw[c];
        if (way > 128 || (way == 128 && value > raw[c])) way -= 256;
        if (way < -128 || (way == -128 && value < raw[c])) way += 256;
        counters[c] += static_cast<std::uint32_t>(way);
      }
      raw[c] = value;
      if (counters[c] != before) {
        moved = true;
        changed |= row.event;
      }
    }
    synced = true;
  }
  void hear_status(const Bytes& frame) {
    const int queries = asked;
    asked = 0;
    if ((heard != 0 && queries >= 3) || (queries > 0 && answers_due == 0 && order_is_late())) {
      restore_outputs(true);
      send('S');
      ask_counts();
      answers_due += queries;
    } else if (answers_due > 0 && --answers_due == 0) {
      order_lost();
    }
    if (answers_due > 0) ask_status();
    heard = 1 + now / 1000;
    previous_switches = switches;
    switches = 0x10000000;  // two lines are active high
    switches += static_cast<std::uint32_t>((255 - frame[4]) * 65536 + (255 - frame[3]) * 256 +
                                           (63 - frame[2] % 64) + frame[2] / 64 * 64);
    dips = static_cast<std::uint32_t>(0x10000 + 255 - frame[5]);
  }
  void hear_config(const Bytes& frame) {
    const bool a = frame[2] / 64 % 2 == 1, b = frame[2] >= 128;
    if (!known) {
      known = true;
      bit_a = config_pending = a;
      bit_b = b;
    } else if (a) {
      config_pending = false;
    }
    if ((frame[1] & 0xF1) != config_byte()) send_config();
  }
  void hear_tickets(const Bytes& frame) {
    const int side = frame[1] / 8 % 2;
    const bool failed = frame[1] >= 0x40, is_void = frame[1] / 0x40 % 2 == 1;
    bool has_order = true;
    if (is_void) {
      owed[side] = std::min(owed[side], 1023);
    } else {
      owed[side] = frame[1] % 4 * 256 + frame[2];
      reported = reported || owed[side] > 0;
      if (unanswered[side] == 0) {
        has_order = !start_unanswered[side] || owed[side] == 0;
      } else if (owed[side] == on_board[side]) {  // one more, and one paid
        has_order = !failed && answers_due == 0;
      } else {
        has_order = owed[side] > on_board[side];
      }
      has_order = has_order && open[side];
      on_board[side] = owed[side];
      counted[side] = now;
    }
    count_asked[side] = false;
    if (has_order) {
      unanswered[side] = 0;
      open[side] = start_unanswered[side] = false;
    }
    if (failed) {
      dispensing[side] = false;
      fault[side] = true;
    } else if (owed[side] == 0) {
      dispensing[side] = fault[side] = false;
    }
  }
  void hear_keys(const Bytes& frame) {
    const int held = frame[1] * 256 + frame[2];
    for (int key = 0; key < 12; ++key) {
      const bool down = held >> key & 1, was_down = keys >> key & 1;
      if (down && !was_down && key_queue.size() < 32) key_queue.push_back(key);
    }
    keys = held;
  }
  // A frame without its checksum: a letter and pairs of digits.
  void hear(const std::string& text) {
    if (text.empty()) return;
    const char letter = text[0];
    if (letter == '*') {
      if (text == "*W" && !mute) send('W', {watchdog % 256});
      if (text != "*R") return;
      synced = false;
      send_config();
      send('S');
      after_restart();
      return;
    }
    Bytes frame = {letter};
    for (std::size_t at = 1; at + 1 < text.size(); at += 2) {
      frame.push_back(std::stoi(text.substr(at, 2), nullptr, 16));
    }
    const std::size_t size = frame.size();
    if (letter == 'S' && size == 9) hear_counters(frame);
    if (letter == 's' && size >= 6) hear_status(frame);
    if (letter == 'c' && size >= 3) hear_config(frame);
    if (letter == 't' && size >= 3) hear_tickets(frame);
    if (letter == 'K' && size >= 3) hear_keys(frame);
    if (letter == 'u') checksums = true;
    if (letter == 'v' && size >= 3) {
      hardware = frame[1];
      firmware = frame[2];
      table = frame[2] / 16 == 5 ? 1 : 0;
    }
  }

  // A millisecond's round of the pump.

  void step_outputs() {
    if (coin_steps[0] > 0) set_h(0x10, --coin_steps[0] % 2 == 1);
    const auto meter = [this](int& steps, int channel) {
      if (steps > 0) set_lamp(channel, --steps % 2 == 1 ? 4095 : 0);
    };
    meter(coin_steps[1], 0);
    meter(ticket_steps[0], 12);
    meter(ticket_steps[1], 11);
    for (int side = 0; side < 2; ++side) {
      if (lockout[side] != 0) set_lamp(side == 0 ? 10 : 1, lockout[side] > 0 ? 4095 : 0);
      lockout[side] = 0;
    }
  }
  void round(const std::vector<std::string>& frames) {
    if (now >= step_at) {
      step_at = now + 250;
      step_outputs();
    }
    if (now >= status_at) ask_status();
    for (const std::string& frame : frames) hear(frame);
    for (int side = 0; side < 2; ++side) {
      const int batch = std::min(queued[side], 1023 - owed[side]);
      if (batch <= 0 || answers_due > 0) continue;
      if (open[side] && now - ordered[side] < 15000) continue;
      if (!open[side] && dispensing[side] && now - counted[side] >= 200) {
        send_tickets(side, 0);  // it may have paid and not been heard
        continue;
      }
      queued[side] -= batch;
      send_tickets(side, batch);
    }
    alive = heard == 0 || 1 + now / 1000 - heard <= 20;
    dips = static_cast<std::uint32_t>(get_dips());  // whoever looks at the inputs adds its bits
    const int order[9] = {5, 6, 7, 8, 9, 10, 11, 12, 13};
    for (int i = 0; i < 9; ++i) {
      const std::uint32_t ended = counters[order[i]] / 2;
      if (ended <= presses[i].last) continue;
      presses[i].pending += ended - presses[i].last;
      presses[i].last = ended;
    }
  }
  std::uint32_t look(int press) {
    presses[press].looked = true;
    return presses[press].shown = presses[press].pending;
  }
  void clear(int press) {
    ModelPress& it = presses[press];
    it.pending -= it.looked ? it.shown : it.pending;
    it.looked = false;
  }

  // What the game orders.

  void pulse(int (&steps)[2], int side, int count) {
    if (side < 0 || side > 1 || count < 0) return;
    steps[side] += count * 2;
    step_at = now + 250;
  }
  int get_dips() {
    return static_cast<int>(dips) | (known ? 0x20000 : 0) | (known && bit_a ? 0x40000 : 0) |
           (known && bit_b ? 0x80000 : 0);
  }
  static int set(bool& word, int value) {
    word = value != 0;
    return 0;
  }
  int set_config(bool& word, int value) { return set(word, value), send_config(); }
  int set_h_bit(bool& word, int value, int bit) { return set(word, value), set_h(bit, word); }
  int clear_tickets(int side) {
    queued[side] = owed[side] = unanswered[side] = 0;
    if (!open[side]) ordered[side] = now;
    start_unanswered[side] = open[side] = true;
    return send('T', {0x80 + 8 * side + (mode[side] ? 0x10 : 0), 0});
  }
  // An order whose first number is one of two.
  int order_of_one(int number, int one, int value) {
    if (one != 0 && one != 1) return -2;
    if (number == 16) return set_config(gun_aux[one], value);
    if (number == 17) return set_h_bit(gun_output[one], value, one == 0 ? 0x20 : 0x80);
    if (number == 38) return set_h_bit(aux_out[one], value, one == 0 ? 4 : 8);
    if (number == 43) return set(mode[one], value);
    if (number == 44) return clear_tickets(one);
    if (number == 45) return owed[one];
    if (number == 46) return queued[one];
    if (number == 48) return set_config(gun_on[one], value);
    if (number == 37) queued[one] += std::max(value, 0);
    if (number == 50 && value >= 0) queued[one] = value;
    return 0;
  }
  int order(int number, int a, int b, int c, int d) {
    const auto is = [number](std::initializer_list<int> numbers) {
      return std::ranges::find(numbers, number) != numbers.end();
    };
    if (is({16, 17, 37, 38, 43, 44, 45, 46, 48, 50})) return order_of_one(number, a, b);
    if (is({0, 40}) || number > 53) return -9088;
    if (number == 1) return get_dips();
    if (number == 15) return send('W', {watchdog % 256});
    if (number == 19) return ++asked, send('s');
    if (number == 20) return set(mute, a);
    if (number == 28) return send('S');
    if (number == 29) return send('c');
    if (number == 30) return send('v');
    if (number == 31) return set(follows, a);
    if (number == 32) {
      return send('F', {a % 256, b % 256, (a / 16 & 0x30) / 16 + (b & 0x300) / 16, c % 256, d % 256,
                        (c / 16 & 0x70) / 16 + (d & 0x700) / 16});
    }
    if (number == 39) return a < 0 || a > 15 ? -2 : set_lamp(a, b % 4096);
    if (number == 41) return hardware;
    if (number == 42) return firmware;
    if (number == 47) return set_config(c_bit0, a);
    if (number == 21) pulse(coin_steps, a, b);
    if (number == 22) pulse(ticket_steps, a, b);
    if (number == 23 && (a == 0 || a == 1) && b != 0) lockout[a] = b;
    if (number == 33) watchdog = a;
    if (number == 36 && (a == 0 || a == 1)) table = a;
    return 0;  // the rest are reserved, or change nothing here
  }
};
