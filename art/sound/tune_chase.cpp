// "Heron!": somebody hungry is after the frog. The theme in minor and in a hurry. The operator
// hears it when setting the volume, so it covers the whole frequency range.
#include <initializer_list>

#include "art/sound/catalogue.h"
#include "art/sound/theme.h"

namespace art::sound {

namespace {

constexpr int kA = 57;
constexpr const char* kRun = "1m | 1m | b7 | 57*8 57*8 |";

Wave chase(int) {
  Song song({.bpm = 164}, 16);
  for (int bar : {0, 4, 8, 12}) {
    const Chords under = chords(bar == 8 ? "4m | 1m | 4m | 57 |" : kRun, kA);
    play(song, bass_funk, {-7, 0, 0.02, 0.7}, bass_line(under, "1.181.181.181.15", 33), bar);
    play(song, marimba, {-11, 0.35, 0.2}, arpeggio(under, "1234321412343214", 69), bar);
    play(song, clav, {-17, -0.4, 0.1, 0.6}, comp(under, "x..x..x.x..x.x..", 64), bar);
    beat(song, crash, {-23, 0.2, 0.1}, "x...............", bar, 1);
  }
  const Line hop = melody(
      "1*3 3*3 5*2 6*3 5*3 3*2 | 4*3 3*3 1*2 3*2 1 ,5*4 | ,7*3 2*3 4*2 6*3 4*3 2*2 |"
      "#7*2 2' #7 5 2*4 -*4 |",
      kA + 12, kMinor);
  play(song, reed, {-9, -0.1, 0.2, 0.7}, hop, 0);
  play(song, brass, {-9, -0.15, 0.2, 0.7}, hop, 4);
  play(song, reed, {-12, 0.25, 0.2, 0.7}, transposed(hop, 12), 4);
  play(song, brass, {-10, 0.1, 0.2, 0.7},
       melody(
           "4*6! 6*2 1'*4 6*4 | 5*6! 3*2 1*4 -*4 | 4*6! 6*2 1'*4 2'*4 | #7*3! #7*3! 6*2 5*4 -*4 |",
           kA + 12, kMinor),
       8);
  play(song, brass, {-9, -0.15, 0.2, 0.7}, hop, 12);
  play(song, brass, {-12, 0.3, 0.2, 0.7}, transposed(hop, -12), 12);
  beat(song, kick, {-6, 0, 0}, "X...x...X...x...", 0, 16);
  beat(song, snare, {-13, 0.05, 0.12}, "..x...x...x...xo", 0, 16);
  beat(song, hat, {-18, 0.3, 0.03}, "xoxoxoxoxoxoxoxo", 0, 16);
  beat(song, wood_block, {-18, -0.4, 0.15}, "x.xxx.xxx.xxx.xx", 8, 4, 820);
  for (int bar : {3, 7, 11, 15}) beat(song, tom, {-12, 0, 0.2}, "........xxxxXXXX", bar, 1, 120);
  return mix_down(song, 0.7, 1.2);
}

constexpr Row kRows[] = {{"music_chase", Kind::kMusic, true, chase}};

}  // namespace

const Family kChaseFamily = {"art/sound/tune_chase.cpp", kRows, 5};

}  // namespace art::sound
