// The field under three threads, to be run under ThreadSanitizer: the tick, the small workers, and
// a reader that gives the slots and riders their places, as the drawing does.
#include <atomic>
#include <initializer_list>
#include <thread>

#include "books/audits.h"
#include "frame/game_clock.h"
#include "platform/random.h"
#include "playfield/frog_queue.h"
#include "playfield/ticket_dings.h"
#include "playfield/workers.h"
#include "tests/playfield/field.h"

namespace {

class FieldThreads : public Field {
 protected:
  static void place_and_read(const std::atomic<bool>& done) {
    float sum = 0.0F;
    while (!done) {
      draw();
      int next = 0;
      for (int cell = 0; cell < LANE_CELLS; ++cell) {
        if (lane_cells[3][cell] != CELL_TIER1) continue;
        GoldRider& rider = gold_riders[next++];
        rider.x = lanes[3].slots[cell].x + 16;
        rider.lane = 3;
        rider.slot = cell;
        sum += rider.scale + static_cast<float>(rider.frame);
      }
      for (const Frog& frog : stations[SIDE_LEFT].frogs) sum += frog.x + frog.scale;
      for (const HeartFx& heart : heart_fx) sum += static_cast<float>(heart.frame + heart.x);
      sum += butterfly.x + static_cast<float>(butterfly.frame) + far_bank[2].scale;
      std::this_thread::yield();
    }
    EXPECT_NE(sum, 0.0F);
  }
};

TEST_F(FieldThreads, TickWorkersAndDrawingRunTogether) {
  std::atomic<bool> done = false;
  std::thread workers([&done] {
    while (!done) {
      workers_step();
      ticket_dings_step(now_ms());
      std::this_thread::yield();
    }
  });
  std::thread drawing([&done] { place_and_read(done); });
  for (int i = 0; i < 60000; ++i) {
    tick();
    for (const int side : {SIDE_LEFT, SIDE_RIGHT}) {
      if (!frog_ready(side) || random_unit() > 0.03) continue;
      frog_launch(side, random_unit() < 0.05);
      frog_enqueue(side);
    }
  }
  done = true;
  workers.join();
  drawing.join();
  EXPECT_GT(audit_count(AUDIT_GAMES_PLAYED, SIDE_LEFT), 50);
}

}  // namespace
