// "Jackpot Samba": the frog is across. A fanfare, the theme in full brass while the show lasts, and
// a last chord to end it.
#include "art/sound/catalogue.h"
#include "art/sound/theme.h"

namespace art::sound {

namespace {

constexpr int kD = 62;

void brass_section(Song& song, const Line& line, int bar) {
  play(song, brass, {-8, -0.25, 0.25, 0.8}, line, bar);
  play(song, brass, {-10, 0.3, 0.25, 0.8}, transposed(line, -12), bar);
}

void samba(Song& song, int bars) {
  beat(song, kick, {-7, 0, 0}, "x..ox..ox..ox..o", 0, bars);
  beat(song, tom, {-11, 0.1, 0.1}, "....X..x....X.xx", 0, bars, 82);
  beat(song, snare, {-17, 0.1, 0.15}, "xooxooxoxooXooxo", 0, bars);
  beat(song, shaker, {-18, -0.4, 0.05}, "XooxXooxXooxXoox", 0, bars);
  beat(song, tambourine, {-21, 0.45, 0.1}, "x.oxx.oxx.oxx.ox", 0, bars);
  beat(song, cowbell, {-21, -0.3, 0.15}, "x.x..x.x.xx.x.x.", 0, bars);
  beat(song, conga, {-16, 0.35, 0.15}, "..X...xx..X...xx", 0, bars, 260);
}

Wave jackpot(int) {
  Song song({.bpm = 132, .swing = 0.52}, 16);
  const struct {
    int bar;
    const char *tune, *under;
  } form[] = {{0, kHop, kHopChords},
              {4, kHome, kHomeChords},
              {8, kFarBank, kFarBankChords},
              {12, kHome, kHomeChords}};
  for (const auto& part : form) {
    const Chords under = chords(part.under, kD);
    const Line tune = melody(part.tune, kD + 12);
    brass_section(song, tune, part.bar);
    play(song, bell, {-17, 0.1, 0.3}, transposed(tune, 12), part.bar);
    play(song, bass_funk, {-6, 0, 0.02, 0.85}, bass_line(under, "1..51..51..58.5.", 33), part.bar);
    play(song, marimba, {-14, 0.4, 0.2}, arpeggio(under, "1232434212324342", 67), part.bar);
    play(song, ukulele, {-16, -0.45, 0.15}, comp(under, "x.xx.x.xx.x.xx.x", 66), part.bar);
    beat(song, crash, {-22, part.bar % 8 ? 0.3 : -0.3, 0.1}, "x...............", part.bar, 1);
  }
  play(song, brass, {-15, 0, 0.25, 0.6}, comp(chords(kFarBankChords, kD), "..x..x....x..x..", 62),
       8);
  play(song, whistle, {-17, 0.2, 0.3},
       melody("-*8 5'*1! - 5'! - 5'*4! | -*16 | -*8 6'*1! - 6'! - 6'*4! | -*16 |", kD + 12), 8);
  samba(song, 16);
  return mix_down(song, 0.9, 1.35);
}

Wave fanfare(int) {
  Song song({.bpm = 132, .loop = false, .tail_s = 0.5}, 1);
  const Line call = melody("1*1! 1! 1! 3*2! 5*2! 1'*7! -*2 |", kD + 12);
  brass_section(song, call, 0);
  play(song, brass, {-11, 0, 0.25, 0.9}, melody("-*3 1*2! 3! 5*7! -*2 |", kD + 12), 0);
  play(song, bell, {-12, 0.1, 0.4}, melody("-*7 1'*1 3' 5' 1' 3' 5' 1' -*2 |", kD + 12), 0);
  play(song, bass_funk, {-7, 0, 0}, melody("-*3 1*2! 5! 1*7! -*2 |", kD - 24), 0);
  beat(song, snare, {-12, 0, 0.2}, "xxxX.X.X.oooxxxX", 0, 1);
  beat(song, kick, {-6, 0, 0}, "...X.X.X........", 0, 1);
  beat(song, crash, {-15, 0, 0.2}, ".......X........", 0, 1);
  return mix_down(song, 1.0, 1.3);
}

Wave farewell(int) {
  Song song({.bpm = 132, .loop = false, .tail_s = 0.9}, 1);
  const Line end = melody("1*3! 5*3! 1'*2! 1'*8! |", kD + 12);
  brass_section(song, end, 0);
  play(song, brass, {-12, 0, 0.25}, comp(chords("1*8 16*8 |", kD), "x..x..x-x-------", 62), 0);
  play(song, bell, {-14, 0.1, 0.4}, melody("-*8 5*1 1' 3' 5' 1'*4 |", kD + 12), 0);
  play(song, bass_funk, {-7, 0, 0}, melody("1*3! 5*3! 1'*2! 1*8! |", kD - 24), 0);
  beat(song, kick, {-6, 0, 0}, "x..x..x.X.......", 0, 1);
  beat(song, snare, {-13, 0, 0.2}, "x..x..xxX.......", 0, 1);
  beat(song, crash, {-16, 0, 0.2}, "........X.......", 0, 1);
  return mix_down(song, 1.0, 1.25);
}

constexpr Row kRows[] = {{"music_jackpot", Kind::kMusic, true, jackpot},
                         {"jackpot_fanfare", Kind::kMusic, false, fanfare},
                         {"jackpot_farewell", Kind::kMusic, false, farewell}};

}  // namespace

const Family kJackpotFamily = {"art/sound/tune_jackpot.cpp", kRows, 4};

}  // namespace art::sound
