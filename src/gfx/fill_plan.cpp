#include "gfx/fill_plan.h"

#include <algorithm>
#include <array>
#include <cstddef>

namespace {

// Costs in pixels filled with blending, as measured with a software renderer.
constexpr std::int32_t PIECE_COST = 400;
constexpr std::int32_t LEAST_CORE_PX = 2048;  // an opaque piece may cut up to four others

constexpr std::size_t PLANS = 8192;  // places, many more than the cells that a game shows
constexpr std::size_t MOST_PLANS = PLANS * 3 / 4;  // so that a search soon comes to a free place
constexpr std::size_t POOL = 1U << 17;             // pieces of all plans

struct Recalled {
  std::uint32_t texture;  // 0: free
  PixelRect rect;
  FillPlan plan;
};

// Static, so that a frame that meets a new cell allocates nothing. A full table or pool is emptied.
struct FillPlans {
  std::array<Recalled, PLANS> table;
  std::size_t count;
  std::array<FillPiece, POOL> pool;
  std::size_t used;
};

constinit FillPlans plans{};

std::int32_t area(const PixelRect& rect) {
  return rect.width * rect.height;
}

PixelRect between(std::int32_t x0, std::int32_t y0, std::int32_t x1, std::int32_t y1) {
  return {x0, y0, std::max(x1 - x0, 0), std::max(y1 - y0, 0)};
}

void piece_add(const PixelRect& rect, bool opaque) {
  if (plans.used == POOL) return;  // the caller checks it
  plans.pool[plans.used++] = {static_cast<std::int16_t>(rect.x), static_cast<std::int16_t>(rect.y),
                              static_cast<std::int16_t>(rect.width),
                              static_cast<std::int16_t>(rect.height), opaque};
}

struct Cut {
  std::int32_t cost;
  PixelRect first, second;  // what is seen on either side
};

void cut_try(const Coverage& coverage, const PixelRect& first, const PixelRect& second, Cut& best) {
  const PixelRect a = coverage_seen_box(coverage, first);
  const PixelRect b = coverage_seen_box(coverage, second);
  const std::int32_t cost = area(a) + area(b) + 2 * PIECE_COST;
  if (cost < best.cost) best = {cost, a, b};
}

// The cut along a tile's edge that leaves least to fill.
Cut best_cut(const Coverage& coverage, const PixelRect& box) {
  const std::int32_t right = box.x + box.width;
  const std::int32_t bottom = box.y + box.height;
  Cut best{area(box) + PIECE_COST, {}, {}};
  const auto next_edge = [](std::int32_t at) {
    return (at / COVERAGE_TILE_PX + 1) * COVERAGE_TILE_PX;
  };
  for (std::int32_t x = next_edge(box.x); x < right; x += COVERAGE_TILE_PX) {
    cut_try(coverage, between(box.x, box.y, x, bottom), between(x, box.y, right, bottom), best);
  }
  for (std::int32_t y = next_edge(box.y); y < bottom; y += COVERAGE_TILE_PX) {
    cut_try(coverage, between(box.x, box.y, right, y), between(box.x, y, right, bottom), best);
  }
  return best;
}

// Takes a large opaque core out, else cuts while a cut pays, else fills what is seen.
void pieces_make(const Coverage& coverage, const PixelRect& rect) {
  if (rect.width <= 0 || rect.height <= 0) return;
  const PixelRect box = coverage_seen_box(coverage, rect);
  if (box.width == 0) return;
  const PixelRect core = coverage_opaque_core(coverage, box);
  const std::int32_t right = box.x + box.width;
  const std::int32_t bottom = box.y + box.height;
  if (area(core) >= LEAST_CORE_PX || area(core) == area(box)) {
    const std::int32_t core_right = core.x + core.width;
    const std::int32_t core_bottom = core.y + core.height;
    piece_add(core, true);
    pieces_make(coverage, between(box.x, box.y, right, core.y));
    pieces_make(coverage, between(box.x, core_bottom, right, bottom));
    pieces_make(coverage, between(box.x, core.y, core.x, core_bottom));
    pieces_make(coverage, between(core_right, core.y, right, core_bottom));
    return;
  }
  const Cut cut = best_cut(coverage, box);
  if (cut.first.width == 0) {
    piece_add(box, false);
    return;
  }
  pieces_make(coverage, cut.first);
  pieces_make(coverage, cut.second);
}

FillPlan plan_make(const Coverage& coverage, const PixelRect& rect) {
  FillPlan plan{coverage_box_with_edge(coverage, rect), coverage_holds(coverage, rect), {}};
  if (!plan.pieced) return plan;
  const std::size_t first = plans.used;
  pieces_make(coverage, rect);
  plan.pieces = {&plans.pool[first], plans.used - first};
  return plan;
}

std::size_t place_of(std::uint32_t texture, const PixelRect& rect) {
  std::uint64_t key = texture;
  for (const std::int32_t value : {rect.x, rect.y, rect.width, rect.height}) {
    key = (key ^ static_cast<std::uint32_t>(value)) * 0x9E3779B97F4A7C15ULL;
    key ^= key >> 29;
  }
  return key % PLANS;
}

bool same(const PixelRect& a, const PixelRect& b) {
  return a.x == b.x && a.y == b.y && a.width == b.width && a.height == b.height;
}

// The place of a rectangle's plan, or the free one where it belongs: the first from its hash on, so
// that two cells whose hashes meet are both kept.
Recalled& place_find(std::uint32_t texture, const PixelRect& rect) {
  std::size_t at = place_of(texture, rect);
  while (plans.table[at].texture != 0 &&
         (plans.table[at].texture != texture || !same(plans.table[at].rect, rect))) {
    at = (at + 1) % PLANS;
  }
  return plans.table[at];
}

void plans_forget() {
  plans.table.fill({});
  plans.count = plans.used = 0;
}

const FillPlan& plan_add(std::uint32_t texture, const Coverage& coverage, const PixelRect& rect) {
  Recalled& place = place_find(texture, rect);
  place = {texture, rect, plan_make(coverage, rect)};
  ++plans.count;
  return place.plan;
}

}  // namespace

const FillPlan& fill_plan_recall(std::uint32_t texture, const Coverage& coverage,
                                 const PixelRect& rect) {
  const Recalled& place = place_find(texture, rect);
  if (place.texture != 0) return place.plan;
  if (plans.count == MOST_PLANS) plans_forget();
  const FillPlan& plan = plan_add(texture, coverage, rect);
  if (plans.used < POOL) return plan;
  plans_forget();
  return plan_add(texture, coverage, rect);
}
