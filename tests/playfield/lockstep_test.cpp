// The rules beside their model: hours of play at random, and every field compared after each tick.
#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "books/audits.h"
#include "books/prefs.h"
#include "frame/game_clock.h"
#include "frame/game_mode.h"
#include "frame/tick_timers.h"
#include "gfx/panel_table.h"
#include "platform/random.h"
#include "playfield/frog_queue.h"
#include "playfield/looks.h"
#include "playfield/paytable.h"
#include "playfield/ticket_dings.h"
#include "playfield/workers.h"
#include "tests/fakes/jps_fake.h"
#include "tests/playfield/field.h"
#include "tests/playfield/model_frogs.h"
#include "tests/reset_rules.h"

namespace {

constexpr int TICKS = 20000;  // of a round: about six minutes
constexpr std::int64_t DAY_MS = 24 * 3600 * 1000;

template <typename... Values>
std::array<double, sizeof...(Values)> numbers(const Values&... values) {
  return {static_cast<double>(values)...};
}

double sheet_number(const SpriteSheet* sheet) {
  return sheet == nullptr ? -1.0 : static_cast<double>(sheet - sheets);
}

auto fields(const Frog& f) {
  return numbers(f.flags, sheet_number(f.sheet), f.x, f.y, f.state, f.state_time, f.ring_time,
                 f.launch_time, f.sink_ms, f.lane, f.queue_pos, f.total_tickets, f.award_kind,
                 f.base_tickets, f.butterfly_tickets, f.frame, f.scale, f.alpha, f.pulse,
                 f.ring_frame, f.ring_alpha);
}
auto fields(const LaneSlot& s) {
  return numbers(sheet_number(s.sheet), s.frame, s.x, s.y, s.kind, s.cycle_s, s.cycle_start,
                 s.active);
}
auto fields(const Butterfly& b) {
  return numbers(b.x, b.y, b.state, b.path, b.dx, b.state_time, b.flight_time, b.wait_s, b.frame,
                 b.value, b.scale, b.alpha, b.ticket_frame);
}
auto fields(const GoldRider& r) {
  return numbers(r.sheet_index, r.frame, r.x, r.y, r.lane, r.slot, r.scale, r.start);
}
auto fields(const Scenery& s) {
  return numbers(s.sheet_index, s.frame, s.x, s.y, s.start, s.scale);
}
auto fields(const Effect& e, int more = 0) {
  const bool runs = e.frame >= 0;  // the start of one that is over isn't told
  return numbers(e.sheet_index, e.frame, e.x, e.y, runs ? e.start.get() : 0, more);
}
auto fields(const SplashFx& e) {
  return fields(e, e.lane);
}
auto fields(const HeartFx& e) {
  return fields(e, e.rider);
}

void cells_are(const SpriteSheet& sheet, int width, int height) {
  sheet.panel->width = width * sheet.columns;
  sheet.panel->height = height * sheet.rows;
}

// A seed whose chance at that place has that value: the first and the last one are rare.
std::uint64_t seed_with(int chance, int place) {
  for (std::uint64_t seed = 1;; ++seed) {
    random_seed(seed);
    for (int i = 0; i < place; ++i) random_15bit();
    if (random_15bit() == chance) return seed;
  }
}

class Lockstep : public Field {
 protected:
  void SetUp() override {
    Field::SetUp();
    cells_are(sheets[SHEET_BUTTERFLY], BUTTERFLY_WIDTH, BUTTERFLY_HEIGHT);
    for (int sheet = SHEET_GFROG_IDLE1; sheet <= SHEET_GFROG_WIN; ++sheet) {
      cells_are(sheets[sheet], IDLE_SIZE, IDLE_SIZE);
    }
    for (int place = 0; place < 3; ++place) {
      for (const int chance : {0, 32767}) edge_seeds.push_back(seed_with(chance, place));
    }
    jps_fake.on_play = [](const std::string& name) { outcomes.push_back(name); };
  }

  int die(int sides) { return static_cast<int>(dice() % sides); }
  bool once_in(int times) { return die(times) == 0; }
  int one_of(const std::vector<int>& values) { return values[dice() % values.size()]; }

  // The same step of both, on the same chances.
  template <typename Real, typename Mine>
  void both(Real real, Mine mine) {
    const std::uint64_t seed = once_in(20) ? edge_seeds[die(6)] : dice();
    random_seed(seed);
    real();
    const int next = random_15bit();
    random_seed(seed);
    mine();
    ASSERT_EQ(random_15bit(), next) << "another number of chances drawn";
  }
  // What the test has changed in the real field, and the places that only the drawing knows.
  void hand_over() {
    for (int side = 0; side < SIDE_COUNT; ++side) {
      std::ranges::uninitialized_copy(stations[side].frogs, model->stations[side].frogs);
    }
    for (int lane = 0; lane < LANE_COUNT; ++lane) {
      std::ranges::copy(lane_cells[lane], model->lanes[lane].cells);
      const LaneSlot* const slots = lanes[lane].slots;
      std::uninitialized_copy(slots, slots + LANE_CELLS, model->lanes[lane].slots);
    }
    std::ranges::uninitialized_copy(gold_riders, model->gold_riders);
    std::construct_at(&model->butterfly, butterfly);
  }

  void begin(int round) {
    dice.seed(round);
    reset_rules(1000 + round % 4 * 1300 * DAY_MS, round);
    model = std::make_unique<FieldModel>();
    random_seed(round);
    model->reset();
  }

  void settings() {
    const auto set = [&](PrefIndex row, const std::vector<int>& values) {
      prefs[row].int_value = one_of(values);
    };
    prefs[PREF_COIN_VALUE].float_value = f32(die(240)) * 0.125F;
    set(PREF_COINS_TO_PLAY, {1, 1, 3});
    set(PREF_FROGS_PER_GAME, {1, 1, 2});
    prefs[PREF_TICKET_VALUE].float_value = once_in(3) ? 0.8F : 1.0F;
    prefs[PREF_PAYOUT_PERCENT].float_value = once_in(3) ? 0.9F : 1.0F;
    set(PREF_MINIMUM_TICKETS, {0, 1, 1, 5, 10, -5});
    set(PREF_MAXIMUM_TICKETS, {1000, 2000, 300, 45, 10, -1});
    set(PREF_TICKET_USE, {1, 1, 1, 0});
    set(PREF_TWO_POINT_TICKETS, {0, 0, 1});
    set(PREF_FIXED_TICKET, {0, 0, 0, 1});
    set(PREF_FIXED_TICKETS_PER_GAME, {7, 0, -3, 1399, 1400});
    set(PREF_BONUS_VALUE, {250, 125, 600, 1399, 1400, -250});
    set(PREF_BOOST_BONUS, {0, 0, 1});
    set(PREF_FREEPLAY, {0, 0, 1});
    both(payout_recompute, [&] { model->recompute(); });
  }

  // Rivers that carry nearly always, so that many frogs cross.
  void river_fill() {
    for (int lane = 1; lane <= 5; ++lane) {
      for (Shared<std::int32_t>& cell : lane_cells[lane]) {
        cell = one_of({CELL_EMPTY, CELL_PLAIN, CELL_PLAIN, CELL_TIER1, CELL_TIER2});
      }
    }
  }

  // Any frog that isn't in line goes anywhere.
  void toss(int side) {
    Frog& frog = stations[side].frogs[die(FROGS_PER_STATION)];
    if (frog.state == FROG_WAITING) return;
    frog.state = static_cast<FrogState>(FROG_LAUNCHING + die(6));
    frog.lane = frog.state == FROG_LAUNCHING ? 12
                : frog.state == FROG_WINNING ? 0
                : frog.state == FROG_SINKING ? 1 + die(5)
                                             : 1 + die(11);
    frog.x = f32(die(12000) - 2000) * 0.25F;
    frog.state_time = now_ms() - die(400);
    frog.sink_ms = frog.state == FROG_SINKING ? 1 + die(6000) : 0;
    frog.flags = once_in(3) ? std::uint32_t{FROG_DEMO} : 0U;
    frog.base_tickets = one_of({0, 10, 24, 25, 44, 45});
    frog.butterfly_tickets = one_of({0, 0, 7, 20});
    frog.total_tickets = frog.base_tickets + frog.butterfly_tickets;
  }

  void rider_on_gold() {
    GoldRider& rider = gold_riders[die(RIDER_COUNT)];
    rider.lane = 2 + die(2);
    rider.slot = die(LANE_CELLS);
    rider.x = lanes[rider.lane].slots[rider.slot].x + 16;
    rider.y = lanes[rider.lane].slots[rider.slot].y - 58;
  }

  static void demo_fade(int side) {
    for (Frog& frog : stations[side].frogs) {
      if (!is_demo(frog)) continue;
      frog.state = FROG_FADING;
      frog.state_time = now_ms();
    }
  }

  void circumstances(int side) {
    sound_enabled = once_in(8) ? 0 : 1;
    show_active[side] = once_in(4);
    tick_timers.since_award_ms[side] = one_of({0, 14999, 15000, 90000});
    if (once_in(2)) tick_timers.next_vox_ms = model->next_vox_ms = 0;
    const int row = AUDIT_CURRENT_CREDITS + side;
    audits[row].count = model->books[row] = die(2);
  }

  void act(bool generous) {
    const int side = die(2);
    if (once_in(40)) {
      const bool demo = once_in(5);
      both([&] { frog_launch(side, demo); }, [&] { model->launch(side, demo); });
    }
    if (once_in(50)) both([&] { frog_enqueue(side); }, [&] { model->enqueue(side); });
    if (once_in(100)) circumstances(side);
    if (once_in(400)) {
      const int count = die(9);
      ticket_dings(0, count);
      model->dings(0, count);
    }
    if (once_in(1500)) settings();
    if (once_in(3000)) looks_set_watched(model->watched = once_in(2));
    if (!once_in(3)) return;
    draw();
    rider_on_gold();
    if (once_in(50)) toss(side);
    if (once_in(20)) {
      butterfly.state = BUTTERFLY_FLYING;
      butterfly.x = stations[side].frogs[die(FROGS_PER_STATION)].x + f32(die(440) - 220);
    }
    if (once_in(100)) demo_fade(side);
    if (generous && once_in(300)) river_fill();
    hand_over();
  }

  void step(std::int64_t ms) {
    game_clock.now_ms += ms;
    game_mode = once_in(50) ? MODE_OPERATOR : MODE_PLAY;
    both([] { tick(0); }, [&] { model->tick(); });
    workers_step();
    model->workers_step();
    ticket_dings_step(now_ms());
    model->dings_step();
  }

  // --- comparing ---

  template <typename Record, std::size_t count>
  static void expect_equal(const Record (&real)[count], const Record (&mine)[count],
                           const char* what) {
    for (std::size_t n = 0; n < count; ++n) {
      ASSERT_EQ(fields(real[n]), fields(mine[n])) << what << ' ' << n;
    }
  }

  void compare_stations(int side) {
    expect_equal(stations[side].frogs, model->stations[side].frogs, "frog");
    const FrogQueue& queue = frog_queues[side];
    ASSERT_EQ(queue.count, static_cast<int>(model->line[side].size()));
    for (int place = 0; place < QUEUE_PLACES; ++place) {
      ASSERT_EQ(queue.places[place], place >= queue.count
                                         ? nullptr
                                         : &stations[side].frogs[model->line[side].at(place)]);
    }
    ASSERT_EQ(station_idle(side), model->live_frogs(side) == 0);
    ASSERT_EQ(station_river_clear(side), model->river_clear(side));
    ASSERT_EQ(station_live_frogs(side), model->live_frogs(side));
    ASSERT_EQ(frog_ready(side), model->ready(side));
    ASSERT_EQ(tick_timers.award_done[side], model->award_done[side]);
    if (outcomes.empty()) return;
    for (int n = 0; n < HISTOGRAM_CELLS; ++n) {
      ASSERT_EQ(static_cast<int>(histogram[side][n]), model->counted[side][n]) << n;
    }
  }

  void compare_lane(int number) {
    const Lane& lane = lanes[number];
    const LaneModel& mine = model->lanes[number];
    const LaneFacts& facts = LANES[number];
    ASSERT_EQ(numbers(lane.direction, lane.cell_size, lane.sprite_w, lane.slot_count, lane.x,
                      lane.y, lane.length, lane.height, lane.speed, lane.scroll),
              numbers(1, facts.cell_size, facts.sprite_w, 40, 0, facts.y, 1360, facts.height,
                      mine.speed, mine.scroll))
        << number;
    for (int cell = 0; cell < LANE_CELLS; ++cell) {
      ASSERT_EQ(lane_cells[number][cell], mine.cells[cell]) << number << ' ' << cell;
      ASSERT_EQ(bug_is_eaten(lane, cell), mine.eaten[cell]) << number << ' ' << cell;
      ASSERT_EQ(fields(lane.slots[cell]), fields(mine.slots[cell])) << number << ' ' << cell;
    }
  }

  void compare_world() {
    ASSERT_EQ(fields(butterfly), fields(model->butterfly));
    expect_equal(gold_riders, model->gold_riders, "rider");
    expect_equal(splash_fx, model->splashes.records, "splash");
    expect_equal(spark_fx, model->sparks.records, "spark");
    expect_equal(heart_fx, model->hearts.records, "heart");
    const Scenery* mine = model->scenery;
    for (const Scenery& each : plants) ASSERT_EQ(fields(each), fields(*mine++));
    for (const Scenery& each : far_bank) ASSERT_EQ(fields(each), fields(*mine++));
    for (const Scenery& each : cattails) ASSERT_EQ(fields(each), fields(*mine++));
    for (const Scenery& each : signs) ASSERT_EQ(fields(each), fields(*mine++));
    ASSERT_EQ(
        numbers(lead_lane, paytable_row, boost_factor, paytable_factor, bug_value(),
                butterfly_value(), tier1_value(), tier2_value(), minimum_value(), jackpot_value(),
                tick_timers.next_vox_ms),
        numbers(model->lead_lane, model->paytable_row, model->boost_factor, 1, model->bug_value(),
                in_points(BUTTERFLY[model->paytable_row]), model->tier_value(1),
                model->tier_value(2), in_points(tickets(PREF_MINIMUM_TICKETS)),
                model->jackpot_value(), model->next_vox_ms));
    for (int row = 0; row < AUDIT_COUNT; ++row) {
      ASSERT_EQ(audit_count(row), model->books[row]) << audits[row].name;
    }
    ASSERT_EQ(outcomes, model->told);
    ASSERT_EQ(jps_fake.pitches, model->pitches);
  }

  void compare() {
    for (int side = 0; side < SIDE_COUNT; ++side) compare_stations(side);
    for (int lane = 0; lane < LANE_COUNT; ++lane) compare_lane(lane);
    compare_world();
    outcomes.clear();
    model->told.clear();
    jps_fake.pitches.clear();
    jps_fake.played.clear();
    model->pitches.clear();
  }

  std::mt19937 dice;
  std::vector<std::uint64_t> edge_seeds;
  std::unique_ptr<FieldModel> model;
};

TEST_F(Lockstep, FieldDoesWhatItsModelDoes) {
  for (int round = 1; round <= 8; ++round) {
    begin(round);
    compare();
    for (int n = 0; n < TICKS && !HasFatalFailure(); ++n) {
      act(round % 2 == 0);
      step(n == TICKS / 2 ? 200 * DAY_MS
           : once_in(800) ? 300 + die(4000)
           : once_in(6)   ? die(40)
                          : TICK_MS);
      compare();
    }
    looks_set_watched(true);  // as at a start
    ASSERT_FALSE(HasFatalFailure()) << "round " << round << ", at " << now_ms();
  }
}

}  // namespace
