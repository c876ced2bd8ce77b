// A tune under construction: lines are played into it one by one, then it is mixed down.
#pragma once

#include <string_view>

#include "art/sound/score.h"
#include "art/sound/stroke.h"
#include "art/sound/wave.h"

namespace art::sound {

struct Feel {
  double bpm;
  double swing = 0.5;  // position of the second of two notes; 2/3 is a shuffle
  int swing_unit = 1;  // what is swung, in sixteenths: 1, or 2 for eighths
  bool loop = true;    // what still rings at the end continues at the start
  double tail_s = 0;   // without a loop: time to ring out
};

struct Song {
  Feel feel;
  Signal left, right, send;  // send: to the reverb

  Song(const Feel& how, int bars);
  double seconds_at(double sixteenths) const;
};

struct Place {
  double db;
  double pan = 0;      // -1 left to 1 right
  double send = 0.15;  // to the reverb
  double gate = 0.92;  // share of its length that a note is held
};

// Plays a line, starting at a bar (0 is the first). Adds small variations of timing and force,
// always the same ones.
void play(Song& song, Instrument instrument, const Place& place, const Line& line, int bar = 0);

// A drum with its pattern, from bar `bar` on; hz tunes drums that have a pitch.
void beat(Song& song, Instrument drum, const Place& place, std::string_view pattern, int bar,
          int bars, double hz = 200);

// Adds the room and the final compression. wet: level of the room; drive: how hard it is
// compressed, 1 is gentle.
Wave mix_down(const Song& song, double wet, double drive = 1);

}  // namespace art::sound
