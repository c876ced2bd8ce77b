// "Bug Boogie": a fast twelve-bar blues with an organ, a reed and clapping.
#include <initializer_list>

#include "art/sound/catalogue.h"
#include "art/sound/theme.h"

namespace art::sound {

namespace {

constexpr int kD = 50;
constexpr const char* kBlues = "16 | 47 | 16 | 17 | 47 | 47 | 16 | 16 | 57 | 47 | 16 | 57 |";

void rhythm(Song& song, int bar) {
  const Chords under = chords(kBlues, kD);
  play(song, bass_pluck, {-6, 0, 0.03}, bass_line(under, "1-1-3-3-5-5-7-5-1-1-3-3-5-5-7-8-", 33),
       bar);
  play(song, electric_piano, {-14, -0.35, 0.15}, comp(under, "..x-..x-..x-..x-", 64), bar);
  play(song, electric_piano, {-13, -0.15, 0.12}, bass_line(under, "1-1-5-5-7-7-5-5-", 45), bar);
}

Wave boogie(int) {
  Song song({.bpm = 146, .swing = 0.64, .swing_unit = 2}, 24);
  rhythm(song, 0);
  rhythm(song, 12);
  play(
      song, organ, {-12, 0.25, 0.2, 0.85},
      melody(
          "1*4 3*2 5 6*4 5*2 3 | 4*4 6*2 1' b7*2 6 5*4 | 3*4 5*2 3 2 b3 3*4 | 1*2 3 5 b7 1'*4 -*4 |"
          "4*4 6*2 1' 2'*4 1'*2 6 | 4*4 6*2 1' b3' 1' 6 4 | 1*4 3*2 5 6*4 5*2 3 | 1*2 3 5 3 1*4 "
          "-*4 |"
          "5*2 7 2' 7 5 -*2 2'*4 | 4*2 6 1' 6 4 -*2 1'*4 | 1'*2 5 3 1 6 5 3 1 | 5*4! -*4 7*2! 5 "
          "-*4 |",
          kD + 12),
      0);
  play(
      song, reed, {-8, 0.05, 0.2, 0.8},
      melody(
          "-*4 5*2 6 1'*4 6*2 5 | b3*2 3 1*4 -*8 | -*4 5*2 6 1'*4 3'*2 1' | b7*4 5*4 b7*2 1' -*4 |"
          "4'*6! b3'*2 1'*4 6*4 | 4*2 6 1'*4 b3'*2 1' 6*4 | 5*2 6 1' 3' 1'*4 5*4 | b3*2 3 1*4 -*8 |"
          "2'*6! 1'*2 7*4 5*4 | 1'*6! b7*2 6*4 4*4 | 1'*2 6 5 3 b3 3 1 ,6 | 1*4! -*4 2*2! 5 -*4 |",
          kD + 12),
      12);
  play(song, brass, {-13, 0.4, 0.2, 0.6},
       repeated(melody("-*6 3*2! -*8 | -*6 4*2! -*4 4*2! -*2 |", kD + 12), 2, 2), 12);
  play(song, brass, {-13, 0.4, 0.2, 0.6},
       melody("4*4! -*2 4*2! -*8 | -*6 4*2! -*8 | -*6 3*2! -*8 | -*4 5*2! 5! -*2 6*2! b7 7 |"
              "5*4! -*12 | 4*4! -*12 | 3*2! -*2 3! -*10 | 5*4! -*4 7*2! 5! -*4 |",
              kD + 12),
       16);
  play(song, organ, {-22, 0.25, 0.2}, comp(chords(kBlues, kD), "x-----------....", 62), 12);
  beat(song, kick, {-7, 0, 0}, "x.......x.....o.", 0, 24);
  beat(song, snare, {-12, 0.05, 0.15}, "....x.....o.x...", 0, 24);
  beat(song, hat, {-15, 0.3, 0.03}, "x.o.X.o.x.o.X.o.", 0, 24);
  beat(song, clap, {-17, -0.1, 0.25}, "....x.......x...", 12, 12);
  beat(song, tambourine, {-19, -0.4, 0.1}, "..x...x...x...x.", 12, 12);
  beat(song, wood_block, {-18, 0.4, 0.2}, "..........x.x.x.", 3, 1, 1000);
  for (int bar : {11, 23}) beat(song, tom, {-13, -0.1, 0.2}, "........x.x.X.X.", bar, 1, 130);
  beat(song, crash, {-23, 0.2, 0.1}, "x...............", 0, 1);
  beat(song, crash, {-23, -0.2, 0.1}, "x...............", 12, 1);
  return mix_down(song, 0.8, 1.15);
}

constexpr Row kRows[] = {{"music_boogie", Kind::kMusic, true, boogie}};

}  // namespace

const Family kBoogieFamily = {"art/sound/tune_boogie.cpp", kRows, 7};

}  // namespace art::sound
