// "Sunny Float": on a leaf in the sun, with ukulele, whistle and a lazy shuffle. The theme at half
// pace.
#include <initializer_list>

#include "art/sound/catalogue.h"
#include "art/sound/theme.h"

namespace art::sound {

namespace {

constexpr int kF = 53;
constexpr const char* kFirst = "1 | 6m | 4 | 57 | 1 | 57 | 16 | 57 |";
constexpr const char* kSecond = "1 | 6m | 4 | 57 | 1 | 57 | 1*8 47*8 | 1*16 |";
constexpr const char* kMiddle = "4 | 4 | 1 | 17 | 2m7 | 2m7 | 57 | 57 |";

constexpr const char* kFirstTune =
    "1*4 3*4 5*6 -*2 | 6*4 5*4 3*6 -*2 | 4*4 6*4 1'*4 6*4 | 5*12 -*4 |"
    "3*4 5*4 3*6 -*2 | 2*4 4*4 2*6 -*2 | 1*2 3*2 5*2 3*2 1*4 6*4 | 5*10 -*6 |";
constexpr const char* kSecondTune =
    "1*4 3*4 5*6 -*2 | 6*4 5*4 3*6 -*2 | 4*4 6*4 1'*4 2'*4 | 7*8 6*2 5*2 -*4 |"
    "5*4 1'*4 5*6 -*2 | 4*4 2*4 ,7*4 2*4 | 1*2 3*2 5*2 1'*6 6*4 | 1'*8 -*8 |";

void rhythm(Song& song, int bar, const char* names) {
  const Chords under = chords(names, kF);
  play(song, bass_pluck, {-5, 0, 0.03}, bass_line(under, "1---..1-5---..3-", 29), bar);
  // A strum goes down through the strings and up again.
  const Line down = comp(under, "X---....x---....", 66), up = comp(under, "......o-..o-..o-", 66);
  for (size_t i = 0; i < 4; i++) {
    Line string;
    for (const Line* strum : {&down, &up})
      for (size_t k = 0; k < strum->size(); k++)
        if (k % 4 == (strum == &down ? i : 3 - i)) string.push_back((*strum)[k]);
    play(song, ukulele, {-11, -0.35 + 0.06 * static_cast<double>(i), 0.15},
         shifted(string, 0.13 * static_cast<double>(i)), bar);
  }
}

Wave float_along(int) {
  Song song({.bpm = 120, .swing = 0.62, .swing_unit = 2}, 24);
  rhythm(song, 0, kFirst);
  rhythm(song, 8, kMiddle);
  rhythm(song, 16, kSecond);
  play(song, whistle, {-8, 0.1, 0.35}, melody(kFirstTune, kF + 24), 0);
  play(song, kalimba, {-11, 0.4, 0.25},
       melody("-*16 | -*16 | -*16 | -*4 1'*2 6*2 5*2 4*2 2*4 | -*16 | -*16 | -*16 | -*4 5*2 6 7 1' "
              "2'*4 |",
              kF + 12),
       0);
  play(
      song, kalimba, {-7, 0.15, 0.25},
      melody(
          "6*4 6*2 7 1'*4 6*4 | 4*2 6 1'*4 6*2 4 -*4 | 5*4 5*2 6 5*4 3*4 | 5*2 b7 1'*4 b7*2 5 -*4 |"
          "4*4 4*2 5 6*4 1'*4 | 2'*2 1' 6 4 2*4 -*4 | 7*4 7*2 6 5*4 2*4 | 5*2 6 7 2' 5*4 -*4 |",
          kF + 12),
      8);
  play(song, reed, {-16, -0.3, 0.25},
       melody("1*12 -*4 | 1*12 -*4 | ,5*12 -*4 | ,b7*12 -*4 | 1*12 -*4 | 2*12 -*4 | 2*12 -*4 |"
              "4*8 5*6 -*2 |",
              kF),
       8);
  play(song, whistle, {-8, 0.1, 0.35}, melody(kSecondTune, kF + 24), 16);
  play(song, reed, {-13, -0.25, 0.25, 0.8}, melody(kSecondTune, kF + 12), 16);
  play(song, marimba, {-15, 0.45, 0.2}, arpeggio(chords(kSecond, kF), "1.2.3.4.3.2.3.2.", 65), 16);
  beat(song, kick, {-10, 0, 0}, "x.......x.....o.", 0, 24);
  beat(song, shaker, {-12, 0.4, 0.05}, "o.x.X.x.o.x.X.x.", 0, 24);
  beat(song, rim, {-19, -0.1, 0.25}, "....x.......x...", 0, 8);
  beat(song, clap, {-20, 0.1, 0.3}, "....x.......x...", 16, 8);
  beat(song, tambourine, {-19, -0.4, 0.1}, "....x.......x...", 8, 16);
  beat(song, wood_block, {-19, 0.3, 0.2}, "x.......o.x.....", 8, 8, 880);
  beat(song, conga, {-18, -0.35, 0.15}, "..x.....o.x...x.", 16, 8, 250);
  return mix_down(song, 1.0, 1.0);
}

constexpr Row kRows[] = {{"music_float", Kind::kMusic, true, float_along}};

}  // namespace

const Family kFloatFamily = {"art/sound/tune_float.cpp", kRows, 9};

}  // namespace art::sound
