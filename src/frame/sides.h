// The two stations of the cabinet. Left is always handled first.
#pragma once

enum Side { SIDE_LEFT = 0, SIDE_RIGHT = 1, SIDE_COUNT = 2 };
