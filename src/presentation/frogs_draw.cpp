// The frogs with rings, demo label and ticket tag, and the butterfly with its ticket.
#include <cstdint>
#include <cstdio>

#include "playfield/playfield.h"
#include "presentation/draw_tools.h"
#include "presentation/scene.h"

namespace {

constexpr std::uint32_t TAG_COLOUR = 0x00DC2000;
constexpr std::int32_t OPAQUE = 255;
constexpr float TICKET_HALF_PX = 64.0F;

// Two sheets fade with their state; whoever shows them otherwise finds them opaque.
void frog_sheets_tint(const Frog& frog) {
  const std::int32_t alpha = frog.alpha;
  const std::int32_t state = frog.state;
  sheets[SHEET_GFROG].panel->colour = faded(COLOUR_WHITE, state == FROG_FADING ? alpha : OPAQUE);
  sheets[SHEET_GFROG_WIN].panel->colour =
      faded(COLOUR_WHITE, state == FROG_WINNING ? alpha : OPAQUE);
}

void sprite_draw(const Frog& frog) {
  const int x = static_cast<int>(frog.x);
  const int y = frog.y;
  frog_sheets_tint(frog);
  if (!is_demo(frog)) {
    cell_draw(SHEET_GRN_RINGS, frog.ring_frame, x - 132, y, faded(COLOUR_WHITE, frog.ring_alpha));
  }
  const SpriteSheet* sheet = frog.sheet;
  if (sheet != nullptr) gfx_sheet_draw(*sheet, frog.frame, x, y);
}

void tag_draw(const Frog& frog, std::int32_t tickets) {
  const float scale = frog.scale;
  const std::int32_t alpha = frog.alpha;
  const std::int32_t state = frog.state;
  const auto x = static_cast<float>(static_cast<int>(frog.x));
  const auto y = static_cast<float>(frog.y);
  const auto left = static_cast<int>(x + 208.0F - TICKET_HALF_PX * scale);
  const std::uint32_t white = faded(COLOUR_WHITE, alpha);
  if ((state == FROG_SINKING || state == FROG_WINNING) && !is_demo(frog)) {
    picture_draw_scaled(PANEL_YOU_WON_TCK, left,
                        static_cast<int>(y + 228.0F - TICKET_HALF_PX * scale), scale, white);
  }
  picture_draw_scaled(PANEL_TICKET, left, static_cast<int>(y + 232.0F - TICKET_HALF_PX * scale),
                      scale, white);
  const auto digits = static_cast<float>(digits_counted(tickets, 3));
  text_draw_scaled(FONT_14X22, faded(TAG_COLOUR, alpha),
                   static_cast<int>(x + 207.0F - GLYPH_HALF_WIDTH_PX * digits * scale),
                   static_cast<int>(y + 234.0F - GLYPH_HALF_HEIGHT_PX * scale), scale, scale, "%d",
                   tickets);
}

void frog_draw(const Frog& frog) {
  const std::int32_t state = frog.state;
  const std::uint32_t flags = frog.flags;
  if (state == FROG_FREE) return;
  if (state != FROG_SINKING && (flags & FROG_HIDDEN) == 0) sprite_draw(frog);
  if (is_demo(frog) && state != FROG_WAITING) {
    picture_draw(PANEL_DEMO, static_cast<int>(frog.x + 64.0F), frog.y + 192,
                 faded(COLOUR_WHITE, frog.pulse));
  }
  const std::int32_t tickets = frog.total_tickets;
  if (tickets_advertised() && state != FROG_WAITING && tickets > 0) tag_draw(frog, tickets);
}

// Text on the butterfly's ticket: the shadow, then the white line that far to its left and above.
void butterfly_text_draw(int font, const char* line, float x, float y, float shift) {
  const float scale = butterfly.scale;
  const std::int32_t alpha = butterfly.alpha;
  text_draw_scaled(font, faded(COLOUR_BLACK, alpha), static_cast<int>(x), static_cast<int>(y),
                   scale, scale, "%s", line);
  text_draw_scaled(font, faded(COLOUR_WHITE, alpha), static_cast<int>(x - shift),
                   static_cast<int>(y - shift), scale, scale, "%s", line);
}

void butterfly_ticket_draw(float x, float y) {
  const float scale = butterfly.scale;
  cell_draw_scaled(
      SHEET_CYCLETICKET, butterfly.ticket_frame, static_cast<int>(x + 36.0F - 64.0F * scale),
      static_cast<int>(y + 104.0F - 32.0F * scale), scale, faded(COLOUR_WHITE, butterfly.alpha));
}

void butterfly_value_draw(float x, float y) {
  const float scale = butterfly.scale;
  const std::int32_t value = value_advertised(butterfly.value);
  char line[12];
  std::snprintf(line, sizeof line, "%d", value);
  const auto digits = static_cast<float>(digits_counted(value, 3));
  butterfly_text_draw(FONT_14X22, line, x + 36.0F - GLYPH_HALF_WIDTH_PX * digits * scale,
                      y + 107.0F - GLYPH_HALF_HEIGHT_PX * scale, 1.0F);
}

}  // namespace

void frogs_draw() {
  for (const Station& station : stations) {
    for (const Frog& frog : station.frogs) frog_draw(frog);
  }
}

void butterfly_draw() {
  const std::int32_t state = butterfly.state;
  const int left = static_cast<int>(butterfly.x);
  const int top = butterfly.y;
  if (state == BUTTERFLY_FLYING) {
    cell_draw(SHEET_BUTTERFLY, butterfly.frame, left, top, COLOUR_WHITE, butterfly.dx < 0);
  }
  if (state == BUTTERFLY_PARKED || !tickets_advertised()) return;
  const auto x = static_cast<float>(left);
  const auto y = static_cast<float>(top);
  const float scale = butterfly.scale;
  butterfly_ticket_draw(x, y);
  if (state == BUTTERFLY_FLYING) {  // the shadow lies two pixels off
    butterfly_text_draw(FONT_29X43, "?", x + 30.0F - GLYPH_HALF_WIDTH_PX * scale,
                        y + 97.0F - GLYPH_HALF_HEIGHT_PX * scale, 2.0F);
  } else {
    butterfly_value_draw(x, y);
  }
}
