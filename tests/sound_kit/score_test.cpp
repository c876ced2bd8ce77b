// The notation of the music, loops, swing, and the instruments' tuning.
#include "art/sound/score.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <vector>

#include "art/sound/drums.h"
#include "art/sound/mallets.h"
#include "art/sound/song.h"
#include "art/sound/strings.h"
#include "art/sound/winds.h"

using namespace art::sound;

namespace {

std::vector<int> pitches(const Line& line) {
  std::vector<int> out;
  for (const Note& note : line) out.push_back(note.midi);
  return out;
}

TEST(Melody, ReadsDegreesLengthsAndMarks) {
  const Line line = melody("1*3 b7*2! ,5 -*4 1'*2? #4*3 |", 60, kMajor);
  EXPECT_EQ(pitches(line), (std::vector<int>{60, 70, 55, 72, 66}));
  EXPECT_EQ(line[2].length, 2) << "the last length goes on";
  EXPECT_EQ(line[3].at, 11);
  EXPECT_EQ(line[4].length, 3);
  EXPECT_GT(line[1].velocity, line[0].velocity);
  EXPECT_LT(line[3].velocity, line[0].velocity);
}

TEST(Melody, UsesTheStepsOfItsMode) {
  EXPECT_EQ(pitches(melody("3*8 7 |", 60, kMinor)), (std::vector<int>{63, 70}));
  EXPECT_EQ(pitches(melody("3*8 7 |", 60, kMixolydian)), (std::vector<int>{64, 70}));
}

TEST(ScoreDeath, WrongNotationEndsWithItsReason) {
  const auto code = testing::ExitedWithCode(1);
  EXPECT_EXIT(melody("1*8 2*4 | 3*16 |", 60), code, "bar isn't full");
  EXPECT_EXIT(melody("1*8 9*8 |", 60), code, "degree of 1 to 7");
  EXPECT_EXIT(melody("1*8 2*0 |", 60), code, "length above 0");
  EXPECT_EXIT(chords("1*8 |", 60), code, "bar isn't full");
  EXPECT_EXIT(hits("x..x", 1), code, "16 signs");
  EXPECT_EXIT(bass_line(chords("1", 60), "1...2...........", 36), code, "unknown sign");
}

TEST(Chords, GiveNotesForBassAndComp) {
  const Chords two = chords("2m7*8 57*8 |", 60);
  EXPECT_EQ(pitches(bass_line(two, "1.3.5.7.1.3.5.8.", 36)),
            (std::vector<int>{38, 41, 45, 48, 43, 47, 50, 55}));
  for (const Note& note : comp(two, "x.......x.......", 64)) {
    EXPECT_GE(note.midi, 58);
    EXPECT_LE(note.midi, 69);
  }
  // A held chord ends where the next begins.
  EXPECT_EQ(comp(two, "x---------------", 64)[0].length, 8);
}

// An instrument of two clicks, half a second apart.
Signal tick(const Stroke& stroke) {
  Signal out(static_cast<size_t>(kRate / 2));
  out[0] = static_cast<float>(stroke.velocity);
  out.back() = 0.25f;
  return out;
}

TEST(Song, EndOfALoopRingsIntoItsStart) {
  Song loop({.bpm = 240}, 1), once({.bpm = 240, .loop = false}, 1);
  for (Song* song : {&loop, &once}) play(*song, tick, {0}, melody("-*15 1*1 |", 60));
  ASSERT_EQ(loop.left.size(), 44100u);
  // Played at 15/16 s, its second click is at 7/16 s of the next round.
  float rung = 0, cut = 0;
  for (size_t i = 18000; i < 21000; i++) {
    rung += loop.left[i];
    cut += once.left[i];
  }
  EXPECT_GT(rung, 0.1f);
  EXPECT_EQ(cut, 0);
}

TEST(Song, SwingDelaysOffbeatsOnly) {
  const Song straight({.bpm = 120}, 1), shuffle({.bpm = 120, .swing = 2.0 / 3, .swing_unit = 2}, 1);
  EXPECT_NEAR(straight.seconds_at(2), 0.25, 1e-9);
  EXPECT_NEAR(shuffle.seconds_at(2), 1.0 / 3, 1e-9);
  EXPECT_NEAR(shuffle.seconds_at(4), 0.5, 1e-9) << "beats are not moved";
}

// The highest point of the spectrum within a semitone of the pitch, in cents from it.
double cents_off(const Signal& sound, double hz) {
  const size_t n = std::min(sound.size(), frames_of(0.4));
  double best = 0, found = 0;
  for (double cents = -100; cents <= 100; cents += 1) {
    const double step = kTau * hz * std::pow(2, cents / 1200) / kRate;
    double re = 0, im = 0;
    for (size_t i = 0; i < n; i++) {
      const double t = static_cast<double>(i);
      const double w = sound[i] * (0.5 - 0.5 * std::cos(kTau * t / static_cast<double>(n)));
      re += w * std::cos(step * t);
      im += w * std::sin(step * t);
    }
    if (re * re + im * im > best) best = re * re + im * im, found = cents;
  }
  return found;
}

TEST(Instruments, AreInTune) {
  const struct {
    const char* name;
    Instrument play;
    int low, high;
  } table[] = {{"marimba", marimba, 48, 84},     {"kalimba", kalimba, 60, 84},
               {"steelpan", steelpan, 60, 84},   {"bell", bell, 72, 96},
               {"ukulele", ukulele, 55, 79},     {"bass_pluck", bass_pluck, 31, 55},
               {"bass_funk", bass_funk, 31, 55}, {"clav", clav, 55, 72},
               {"jaw_harp", jaw_harp, 43, 55},   {"brass", brass, 50, 86},
               {"whistle", whistle, 72, 96},     {"reed", reed, 60, 84},
               {"organ", organ, 55, 79},         {"electric_piano", electric_piano, 50, 72}};
  for (const auto& instrument : table)
    for (int midi = instrument.low; midi <= instrument.high; midi += 12) {
      const double hz = hz_of_midi(midi);
      EXPECT_NEAR(cents_off(instrument.play({hz, 0.5, 0.8, 5}), hz), 0, 12)
          << instrument.name << " at " << midi;
    }
}

TEST(Instruments, EndWithTheNoteAndStayInRange) {
  for (Instrument instrument :
       {marimba,    kalimba, steelpan, bell,  wood_block, ukulele,  guitar_muted, bass_pluck,
        bass_funk,  clav,    jaw_harp, brass, whistle,    reed,     organ,        electric_piano,
        kick,       snare,   rim,      clap,  hat,        hat_open, crash,        shaker,
        tambourine, guiro,   conga,    tom,   cowbell})
    for (double hz : {55.0, 220.0, 1760.0}) {
      const Signal sound = instrument({hz, 0.2, 1, 3});
      ASSERT_FALSE(sound.empty());
      float peak = 0;
      for (float x : sound) {
        ASSERT_TRUE(std::isfinite(x));
        peak = std::max(peak, std::abs(x));
      }
      EXPECT_GT(peak, 0.05f) << hz;
      EXPECT_LT(peak, 8.0f) << hz;
      EXPECT_LT(std::abs(sound.back()), 0.02f * peak) << hz;
    }
}

}  // namespace
