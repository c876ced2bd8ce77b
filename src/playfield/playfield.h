// The river scene that both players share: stations, frogs, lanes, butterfly, riders, effects,
// scenery. One instance, written by the game thread, read by the drawing without a lock.
#pragma once

#include <cstddef>
#include <cstdint>

#include "frame/sides.h"
#include "gfx/panel_table.h"  // SpriteSheet, SHEET_...
#include "gfx/strip.h"        // Lane, LaneSlot
#include "platform/shared.h"  // Shared

// --- frogs ------------------------------------------------------------------------------------

enum FrogFlags : std::uint32_t {
  FROG_LANDED = 0x01,     // the landing on the present lane has been paid
  FROG_LEAD_CUE = 0x02,   // has just taken the lead: a rising note is due
  FROG_HIDDEN = 0x04,     // the sprite isn't drawn
  FROG_IDLE_ANIM = 0x08,  // the idle animation has been started
  FROG_WIN_ANIM = 0x10,   // the win animation has been started
  FROG_DEMO = 0x20,       // attract frog: pays nothing and is silent
};

enum FrogState : std::int32_t {
  FROG_FREE = 1,       // record unused
  FROG_WAITING = 2,    // in the queue on the near bank
  FROG_LAUNCHING = 3,  // first hop, out of lane 12
  FROG_HOPPING = 4,    // any later hop
  FROG_RESTING = 5,    // sits on a lane between hops
  FROG_SINKING = 6,    // in the water, showing what it won
  FROG_WINNING = 7,    // on the far bank: jackpot
  FROG_FADING = 8,     // a sinking frog pushed out, or a demo frog making room for a coin
};

enum AwardKind : std::int32_t {
  AWARD_NONE = 0,
  AWARD_BUG = 1,
  AWARD_TIER1 = 3,
  AWARD_TIER2 = 4,
  AWARD_JACKPOT = 5,
  AWARD_FREE = 6,  // the minimum
};

struct Frog {
  Shared<std::uint32_t> flags;
  Shared<SpriteSheet*> sheet;
  Shared<float> x;         // left edge of the cell
  Shared<std::int32_t> y;  // top edge
  Shared<FrogState> state;
  Shared<std::int64_t> state_time;  // when the state, hop or idle run began
  Shared<std::int64_t> ring_time;   // when the rings of the waiting frog began
  Shared<std::int64_t> launch_time;
  Shared<std::int64_t> sink_ms;  // how long it stays in FROG_SINKING; 0 otherwise
  Shared<std::int32_t> lane;     // in a hop the lane it left
  Shared<std::int32_t> queue_pos;
  Shared<std::int32_t> total_tickets;  // base and butterfly, capped
  Shared<AwardKind> award_kind;        // which award last set base_tickets
  Shared<std::int32_t> base_tickets;
  Shared<std::int32_t> butterfly_tickets;
  Shared<std::int32_t> frame;
  Shared<float> scale;
  Shared<std::int32_t> alpha;
  Shared<std::int32_t> pulse;  // 0 to 255, fades the demo label
  Shared<std::int32_t> ring_frame;
  Shared<std::int32_t> ring_alpha;
};

inline bool is_demo(const Frog& frog) {
  return (frog.flags & FROG_DEMO) != 0;
}

constexpr int FROGS_PER_STATION = 20;

struct Station {  // a new frog takes the first record that is free
  Frog frogs[FROGS_PER_STATION];
};

constexpr int QUEUE_PLACES = 5;

struct FrogQueue {  // frogs in FROG_WAITING, head first
  Shared<std::int32_t> count;
  Shared<Frog*> places[QUEUE_PLACES];
};

// --- lanes ------------------------------------------------------------------------------------

constexpr int LANE_COUNT = 13;  // 0 far bank, 1 to 5 river, 6 middle bank, 7 to 11 meadow, 12 near
constexpr int LANE_CELLS = 40;
constexpr int LANE_FAR_BANK = 0;
constexpr int LANE_MIDDLE_BANK = 6;
constexpr int LANE_NEAR_BANK = 12;
constexpr int LANE_RIVER_FAR = LANE_FAR_BANK + 1;
constexpr int LANE_GOLD_TURTLE = 2;
constexpr int LANE_GOLD_LOG = 3;
constexpr int LANE_RIVER_NEAR = LANE_MIDDLE_BANK - 1;
constexpr int LANE_MEADOW_FAR = LANE_MIDDLE_BANK + 1;
constexpr int LANE_MEADOW_NEAR = LANE_NEAR_BANK - 1;

constexpr bool lane_is_river(int lane) {
  return lane >= LANE_RIVER_FAR && lane <= LANE_RIVER_NEAR;
}

enum LaneCell : std::int32_t {
  CELL_EMPTY = 0,  // open water or meadow
  CELL_BUG = 1,
  CELL_PLAIN = 3,  // log or turtle
  CELL_TIER1 = 4,  // gold log
  CELL_TIER2 = 5,  // gold turtle
};

// The bit of a cell in `Lane.eaten`.
constexpr std::uint64_t cell_bit(int cell) {
  return std::uint64_t{1} << cell;
}
inline bool bug_is_eaten(const Lane& lane, int cell) {
  return (lane.eaten & cell_bit(cell)) != 0;
}

// --- butterfly, riders, effects, scenery --------------------------------------------------------

enum ButterflyState : std::int32_t {
  BUTTERFLY_PARKED = 0,
  BUTTERFLY_FLYING = 1,
  BUTTERFLY_CAUGHT = 2
};

struct Butterfly {
  SpriteSheet* sheet;
  Shared<float> x;
  Shared<std::int32_t> y;
  Shared<ButterflyState> state;
  std::int32_t path;        // flight curve, 0 to 3
  Shared<std::int32_t> dx;  // pixels per tick, with sign
  std::int64_t state_time, flight_time;
  float wait_s;  // how long it stays parked
  Shared<std::int32_t> frame;
  Shared<std::int32_t> value;  // tickets of the last catch
  Shared<float> scale;
  Shared<std::int32_t> alpha;
  Shared<std::int32_t> ticket_frame;
};

struct GoldRider {                   // stands on a gold object; filled in drawing order
  Shared<std::int32_t> sheet_index;  // SHEET_WAVE or SHEET_KISS
  Shared<std::int32_t> frame;
  Shared<std::int32_t> x, y;
  Shared<std::int32_t> lane, slot;  // the cell it stands on
  Shared<float> scale;
  Shared<std::int64_t> start;
};

struct Effect {  // frame -1 while idle
  Shared<std::int32_t> sheet_index;
  Shared<std::int32_t> frame;
  Shared<std::int32_t> x, y;
  Shared<std::int64_t> start;  // game clock of the start
};

struct SplashFx : Effect {
  Shared<std::int32_t> lane;
};
struct SparkFx : Effect {};
struct HeartFx : Effect {
  Shared<std::int32_t> rider;  // the GoldRider it rises from
};

struct Scenery {
  std::int32_t sheet_index;
  Shared<std::int32_t> frame;
  Shared<std::int32_t> x, y;
  std::int64_t start;
  Shared<float> scale;  // the lily pads breathe
};

constexpr int RIDER_COUNT = 16;
constexpr int SPLASH_COUNT = 24;
constexpr int SPARK_COUNT = 24;
constexpr int HEART_COUNT = 8;
constexpr int PLANT_COUNT = 6;
constexpr int FAR_BANK_COUNT = 4;
constexpr int CATTAIL_COUNT = 4;
constexpr int SIGN_COUNT = 3;

// --- the one instance ---------------------------------------------------------------------------

extern Station stations[SIDE_COUNT];
extern FrogQueue frog_queues[SIDE_COUNT];
extern Lane lanes[LANE_COUNT];
extern Shared<std::int32_t> lane_cells[LANE_COUNT][LANE_CELLS];  // LaneCell
extern Butterfly butterfly;
extern GoldRider gold_riders[RIDER_COUNT];
extern SplashFx splash_fx[SPLASH_COUNT];
extern SparkFx spark_fx[SPARK_COUNT];
extern HeartFx heart_fx[HEART_COUNT];
extern Scenery plants[PLANT_COUNT];
extern Scenery far_bank[FAR_BANK_COUNT];  // two goals, then the left and the right lily pad
extern Scenery cattails[CATTAIL_COUNT];
extern Scenery signs[SIGN_COUNT];       // left credit, price, right credit
extern Shared<std::int32_t> lead_lane;  // lowest lane of any frog hopping or resting, else 12

// y of a frog that sits on each lane, and x of the places in line.
extern const std::int32_t lane_y[LANE_COUNT];
extern const std::int32_t QUEUE_X[SIDE_COUNT][QUEUE_PLACES];

// Sets the whole field up: loads the pictures, fills the sheets, then `playfield_reset`. The
// threads that carry the small workers, and the sound that start-up begins with, are the caller's.
// Main thread, once, before the game thread starts.
void playfield_init();
// Lanes, stations, butterfly, riders, effects, scenery, paytable and LED board as at process start,
// with the sheets as they are. Needs the settings loaded. A test may call it again and again.
void playfield_reset();
// Releases pictures and lanes. At shutdown, with the game thread ended.
void playfield_free();

// True if no frog of the side is in play: each is a demo frog, or free, waiting, sinking or
// winning. Any thread.
bool station_idle(int side);
// The same, but a frog outside the river, lanes 1 to 5, counts as clear too.
bool station_river_clear(int side);
// Works out lead_lane from both stations. Game thread, before the stations are updated.
void lead_lane_update();
// Frogs of the side in flight or fading, not counting demo frogs.
int station_live_frogs(int side);
