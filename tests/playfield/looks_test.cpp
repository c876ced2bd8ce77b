// Size, alpha, rings, idle animation and pitch: what the rules compute for eye and ear alone.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <set>
#include <vector>

#include "books/audits.h"
#include "frame/game_clock.h"
#include "gfx/panel_table.h"
#include "playfield/awards.h"
#include "playfield/frog_queue.h"
#include "playfield/looks.h"
#include "tests/fakes/jps_fake.h"
#include "tests/playfield/field.h"

namespace {

class Looks : public Field {};

TEST_F(Looks, ScaleAndAlphaFollowTimeInState) {
  constexpr float HELD = 1.7F;  // the scale from before
  constexpr int KEPT = 99;      // the alpha from before
  const struct {
    FrogState state;
    std::int64_t sink_ms;
    float t, scale;
    int alpha;
  } rows[] = {
      {FROG_WINNING, 0, 0.0F, 1.0F, 255},           // grows slowly,
      {FROG_WINNING, 0, 0.125F, 1.265625F, 255},    // beating twice a second
      {FROG_WINNING, 0, 0.375F, 0.796875F, 255},    //
      {FROG_WINNING, 0, 3.5F, 1.4375F, 255},        //
      {FROG_WINNING, 0, 3.75F, 1.46875F, 127},      // and fades in the last half second
      {FROG_WINNING, 0, 4.0F, 1.5F, 0},             //
      {FROG_WINNING, 0, 4.0625F, 1.684589F, 0},     //
      {FROG_SINKING, 3000, 0.125F, 1.28125F, 255},  // grows for two seconds
      {FROG_SINKING, 3000, 1.0F, 1.25F, 255},       //
      {FROG_SINKING, 3000, 2.0F, 1.5F, 255},        //
      {FROG_SINKING, 3000, 2.5F, 1.5F, 255},        //
      {FROG_SINKING, 3000, 2.75F, 1.5F, 127},       //
      {FROG_SINKING, 3000, 3.0F, 1.5F, 0},          //
      {FROG_SINKING, 9000, 3.0F, 1.5F, 255},        // fades at the end only
      {FROG_SINKING, 9000, 8.75F, 1.5F, 127},       //
      {FROG_FADING, 9000, 0.0F, HELD, 255},         //
      {FROG_FADING, 9000, 0.3F, HELD, 127},         //
      {FROG_FADING, 9000, 0.6F, HELD, 0},           //
      {FROG_RESTING, 0, 0.3F, HELD - 0.1F, KEPT},   // any other shrinks back to 1
      {FROG_FREE, 0, 99.0F, HELD - 0.1F, KEPT},
  };
  Frog& frog = stations[SIDE_LEFT].frogs[0];
  for (const auto& row : rows) {
    SCOPED_TRACE(testing::Message() << row.state << ' ' << row.sink_ms << ' ' << row.t);
    frog.state = row.state;
    frog.sink_ms = row.sink_ms;
    frog.scale = HELD;
    frog.alpha = KEPT;
    frog_looks_update(frog, {row.t, 0, 0});
    EXPECT_NEAR(frog.scale, row.scale, 1e-4F);
    EXPECT_EQ(frog.alpha, row.alpha);
  }
  frog.state = FROG_HOPPING;
  frog.scale = 1.05F;
  frog_looks_update(frog, {0.1F, 0, 0});
  EXPECT_EQ(frog.scale, 1.0F);
}

TEST_F(Looks, RingsFadeInThirdSecondOfFlight) {
  const struct {
    FrogState state;
    std::int64_t launched_ms;
    int alpha;
  } rows[] = {{FROG_WAITING, 9000, 255}, {FROG_LAUNCHING, 0, 255},  {FROG_HOPPING, 2000, 255},
              {FROG_HOPPING, 2500, 127}, {FROG_RESTING, 2500, 127}, {FROG_RESTING, 3000, 0},
              {FROG_RESTING, 9000, 0}};
  Frog& frog = stations[SIDE_RIGHT].frogs[0];
  for (const auto& row : rows) {
    frog.state = row.state;
    frog_looks_update(frog, {0.0F, 0, row.launched_ms});
    EXPECT_EQ(frog.ring_alpha, row.alpha) << row.state << ' ' << row.launched_ms;
  }
}

TEST_F(Looks, IdleAnimationsPlayAllFramesOfTheirSheets) {
  clear_field();
  for (int i = 0; i < QUEUE_PLACES; ++i) frog_enqueue(SIDE_LEFT);
  audit_add(AUDIT_CURRENT_CREDITS, SIDE_LEFT, 1);
  std::set<std::ptrdiff_t> runs;
  std::int32_t last = 0;
  for (int i = 0; i < 30000; ++i) {
    stations_tick(1 + i % 40);  // ticks of 1 to 40 ms
    for (int place = 0; place < QUEUE_PLACES; ++place) {
      const Frog& frog = *frog_queues[SIDE_LEFT].places[place].get();
      const SpriteSheet* sheet = frog.sheet;
      ASSERT_GE(frog.frame, 0);
      ASSERT_LT(frog.frame, sheet->frames) << "tick " << i << " place " << place;
      ASSERT_LT(frog.ring_frame, 30);
      runs.insert(sheet - sheets);
      last = std::max(last, frog.frame.get());
    }
  }
  EXPECT_EQ(runs,
            (std::set<std::ptrdiff_t>{SHEET_GFROG_IDLE1, SHEET_GFROG_IDLE2, SHEET_GFROG_IDLE3}));
  EXPECT_EQ(last, 59);
}

TEST_F(Looks, SplashAndWahVaryInPitchByATenth) {
  const Frog& frog = frog_on(SIDE_LEFT, 3);
  for (int i = 0; i < 300; ++i) award_sink_cues(frog);
  ASSERT_EQ(jps_fake.pitches.size(), 600U);
  const struct {
    const char* name;
    double least;
  } rows[] = {{"splash", 0.95}, {"wah", 0.65}};  // by turns
  for (std::size_t row = 0; row < 2; ++row) {
    EXPECT_EQ(jps_fake_count(rows[row].name), 300);
    std::vector<double> pitches;
    for (std::size_t i = row; i < 600; i += 2) pitches.push_back(jps_fake.pitches[i]);
    const auto [least, most] = std::ranges::minmax(pitches);
    EXPECT_NEAR(least, rows[row].least, 0.01);
    EXPECT_NEAR(most, rows[row].least + 0.1, 0.01);
  }
}

}  // namespace
