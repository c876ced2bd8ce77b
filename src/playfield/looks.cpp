#include "playfield/looks.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <numbers>

#include "frame/game_clock.h"  // now_ms, seconds_since
#include "gfx/panel_table.h"   // sheets
#include "platform/random.h"   // random_unit

namespace {

constexpr float IDLE_SECONDS = 2.5F;
constexpr std::int32_t HOP_FRAMES = SHEETS[SHEET_GFROG].frames;
constexpr float RINGS_PER_SECOND = 30.0F;
constexpr float FLAP_SECONDS = 1.2F;  // one run of the wings, and one turn of the ticket
constexpr float PI = std::numbers::pi_v<float>;

constinit bool watched = true;

float seconds(std::int64_t ms) {
  return static_cast<float>(static_cast<double>(ms) / 1000.0);
}

std::int32_t alpha_of(float v) {
  return static_cast<std::int32_t>(255.0F * std::clamp(v, 0.0F, 1.0F));
}

void scale_and_alpha(Frog& frog, float t) {
  switch (frog.state) {
    case FROG_WINNING:
      frog.scale = 1.0F + t * 0.125F + 0.25F * std::sin(t * (16.0F * PI) * 0.25F);
      frog.alpha = alpha_of((WIN_SECONDS - t) * 8.0F * 0.25F);
      break;
    case FROG_SINKING:
      frog.scale = 1.0F + std::min(t * 0.5F, 1.0F) * 0.5F + 0.25F * std::sin(4.0F * PI * t);
      frog.alpha = alpha_of(2.0F * (sinking_seconds(frog) - t));
      break;
    case FROG_FADING:
      frog.alpha = alpha_of((FADE_SECONDS - t) / FADE_SECONDS);
      break;
    default:
      frog.scale = std::max(frog.scale - 0.1F, 1.0F);
      break;
  }
}

// The label of a demo frog swells and fades every two seconds, and once the frog is done it ends
// the next time that it is faint.
void pulse_update(Frog& frog, float l) {
  const bool ending = frog.state == FROG_SINKING || frog.state == FROG_FADING;
  frog.pulse = ending && frog.pulse < 4
                   ? 0
                   : static_cast<std::int32_t>(255.0F * (0.5F + 0.5F * std::cos(PI + PI * l)));
}

SpriteSheet* next_idle_sheet(const SpriteSheet* sheet) {
  if (sheet == &sheets[SHEET_GFROG_IDLE2] || sheet == &sheets[SHEET_GFROG_IDLE3]) {
    return &sheets[SHEET_GFROG_IDLE1];
  }
  const int n = static_cast<int>(random_unit() * 5.0);
  return &sheets[n < 2 ? SHEET_GFROG_IDLE1 : n == 2 ? SHEET_GFROG_IDLE2 : SHEET_GFROG_IDLE3];
}

void ticket_turn() {
  const float b = seconds_since(butterfly.flight_time);
  const std::int32_t frames = sheets[SHEET_CYCLETICKET].frames;
  butterfly.ticket_frame =
      static_cast<std::int32_t>(static_cast<float>(frames) * b / FLAP_SECONDS) % frames;
}

void slot_animate(LaneSlot& slot) {
  if (slot.kind == SLOT_EMPTY) return;
  const std::int32_t frames = slot.sheet.get()->frames;
  const auto elapsed = static_cast<float>((now_ms() - slot.cycle_start) * frames);
  const std::int32_t frame = static_cast<std::int32_t>(elapsed / (slot.cycle_s * 1000.0F)) % frames;
  if (frame == 0 && slot.frame != 0) slot.cycle_start = now_ms();
  slot.frame = frame;
}

}  // namespace

void looks_set_watched(bool somebody) {
  watched = somebody;
}

void frog_looks_update(Frog& frog, const FrogTimes& times) {
  if (!watched) return;
  scale_and_alpha(frog, times.state);
  const float launch = seconds(times.launch_ms);
  pulse_update(frog, launch);
  frog.ring_alpha = frog.state == FROG_WAITING ? 255 : alpha_of(3.0F - launch);
}

void frog_hop_frame(Frog& frog, const FrogTimes& times) {
  if (!watched) return;
  frog.frame = static_cast<std::int32_t>(times.state / HOP_SECONDS * HOP_FRAMES) % HOP_FRAMES;
}

void frog_ring_frame(Frog& frog, const FrogTimes& times) {
  if (!watched) return;
  frog.ring_frame = static_cast<std::int32_t>(RINGS_PER_SECOND * seconds(times.ring_ms)) %
                    sheets[SHEET_GRN_RINGS].frames;
}

void frog_idle_frame(Frog& frog, const FrogTimes& times) {
  if ((frog.flags & FROG_IDLE_ANIM) == 0) {
    frog.flags |= FROG_IDLE_ANIM;
    frog.sheet = &sheets[SHEET_GFROG_IDLE1];
    frog.state_time = now_ms();
  }
  const std::int32_t frames = frog.sheet.get()->frames;
  auto frame =
      static_cast<std::int32_t>(times.state / IDLE_SECONDS * static_cast<float>(frames - 1));
  if (frame >= frames) {  // the drawing must never see a frame past the sheet
    frame = 0;
    frog.sheet = next_idle_sheet(frog.sheet);
    frog.state_time = now_ms();
  }
  frog.frame = frame;
}

void frog_win_frame(Frog& frog, const FrogTimes& times) {
  if ((frog.flags & FROG_WIN_ANIM) == 0) {
    frog.flags |= FROG_WIN_ANIM;
    frog.sheet = &sheets[SHEET_GFROG_WIN];
    frog.state_time = now_ms();
  }
  const std::int32_t frames = sheets[SHEET_GFROG_WIN].frames;
  frog.frame = static_cast<std::int32_t>(times.state * 0.25F * static_cast<float>(frames)) % frames;
}

void butterfly_looks_update(float a) {
  if (!watched) return;
  if (butterfly.state == BUTTERFLY_CAUGHT) {
    butterfly.scale = 1.0F + 0.25F * a + 0.25F * std::sin(4.0F * PI * a * 0.5F);
    const float v = std::clamp((CAUGHT_SECONDS - a) * 4.0F * 0.5F, 0.0F, 1.0F);
    butterfly.alpha = static_cast<std::int32_t>(255.0F * v);
    ticket_turn();
  } else {
    butterfly.alpha = 255;
    butterfly.scale = std::max(butterfly.scale - 0.1F, 1.0F);
  }
  if (butterfly.state == BUTTERFLY_FLYING) {
    const std::int32_t frames = sheets[SHEET_BUTTERFLY].frames;
    butterfly.frame =
        static_cast<std::int32_t>(a * static_cast<float>(frames) / FLAP_SECONDS) % frames;
    ticket_turn();
  }
}

void lane_looks_update(const Lane& lane) {
  if (!watched) return;
  const std::uint64_t eaten = lane.eaten;
  for (int cell = 0; cell < LANE_CELLS; ++cell) {
    LaneSlot& slot = lane.slots[cell];
    slot.active = (eaten & cell_bit(cell)) == 0 ? 1 : 0;
    slot_animate(slot);
  }
}
