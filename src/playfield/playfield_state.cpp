#include "playfield/playfield.h"

#include <algorithm>
#include <cstdint>

Station stations[SIDE_COUNT];
FrogQueue frog_queues[SIDE_COUNT];
Lane lanes[LANE_COUNT];
Shared<std::int32_t> lane_cells[LANE_COUNT][LANE_CELLS];
Butterfly butterfly;
GoldRider gold_riders[RIDER_COUNT];
SplashFx splash_fx[SPLASH_COUNT];
SparkFx spark_fx[SPARK_COUNT];
HeartFx heart_fx[HEART_COUNT];
Scenery plants[PLANT_COUNT];
Scenery far_bank[FAR_BANK_COUNT];
Scenery cattails[CATTAIL_COUNT];
Scenery signs[SIGN_COUNT];
constinit Shared<std::int32_t> lead_lane{LANE_NEAR_BANK};

constexpr std::int32_t lane_y[LANE_COUNT] = {-202, -152, -96, -40, 16,  72, 128,
                                             184,  240,  296, 352, 408, 464};
constexpr std::int32_t QUEUE_X[SIDE_COUNT][QUEUE_PLACES] = {{212, 84, -44, -172, -300},
                                                            {892, 1020, 1148, 1276, 1404}};

namespace {

bool frog_in_play(const Frog& frog) {
  switch (frog.state) {
    case FROG_FREE:
    case FROG_WAITING:
    case FROG_SINKING:
    case FROG_WINNING:
      return false;
    default:
      return !is_demo(frog);
  }
}

}  // namespace

bool station_idle(int side) {
  return std::ranges::none_of(stations[side].frogs, frog_in_play);
}

bool station_river_clear(int side) {
  return std::ranges::none_of(stations[side].frogs, [](const Frog& frog) {
    return frog_in_play(frog) && lane_is_river(frog.lane);
  });
}

int station_live_frogs(int side) {
  return static_cast<int>(std::ranges::count_if(stations[side].frogs, frog_in_play));
}

void lead_lane_update() {
  std::int32_t lead = LANE_NEAR_BANK;
  for (int side = 0; side < SIDE_COUNT; ++side) {
    for (const Frog& frog : stations[side].frogs) {
      const FrogState state = frog.state;
      if (state == FROG_HOPPING || state == FROG_RESTING) lead = std::min(lead, frog.lane.get());
    }
  }
  lead_lane = lead;
}
