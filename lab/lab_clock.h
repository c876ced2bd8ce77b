// The lab's pace: the ticks of a cabinet that is never late.
#pragma once

// A tick comes with the first whole millisecond that is 1/60 s past the last one.
constexpr int TICK_STEP_MS = 17;

// A hop and a rest take 0.35 s each, and end with the first tick beyond.
constexpr int HOP_TICKS = 350 / TICK_STEP_MS + 1;
