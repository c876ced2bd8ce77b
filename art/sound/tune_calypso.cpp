// "Pond Calypso": steel pan and marimba by a warm pond. The first tune, with the theme at its
// simplest.
#include <initializer_list>

#include "art/sound/catalogue.h"
#include "art/sound/frog_voice.h"
#include "art/sound/theme.h"

namespace art::sound {

namespace {

constexpr int kC = 60;

struct Part {
  int bar;
  const char* tune;
  const char* under;
};
constexpr Part kForm[] = {{0, kHop, kHopChords},         {4, kHome, kHomeChords},
                          {8, kFarBank, kFarBankChords}, {12, kHome, kHomeChords},
                          {16, nullptr, kHopChords},     {20, kHome, kHomeChords}};

void rhythm(Song& song, int bar, const Chords& under) {
  play(song, bass_pluck, {-5, 0, 0.03}, bass_line(under, "1--.5-8-..1-5-3-", 36), bar);
  play(song, marimba, {-15, 0.35, 0.2}, arpeggio(under, "1.3.2.3.1.4.2.3.", 64), bar);
  play(song, ukulele, {-17, -0.45, 0.15}, comp(under, "..x-..x-..x-.ox-", 64), bar);
}

void percussion(Song& song) {
  beat(song, kick, {-9, 0, 0}, "x.....x.x.....x.", 0, 24);
  beat(song, rim, {-17, 0.1, 0.2}, "....x.......x..o", 0, 24);
  beat(song, shaker, {-10, 0.5, 0.05}, "xoXoxoXoxoXoxoXo", 0, 24);
  beat(song, conga, {-15, -0.3, 0.15}, "..o...X...o...x.", 0, 24, 290);
  beat(song, conga, {-14, -0.15, 0.15}, ".......o......xx", 0, 24, 205);
  beat(song, cowbell, {-20, 0.3, 0.15}, "x..x..x...x.x...", 8, 16);
  beat(song, guiro, {-17, -0.55, 0.1}, "x.......x...x...", 4, 20);
  for (int bar : {3, 11, 19, 23}) {
    beat(song, tom, {-14, -0.2, 0.2}, "..........x.....", bar, 1, 190);
    beat(song, tom, {-14, 0.2, 0.2}, "............xx..", bar, 1, 140);
  }
  beat(song, frog_percussion, {-17, 0.6, 0.3}, "............x...", 7, 1, 110);
  beat(song, frog_percussion, {-17, -0.6, 0.3}, "............x.x.", 15, 1, 140);
  beat(song, tambourine, {-22, -0.45, 0.1}, "....x.......x...", 12, 12);
  beat(song, hat, {-15, 0.25, 0.03}, "..x...x...x...x.", 4, 20);
  beat(song, crash, {-24, 0.2, 0.1}, "x...............", 0, 1);
  beat(song, crash, {-24, 0.2, 0.1}, "x...............", 12, 1);
}

Wave calypso(int) {
  Song song({.bpm = 108, .swing = 0.53}, 24);
  for (const Part& part : kForm) {
    const Chords under = chords(part.under, kC);
    rhythm(song, part.bar, under);
    if (!part.tune) continue;
    const Line tune = melody(part.tune, kC + 12);
    play(song, steelpan, {-6, -0.1, 0.25}, tune, part.bar);
    if (part.bar >= 12) play(song, steelpan, {-13, 0.25, 0.25}, transposed(tune, -12), part.bar);
  }
  // The pan rests; marimba and brass alternate.
  play(song, marimba, {-6, 0.2, 0.25},
       melody("5*1 6 1'*2 6*1 5 3*2 -*8 | 4*1 5 6*2 5*1 4 2*2 -*8 |"
              "3*1 5 1'*2 5*1 3 1*2 2 4 ,7*4 | 1*1 3 5 1' 3'*2 1'*2 5*2 1'*2 -*4 |",
              kC + 12),
       16);
  play(song, brass, {-14, -0.3, 0.25},
       melody("-*8 1*3 3*3 5*2 | -*8 ,7*3 2*3 4*2 | -*16 | -*8 3*2! 5*2! 1'*2! -*2 |", kC), 16);
  play(song, brass, {-17, 0.35, 0.25},
       melody("-*14 6*1 7 | 1'*6 -*6 6*2 6*2 | 5*4 -*4 4*4 -*4 | 3*3 5*3 1'*2! 1'*4! -*4 |", kC),
       12);
  play(song, brass, {-17, 0.35, 0.25},
       melody("3*6 -*10 | 4*6 -*6 6*2 6*2 | 5*4 -*4 4*4 -*4 | 3*3 5*3 1'*2! 1'*4! -*4 |", kC), 20);
  percussion(song);
  return mix_down(song, 0.9, 1.1);
}

constexpr Row kRows[] = {{"music_calypso", Kind::kMusic, true, calypso}};

}  // namespace

const Family kCalypsoFamily = {"art/sound/tune_calypso.cpp", kRows, 8};

}  // namespace art::sound
