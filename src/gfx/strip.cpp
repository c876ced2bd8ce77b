#include "gfx/strip.h"

#include <bit>

namespace {

// A slot's place in the ring, also for numbers below 0 or behind the last slot.
int slot_wrapped(int number, int slot_count) {
  return (number % slot_count + slot_count) % slot_count;
}

struct StripView {  // what of a lane is in view
  int first;        // slot at the left end or top, not wrapped
  int count;
  int offset;  // pixels of the first one that are out of view
};

StripView strip_view(const Lane& lane) {
  const float scroll = lane.scroll;  // once: the game thread moves it
  const int cell = lane.cell_size;
  return {static_cast<int>(scroll / static_cast<float>(cell)), lane.length / cell + 3,
          static_cast<int>(scroll) % cell};
}

void slot_put(const Lane& lane, int number, int along) {
  const int left = static_cast<int>(lane.x);
  const bool across = lane.direction == 1;
  const int x = across ? left + along : left;
  const int y = across ? lane.y : lane.y + along;
  lane.slots[number].x = x;
  lane.slots[number].y = y;
  lane.panels[number].x = x;
  lane.panels[number].y = y;
}

}  // namespace

void gfx_strip_create(Lane* lane, int direction, int slot_count) {
  lane->direction = direction;
  lane->slot_count = slot_count;
  lane->scroll = 0.0F;
  if (direction == 1 || direction == 2) {
    lane->cell_size = 1;
    lane->sprite_w = 1;
  }
  lane->panels = new Panel[slot_count]{};
  lane->slots = new LaneSlot[slot_count]{};
  for (int i = 0; i < slot_count; ++i) lane->slots[i].kind = SLOT_EMPTY;
}

void gfx_strip_free(Lane* lane) {
  delete[] lane->panels;
  delete[] lane->slots;
  lane->panels = nullptr;
  lane->slots = nullptr;
}

void gfx_slots_place(Lane* lane, std::uint64_t slots) {
  const StripView view = strip_view(*lane);
  const int first = slot_wrapped(view.first, lane->slot_count);
  for (; slots != 0; slots &= slots - 1) {
    const int number = std::countr_zero(slots);
    const int n = number < first ? number + lane->slot_count - first : number - first;
    if (n < view.count) slot_put(*lane, number, n * lane->cell_size - view.offset);
  }
}

int gfx_strip_draw(Lane* lane) {
  const StripView view = strip_view(*lane);
  for (int n = 0; n < view.count; ++n) {
    const int number = slot_wrapped(view.first + n, lane->slot_count);
    slot_put(*lane, number, n * lane->cell_size - view.offset);
    const LaneSlot& slot = lane->slots[number];
    const SpriteSheet* sheet = slot.sheet;
    if (slot.kind != SLOT_EMPTY && slot.active != 0 && sheet != nullptr) {
      gfx_sheet_draw(*sheet, slot.frame, slot.x, slot.y);
    }
  }
  return view.first;
}
