// "Lily Strut": funk from the swamp, with a clavinet, a growling bass, brass and a jaw harp.
#include <initializer_list>

#include "art/sound/catalogue.h"
#include "art/sound/frog_voice.h"
#include "art/sound/theme.h"

namespace art::sound {

namespace {

constexpr int kG = 55;
constexpr const char* kGroove = "17 | 17 | 17 | 17*8 b7*4 47*4 |";
constexpr const char* kTheme = "17 | 47*8 b7*8 | 17*8 b7*8 | 17*16 |";
constexpr const char* kBridge = "47 | 47 | 17 | 57*8 b7*4 47*4 |";

void rhythm(Song& song, int bar, const char* names) {
  const Chords under = chords(names, kG);
  play(song, bass_funk, {-6, 0, 0.02, 0.8},
       bass_line(under, "1..1..7.8.7.5.7.1..1..1.5.7-8.3.", 31), bar);
  play(song, clav, {-13, -0.4, 0.12, 0.7}, comp(under, "..x.x..xo..x.x.o", 62), bar);
  play(song, guitar_muted, {-18, 0.45, 0.1}, comp(under, "o.oox.oo.oo.xoo.", 67), bar);
}

void drums(Song& song) {
  beat(song, kick, {-6, 0, 0}, "X.....x..xx.....X..x..x...x.....", 0, 20);
  beat(song, snare, {-10, 0.05, 0.15}, "....X..o.o..X..o....X..o.o..X.ox", 0, 20);
  beat(song, hat, {-20, 0.3, 0.03}, "xoxoxox.xoxoxoxo", 0, 20);
  beat(song, hat_open, {-23, 0.3, 0.03}, ".......x........", 0, 20);
  beat(song, tambourine, {-23, -0.4, 0.1}, "....x.......x...", 8, 12);
  beat(song, conga, {-19, -0.3, 0.15}, "..x..X..x.x..X..", 4, 16, 240);
  for (int bar : {7, 11, 19}) beat(song, tom, {-13, 0, 0.2}, "............xxXX", bar, 1, 120);
  beat(song, clap, {-18, 0.1, 0.2}, "....x.......x...", 12, 8);
  beat(song, crash, {-24, -0.2, 0.1}, "x...............", 4, 1);
  beat(song, crash, {-24, 0.2, 0.1}, "x...............", 12, 1);
}

Wave strut(int) {
  Song song({.bpm = 100, .swing = 0.56}, 20);
  for (int bar : {0, 4, 8, 12, 16})
    rhythm(song, bar, bar == 0 ? kGroove : bar == 12 ? kBridge : kTheme);
  drums(song);
  beat(song, frog_percussion, {-14, -0.5, 0.2}, "..............x.", 0, 20, 96);
  beat(song, frog_percussion, {-15, 0.5, 0.2}, "......x.........................", 0, 20, 128);

  const Line hop = melody(kHop, kG + 12, kMixolydian), home = melody(kHome, kG + 12, kMixolydian);
  play(song, jaw_harp, {-10, 0.3, 0.2},
       melody("1*2! -*1 1*1 -*2 1*2 -*2 1*2 b7*2 -*2 | -*4 1*2 -*2 1*2 3*2 -*4 |"
              "1*2! -*1 1*1 -*2 1*2 -*2 1*2 b7*2 -*2 | -*4 1*2 -*2 5*2 4*2 b3*2 -*2 |",
              kG - 12),
       0);
  play(song, brass, {-8, -0.15, 0.2, 0.75}, hop, 4);
  play(song, brass, {-8, -0.15, 0.2, 0.75}, home, 8);
  play(song, brass, {-12, 0.3, 0.2, 0.75}, transposed(home, -12), 8);
  play(song, organ, {-20, 0.25, 0.2}, comp(chords(kTheme, kG), "x-------........", 62), 8);
  play(song, organ, {-17, 0.25, 0.2}, comp(chords(kBridge, kG), "x---------------", 62), 12);
  play(song, reed, {-9, 0.1, 0.25, 0.85},
       melody("4*3! 6*3 1'*2 6*2 4*2 -*4 | 6*1 1' 2'*2 1'*2 6*2 4*4 -*4 |"
              "5*3! 3*3 1*2 3*2 5*2 -*4 | 2'*2 1'*2 6*2 5*2 b3*1 3*3 1*2 -*2 |",
              kG + 12, kMixolydian),
       12);
  play(song, brass, {-13, -0.3, 0.2, 0.6},
       melody(
           "-*10 1'*2! -*1 1'*1! -*2 | -*16 | -*10 5*2! -*1 5*1! -*2 | -*8 2*2! 4*2! 6*2! 1'*2! |",
           kG + 12, kMixolydian),
       12);
  play(song, brass, {-8, -0.15, 0.2, 0.75}, home, 16);
  play(song, brass, {-12, 0.3, 0.2, 0.75}, transposed(home, -12), 16);
  play(song, jaw_harp, {-14, 0.35, 0.2}, bass_line(chords(kTheme, kG), "..1...1...1...1.", 43), 16);
  return mix_down(song, 0.8, 1.2);
}

constexpr Row kRows[] = {{"music_strut", Kind::kMusic, true, strut}};

}  // namespace

const Family kStrutFamily = {"art/sound/tune_strut.cpp", kRows, 8};

}  // namespace art::sound
