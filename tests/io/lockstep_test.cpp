// The link beside its model: orders, frames and time at random, and every word and frame compared.
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <random>
#include <string>
#include <vector>

#include "tests/io/link_fixture.h"
#include "tests/io/model_link.h"

namespace {

constexpr unsigned BOOTS = 150;
constexpr int STEPS = 400;

class Lockstep : public LinkTest {
 protected:
  int die(int sides) { return static_cast<int>(dice() % static_cast<unsigned>(sides)); }
  bool once_in(int times) { return die(times) == 0; }
  template <typename T>
  T one_of(const std::vector<T>& values) {
    return values[dice() % values.size()];
  }
  static std::string hex(char letter, const std::vector<int>& bytes) {
    std::string text(1, letter);
    char digits[4];
    for (const int byte : bytes) {
      std::snprintf(digits, sizeof digits, "%02x", static_cast<unsigned>(byte) & 0xFF);
      text += digits;
    }
    return text;
  }

  // Inputs close and open, mostly one at a time; now and then the board starts anew.
  std::string counters_frame() {
    if (once_in(40)) {
      for (int& byte : line) byte = die(256);
    }
    for (int edges = die(3); edges >= 0; --edges) {
      int& byte = line[die(7)];
      byte = once_in(2) ? (byte & 0xF0) | ((byte + 1 + die(3)) & 0x0F) : (byte + 0x10) & 0xFF;
    }
    if (once_in(5)) line[die(2)] += one_of<int>({128, -128, 127, -127, 1, -1});
    std::vector<int> bytes = {once_in(50) ? die(128) : 0x80 + die(128)};
    bytes.insert(bytes.end(), line, line + 7);
    return hex('S', bytes);
  }
  std::string status_frame() {
    return hex('s', {die(256), die(256), die(256), die(256), die(256)});
  }
  // A dispenser pays down to 0, at times with a fault, at times with a void count.
  std::string tickets_frame() {
    const int side = die(2);
    const int left = one_of<int>({0, 1, model.owed[side] - 1, model.owed[side], die(1024)});
    const int fault = one_of<int>({0, 0, 0, 0x40, 0x80, 0xC0});
    return hex('t', {(left < 0 ? 0 : left / 256) + 8 * side + fault + 0x34 * die(2), left});
  }
  std::string frame() {
    const int kind = die(16);
    if (kind < 2) return status_frame() + (once_in(10) ? "77" : "");
    if (kind < 5) return tickets_frame();
    if (kind == 5) return hex('c', {once_in(2) ? model.config_byte() : die(256), die(256)});
    if (kind == 6) return hex('K', {die(16), die(256)});
    if (kind > 7) return counters_frame();
    return one_of<std::string>({"*W", "*W", "*W", "*R", "*X", "*", "G00", "d0102", "Zffff", "S",
                                "c00", "S80000011000000", "S80000011000000001122", "s00000000",
                                "t03", "v5", "v50", "K01",
                                hex('v', {die(256), one_of<int>({0x4F, 0x50, 0x60})})});
  }

  void order() {
    const int number = one_of<int>({0,  1,  6,  11, 12, 13, 15, 16, 17, 19, 20, 21, 22, 23, 24, 25,
                                    26, 27, 28, 29, 30, 31, 32, 33, 34, 36, 37, 37, 37, 38, 39, 39,
                                    40, 41, 42, 43, 44, 45, 46, 47, 48, 49, 50, 52, 54, 255});
    const int a = once_in(10) ? one_of<int>({-1, 2, 15, 16, 0x7FFF}) : die(2);
    int b = one_of<int>({0, 1, 1, 2, die(5000), -1});
    if (number == 39 || number == 32) b = die(0x2000);
    const int c = die(0x800), d = die(0x800);
    int first = a;
    if (number == 32 || number == 33) first = die(0x800);
    if (number == 39 && once_in(2)) first = die(16);
    ASSERT_EQ(jamma_command(number | die(2) << 10, first, b, c, d),
              model.order(number, first, b, c, d))
        << "command " << number << ", " << first << ", " << b;
  }

  void ask_for_tickets(int side) {
    jamma_tickets_ask(side);
    model.dispensing[side] = true;  // an order to add none
    model.send_tickets(side, 0);
  }

  void presses() {
    for (int press = 0; press < PRESS_COUNT; ++press) {
      if (once_in(3)) {
        ASSERT_EQ(jamma_presses_pending(static_cast<JammaPress>(press)), model.look(press))
            << press;
      }
      if (!once_in(3)) continue;
      jamma_presses_clear(static_cast<JammaPress>(press));
      model.clear(press);
    }
  }

  // Mostly the next round; at times a moment at which an output steps, a query is due, the board is
  // taken for lost, an answer to an order is late, the next order goes out, or a count gets old.
  int time_to_pass() {
    if (!once_in(6)) return die(30);
    const int side = die(2);
    const std::int64_t due =
        one_of<std::int64_t>(
            {model.ordered[side] + 2000, model.ordered[side] + 15000, model.counted[side] + 200}) -
        die(2);
    if (due > model.now && due < model.now + 15000) return static_cast<int>(due - model.now);
    return one_of<int>({249, 250, 251, 4999, 5000, 19999, 20000, 20001, die(40000)});
  }

  void step() {
    const int ms = time_to_pass();
    headless_clock_advance(ms);
    model.now += ms;
    // A dead battery's calendar is set by years once a network answers.
    if (once_in(100))
      headless_calendar_set(one_of<std::int64_t>({4'000'000'000, 1'000, -1'000'000'000}));
    for (int orders = die(3); orders > 0; --orders) ASSERT_NO_FATAL_FAILURE(order());
    if (once_in(100)) ask_for_tickets(die(2));
    std::vector<std::string> frames(static_cast<std::size_t>(die(4)));
    for (std::string& text : frames) text = frame();
    if (!model.checksums && once_in(STEPS / 2)) frames = {"u"};
    for (const std::string& text : frames) {
      int sum = 10 + 13;
      for (const char byte : text) sum += byte;
      char digits[4] = "";
      if (model.checksums)
        std::snprintf(digits, sizeof digits, "%02X", static_cast<unsigned>(sum) % 256);
      feed("\n" + text + "\r" + digits);
    }
    Frames told = sent();
    round();
    for (const std::string& text : sent()) told.push_back(text);
    model.round(frames);
    ASSERT_EQ(told, model.out) << (frames.empty() ? "" : frames.front());
    model.out.clear();
    ASSERT_NO_FATAL_FAILURE(presses());
    compare();
  }

  template <typename T>
  static std::intptr_t out(T& value) {
    return reinterpret_cast<std::intptr_t>(&value);
  }

  // What the game asks for by pointers.
  void compare_answers() {
    const bool synced_only = once_in(2), clear = once_in(2);
    std::uint32_t changed = 0, flags = 0;
    const Shared<std::uint32_t>* wide = nullptr;
    const int answer =
        jamma_command(JAMMA_GET_COUNTERS | (synced_only ? 0x200 : 0) | (clear ? 0x100 : 0),
                      out(changed), out(wide));
    const int refused = synced_only ? (model.synced ? 0 : -9090) : (model.moved ? 0 : -9089);
    ASSERT_EQ(answer, refused);
    if (refused == 0) {
      ASSERT_EQ(changed, model.changed);
      ASSERT_EQ(wide, link->inputs.counters);
      if (clear) model.changed = 0;
    }
    ASSERT_EQ(link->changed, model.changed);
    ASSERT_EQ(jamma_command(JAMMA_GET_FLAGS, out(flags)), 0);
    ASSERT_EQ(flags, model.flags());
    std::uint8_t guns = 0;
    ASSERT_EQ(jamma_command(JAMMA_GET_GUN_OUTPUT, out(guns)), 0);
    ASSERT_EQ(guns, (model.gun_output[0] ? 1 : 0) + (model.gun_output[1] ? 2 : 0));
    const JammaInputs* inputs = nullptr;
    ASSERT_EQ(jamma_command(JAMMA_GET_INPUTS, out(inputs)), 0);
    ASSERT_EQ(inputs, &link->inputs);
    struct {
      std::uint8_t raw[COUNTER_COUNT] = {}, behind = 0x5A;
    } board;
    ASSERT_EQ(jamma_board_counters(board.raw), model.synced);
    ASSERT_EQ(board.behind, 0x5A);
    for (int i = 0; model.synced && i < COUNTER_COUNT; ++i)
      ASSERT_EQ(board.raw[i], model.raw[i]) << i;
    char text[32], expected[32];
    ASSERT_EQ(jamma_command(JAMMA_GET_VERSION_TEXT, reinterpret_cast<std::intptr_t>(text), 32), 0);
    std::snprintf(expected, sizeof expected, "19l.H%02X.F%02X R",
                  static_cast<unsigned>(model.hardware), static_cast<unsigned>(model.firmware));
    ASSERT_STREQ(text, expected);
  }

  void compare() {
    ASSERT_NO_FATAL_FAILURE(compare_answers());
    for (int i = 0; i < COUNTER_COUNT; ++i) {
      ASSERT_EQ(link->inputs.counters[i], model.counters[i]) << i;
      ASSERT_EQ(link->counter_last_raw[i], model.raw[i]) << i;
    }
    ASSERT_EQ(link->inputs.switches, model.switches);
    ASSERT_EQ(link->inputs.previous_switches, model.previous_switches);
    ASSERT_EQ(link->inputs.dips, model.dips);
    ASSERT_EQ(link->hardware_version, static_cast<unsigned>(model.hardware));
    ASSERT_EQ(link->firmware_version, static_cast<unsigned>(model.firmware));
    ASSERT_EQ(link->input_table, static_cast<unsigned>(model.table));
    ASSERT_EQ(link->watchdog_byte, static_cast<unsigned>(model.watchdog));
    ASSERT_EQ(link->keys, static_cast<unsigned>(model.keys));
    ASSERT_EQ(std::vector<int>(link->key_queue, link->key_queue + link->key_count),
              model.key_queue);
    ASSERT_EQ(link->h_bits, static_cast<unsigned>(model.h));
    ASSERT_EQ(link->last_lamp, static_cast<unsigned>(model.last_lamp));
    for (int i = 0; i < LAMP_CHANNELS; ++i) {
      ASSERT_EQ(link->lamp_value[i], static_cast<unsigned>(model.lamps[i])) << i;
    }
    for (int side = 0; side < 2; ++side) {
      ASSERT_EQ(link->tickets_queued[side], model.queued[side]);
      ASSERT_EQ(link->tickets_owed[side], model.owed[side]);
      ASSERT_EQ(link->tickets_unanswered[side], model.unanswered[side]);
      ASSERT_EQ(link->start_unanswered[side], model.start_unanswered[side]);
      ASSERT_EQ(link->order_open[side], model.open[side]);
      ASSERT_EQ(link->count_asked[side], model.count_asked[side]);
      ASSERT_EQ(link->tickets_in_flight[side], 0);
    }
    ASSERT_EQ(jamma_tickets_reported(), model.reported);
    ASSERT_EQ(jamma_link_alive(), model.alive);
  }

  std::mt19937 dice;
  LinkModel model;
  int line[7] = {};  // the board's counters, as an S frame carries them
};

TEST_F(Lockstep, LinkFollowsItsModel) {
  for (unsigned seed = 0; seed < BOOTS; ++seed) {
    SCOPED_TRACE(seed);
    TearDown();
    // Its origin is unknown, and it wraps after 49 days.
    first_tick = 0x30000000 * seed - 0x8000;
    ASSERT_NO_FATAL_FAILURE(SetUp());
    dice.seed(seed);
    model = {};
    model.last_lamp = 14;
    model.now = clock_ms();
    model.round({});
    ASSERT_EQ(start_frames, (Frames{"c", "C0081", "v", "S", "P0000", "P2000", "P3000", "P5000",
                                    "P7000", "Pf000", "Pd000", "Pe000"}));
    ASSERT_EQ(first_round, model.out);
    model.out.clear();
    for (int i = 0; i < STEPS; ++i) {
      ASSERT_NO_FATAL_FAILURE(step()) << "step " << i;
    }
  }
}

}  // namespace
