// The two stations of the cabinet.
#pragma once

enum Side { LEFT = 0, RIGHT = 1, SIDES = 2 };

inline const char* side_name(int side) {
  return side == LEFT ? "left" : "right";
}
