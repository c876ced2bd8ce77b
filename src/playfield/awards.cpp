#include "playfield/awards.h"

#include <cstdint>

#include "books/audits.h"
#include "books/journal.h"
#include "frame/game_clock.h"   // now_ms
#include "frame/tick_timers.h"  // next_vox_ms
#include "gfx/panel_table.h"    // sheet_half_width
#include "platform/random.h"    // random_unit
#include "playfield/cues.h"     // cue_play
#include "playfield/paytable.h"
#include "playfield/workers.h"  // fx_spark_start, fx_heart_start

namespace {

// A kiss begins this far into its animation, with the hand at the mouth.
constexpr std::int64_t KISS_LEAD_MS = 281;

struct Cues {  // one sound of a kind at a time, for both sides together
  std::int64_t next_gulp_ms, next_croak_ms, next_oops_ms;
};
constinit Cues cues{};

// The pause between two croaks or two gulps.
std::int64_t after_a_short_pause() {
  return from_now_ms(83.33333587646484, 166.6666717529297);
}

void vox_hold() {
  tick_timers.next_vox_ms = from_now_ms(2000.0, 1000.0);
}

void play_pitched(const char* name, double least_pitch) {
  const std::uint32_t tracks = cue_play(name);
  sound_pitch_scale(tracks, least_pitch + 0.1 * random_unit());
}

// Demo frogs aren't counted. `kind` is an AwardKind or JOURNAL_BUTTERFLY.
void count_catch(int side, const Frog& frog, AuditIndex row, std::int32_t kind,
                 std::int32_t worth) {
  if (is_demo(frog)) return;
  audit_add(row, side, 1);
  journal_put(JOURNAL_CATCH,
              {side, audit_count(AUDIT_GAMES_PLAYED, side), kind, worth, frog.total_tickets});
}

std::int32_t spark_place(float place, float half_size) {
  return static_cast<std::int32_t>(place + half_size - 64.0F);
}

}  // namespace

void award_butterfly(int side, Frog& frog) {
  butterfly.state = BUTTERFLY_CAUGHT;
  butterfly.state_time = now_ms();
  const double v = butterfly_value();
  auto value = static_cast<std::int32_t>(random_unit() * v + 0.5 * v);
  if (pays_points() && value % 2 != 0) ++value;
  butterfly.value = value;
  frog.butterfly_tickets += value;
  purse_add_up(side, frog);
  frog.scale = 1.5F;
  count_catch(side, frog, AUDIT_BUTTERFLIES, JOURNAL_BUTTERFLY, value);
  fx_spark_start(spark_place(butterfly.x, sheet_half_width(*butterfly.sheet)),
                 spark_place(static_cast<float>(butterfly.y), sheet_half_height(*butterfly.sheet)));

  if (is_demo(frog) || !is_due(cues.next_gulp_ms)) return;
  play_pitched("gulp", 0.9);
  if (is_due(tick_timers.next_vox_ms)) {
    cue_play("voxyay");
    vox_hold();
  }
  cues.next_gulp_ms = after_a_short_pause();
}

void award_bug(int side, Frog& frog, int lane, int cell) {
  frog.base_tickets += bug_value();
  purse_add_up(side, frog);
  frog.scale = 1.5F;
  frog.award_kind = AWARD_BUG;
  count_catch(side, frog, AUDIT_BUGS, AWARD_BUG, bug_value());
  const LaneSlot& slot = lanes[lane].slots[cell];
  fx_spark_start(
      spark_place(static_cast<float>(slot.x), static_cast<float>(lanes[lane].cell_size) * 0.5F),
      spark_place(static_cast<float>(slot.y), static_cast<float>(lanes[lane].sprite_w) * 0.5F));

  if (is_demo(frog) || !is_due(cues.next_gulp_ms)) return;
  play_pitched("gulp", 0.9);
  if (is_due(tick_timers.next_vox_ms) && random_unit() < 0.25) {
    cue_play("voxyum");
    vox_hold();
  }
  cues.next_gulp_ms = after_a_short_pause();
}

namespace {

void gold_purse(int side, Frog& frog, bool tier2) {
  const std::int32_t value = tier2 ? tier2_value() : tier1_value();
  if (value <= frog.base_tickets) return;  // its bugs are worth more already
  frog.base_tickets = value;
  purse_add_up(side, frog);
  frog.scale = 1.5F;
  frog.award_kind = tier2 ? AWARD_TIER2 : AWARD_TIER1;
  count_catch(side, frog, tier2 ? AUDIT_DOUBLE_BONUSES : AUDIT_BONUSES, frog.award_kind, value);
}

// The first frame that is drawn places the riders. Before it, nobody kisses.
void rider_kiss(std::int32_t lane, std::int32_t stand_a, std::int32_t stand_b) {
  for (int i = 0; i < RIDER_COUNT; ++i) {
    GoldRider& rider = gold_riders[i];
    if (rider.lane != lane || (rider.slot != stand_a && rider.slot != stand_b)) continue;
    rider.start = now_ms() - KISS_LEAD_MS;
    rider.frame = 0;
    rider.scale = 1.5F;
    rider.sheet_index = SHEET_KISS;  // last: its cells are fewer
    fx_heart_start(i);
    return;
  }
}

}  // namespace

void award_gold(int side, Frog& frog, std::int32_t cell_value, std::int32_t stand_a,
                std::int32_t stand_b) {
  gold_purse(side, frog, cell_value == CELL_TIER2);
  rider_kiss(frog.lane, stand_a, stand_b);
  if (!is_demo(frog)) cue_play("voxsmooch");
}

void award_sink_cues(const Frog& frog) {
  play_pitched("splash", 0.95);
  play_pitched("wah", 0.65);
  if (!is_due(tick_timers.next_vox_ms) || !is_due(cues.next_oops_ms)) return;
  if (random_unit() < 0.5) cue_play(frog.lane == LANE_RIVER_FAR ? "voxalmost" : "voxoops");
  cues.next_oops_ms = from_now_ms(5000.0, 5000.0);
  vox_hold();
}

namespace {

void croak_perhaps(double chance) {
  if (!is_due(cues.next_croak_ms)) return;
  if (random_unit() < chance) cue_play("croak");
  cues.next_croak_ms = after_a_short_pause();
}

}  // namespace

void award_hop_cues() {
  cue_play("jump");
  croak_perhaps(0.125);
}

void award_landing_cue() {
  croak_perhaps(0.25);
}

void award_lead_cue(int lane) {
  switch (lane) {
    case 5:
      cue_play("log03");
      break;
    case 4:
      cue_play("log04");
      break;
    case 3:
      cue_play("log05");
      break;
    case 2:
      cue_play("log06");
      break;
    case 1:
      cue_play("log07");
      break;
    default:
      break;
  }
}

void awards_reset() {
  cues = {};
}
