// The switches on the board, and how it reports them: rolling counters of their edges, and the
// state of the lines.
#pragma once

#include <cstdint>
#include <string>

enum Input {
  INPUT_G1A,
  INPUT_G2A,
  INPUT_G1B,
  INPUT_G2B,
  INPUT_START_LEFT,
  INPUT_START_RIGHT,
  INPUT_COIN_LEFT,
  INPUT_COIN_RIGHT,
  INPUT_VOLUME_UP,
  INPUT_VOLUME_DOWN,
  INPUT_TEST,
  INPUT_SERVICE,
  INPUT_BILL,
  INPUT_TILT,
  INPUT_COUNT,
};

struct Switches {
  bool closed[INPUT_COUNT] = {};
  std::uint8_t counter[INPUT_COUNT] = {};  // 4 bits, one step for each edge
  std::uint8_t ball[2] = {};               // trackball x and y, 8 bits
  long edges[INPUT_COUNT] = {};            // since the cabinet started, for its own count
};

// The name of an input in commands, such as "coin-left".
const char* input_name(int input);

// The input with this name, or with the board's name for it, such as "c1"; -1 if there is none.
int input_find(const std::string& name);

// Opens or closes a switch. Returns whether that was an edge; a closed switch can't be closed
// again.
bool switches_move(Switches& switches, int input, bool closed);

// Restarts all counters, as a restart of the board does.
void switches_restart(Switches& switches, const std::uint8_t (&counters)[INPUT_COUNT]);

// The eight data bytes of an S frame. `trackball`: the second and third byte are the ball, not the
// guns.
void switches_counters(const Switches& switches, bool valid, bool trackball,
                       std::uint8_t (&data)[8]);

// The five data bytes of an s frame. A closed switch is a 0 on its line; so is a DIP switch that is
// on.
void switches_lines(const Switches& switches, std::uint8_t dips, std::uint8_t (&data)[5]);
