#include "playfield/looks.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <numbers>

#include "frame/game_clock.h"  // now_ms, seconds_since
#include "gfx/panel_table.h"   // sheets

namespace {

constexpr int HOP_FRAMES = 15;
constexpr float RINGS_PER_SECOND = 30.0F;
constexpr float FLAP_SECONDS = 1.2F;  // one run of the wings, and one turn of the ticket
constexpr int FLAP_FRAMES = 32;
constexpr int TICKET_FRAMES = 18;
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

void ticket_turn() {
  const float b = seconds_since(butterfly.flight_time);
  butterfly.ticket_frame =
      static_cast<std::int32_t>(TICKET_FRAMES * b / FLAP_SECONDS) % TICKET_FRAMES;
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
    butterfly.frame = static_cast<std::int32_t>(a * FLAP_FRAMES / FLAP_SECONDS) % FLAP_FRAMES;
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
