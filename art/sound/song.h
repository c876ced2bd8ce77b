// A tune under construction: lines are played into it one after the other, then it is mixed down.
#pragma once

#include <string_view>

#include "art/sound/score.h"
#include "art/sound/stroke.h"
#include "art/sound/wave.h"

namespace art::sound {

struct Feel {
  double bpm;
  double swing = 0.5;  // where the second of two falls between them; 2/3 is a shuffle
  int swing_unit = 1;  // what swings, in sixteenths: 1, or 2 for eighths
  bool loop = true;    // what rings on past the end goes on at the start
  double tail_s = 0;   // if it doesn't loop: for the ringing out
};

struct Song {
  Feel feel;
  Signal left, right, send;  // send: what goes to the reverb

  Song(const Feel& how, int bars);
  double seconds_at(double sixteenths) const;
};

struct Place {
  double db;
  double pan = 0;      // -1 left to 1 right
  double send = 0.15;  // to the reverb
  double gate = 0.92;  // how much of its length a note is held
};

// Plays a line from a bar on (0 the first). A little unevenness in time and force is added, the
// same each time.
void play(Song& song, Instrument instrument, const Place& place, const Line& line, int bar = 0);

// A drum by its pattern, over bars from `bar` on; hz tunes those that have a pitch.
void beat(Song& song, Instrument drum, const Place& place, std::string_view pattern, int bar,
          int bars, double hz = 200);

// Adds the room, glues it together. wet: the room's level; drive: how hard it is pressed, 1 gentle.
Wave mix_down(const Song& song, double wet, double drive = 1);

}  // namespace art::sound
