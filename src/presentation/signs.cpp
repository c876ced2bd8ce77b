// The three signs along the foot of the screen.
#include <cstdint>
#include <cstdio>
#include <cstring>

#include "books/audits.h"
#include "books/prefs.h"
#include "playfield/playfield.h"  // signs
#include "presentation/draw_tools.h"
#include "presentation/scene.h"

namespace {

// Settings come from a file without checks: sums of them have room for any value.

// Words are centred by their count of characters, half of a 14-pixel glyph each.
constexpr int SIGN_MIDDLE_PX = 128;

struct Place {  // pixels, a sign's top left corner
  int x, y;
};

enum SignIndex { SIGN_LEFT_CREDIT = 0, SIGN_PRICE = 1, SIGN_RIGHT_CREDIT = 2 };

Place sign_place(SignIndex sign) {
  return {signs[sign].x, signs[sign].y};
}

int length_of(const char* line) {
  return static_cast<int>(std::strlen(line));
}

void credit_line_draw(const Place& sign, int y, const char* line) {
  const int x =
      sign.x + SIGN_MIDDLE_PX - GLYPH_HALF_WIDTH_PX * length_of(line) - GLYPH_HALF_WIDTH_PX;
  text_shadowed(FONT_14X22, x, sign.y + y, line);
}

void price_line_draw(const Place& sign, int y, int shift, const char* line) {
  const int x = sign.x + SIGN_MIDDLE_PX - GLYPH_HALF_WIDTH_PX * length_of(line) + shift;
  text_shadowed(FONT_14X22, x, sign.y + y, line);
}

// --- credits ------------------------------------------------------------------------------------

void frogs_left_draw(const Place& sign, std::int32_t credits) {
  picture_draw(PANEL_NUM_FROGS_TXT, sign.x + 81, sign.y);
  if (credits == 1) {
    picture_draw(PANEL_FROGICONMED, sign.x + 61, sign.y - 5);
  } else if (credits == 2) {
    picture_draw(PANEL_FROGICON, sign.x + 63, sign.y + 24);
    picture_draw(PANEL_FROGICON, sign.x + 115, sign.y + 24);
  } else {
    char line[24];
    std::snprintf(line, sizeof line, "    X %d", credits);
    credit_line_draw(sign, 42, line);
    const int x = sign.x + SIGN_MIDDLE_PX - GLYPH_HALF_WIDTH_PX * length_of(line) - 16;
    picture_draw(PANEL_FROGICON, x, sign.y + 24);
  }
}

void money_wanted_draw(const Place& sign, int side) {
  const std::int32_t coins = audit_count(AUDIT_CURRENT_COINS, side);
  if (pref_int(PREF_CURRENCY_UNIT) == CURRENCY_SWIPES) {
    credit_line_draw(sign, 29, "SWIPE");
    credit_line_draw(sign, 55, coins < 1 ? "CARD" : "AGAIN");
    return;
  }
  credit_line_draw(sign, 29, "INSERT");
  const long long missing = 0LL + pref_int(PREF_COINS_TO_PLAY) - coins;
  char line[32] = "COIN";
  if (missing != 1) std::snprintf(line, sizeof line, "%lld COINS", missing);
  credit_line_draw(sign, 55, line);
}

void credit_sign_draw(SignIndex index, int side) {
  const Place sign = sign_place(index);
  const std::int32_t credits =
      pref_on(PREF_FREEPLAY) ? 1 : audit_count(AUDIT_CURRENT_CREDITS, side);
  if (credits > 0) {
    frogs_left_draw(sign, credits);
  } else {
    money_wanted_draw(sign, side);
  }
}

// --- price --------------------------------------------------------------------------------------

// A price and, in the gap of its line, what it buys: one large frog, or a small one and a number.
// The gap is narrow before a number of two digits, so the words stand in front of the frog.
void price_draw(const Place& sign, const char* price) {
  const std::int32_t frogs = pref_int(PREF_FROGS_PER_GAME);
  char line[64];
  if (frogs <= 1) {
    std::snprintf(line, sizeof line, "%s /       ", price);
  } else {
    std::snprintf(line, sizeof line, "%s /    X%d", price, frogs);
  }
  const int end = sign.x + SIGN_MIDDLE_PX + GLYPH_HALF_WIDTH_PX * length_of(line);
  if (frogs <= 1) {
    picture_draw(PANEL_FROGICONLRG, end - 108, sign.y);
  } else {
    picture_draw(PANEL_FROGICON, end - 84, sign.y + 29);
  }
  price_line_draw(sign, 50, 0, line);
}

void coin_price_draw(const Place& sign) {
  const std::int32_t coins = pref_int(PREF_COINS_TO_PLAY);
  char price[24] = "1 COIN";
  if (coins != 1) std::snprintf(price, sizeof price, "%d COINS", coins);
  price_draw(sign, price);
}

void money_price_draw(const Place& sign, char money_sign) {
  const float cost = static_cast<float>(pref_int(PREF_COINS_TO_PLAY)) * pref_float(PREF_COIN_VALUE);
  char price[24];
  std::snprintf(price, sizeof price, "%c%0.2f", money_sign, static_cast<double>(cost));
  price_draw(sign, price);
}

// A swipe that doesn't buy a whole number of games: what it is worth, and what a game costs.
void swipe_worth_draw(const Place& sign) {
  const std::int32_t worth = pref_int(PREF_COINS_PER_SWIPE);
  const std::int32_t frogs = pref_int(PREF_FROGS_PER_GAME);
  char line[64] = "SWIPE / COIN";
  if (worth != 1) std::snprintf(line, sizeof line, "SWIPE / %d COINS", worth);
  price_line_draw(sign, 33, 0, line);
  if (frogs <= 1) {
    std::snprintf(line, sizeof line, "%d COINS /    ", pref_int(PREF_COINS_TO_PLAY));
  } else {
    std::snprintf(line, sizeof line, "%d COINS /    X%d", pref_int(PREF_COINS_TO_PLAY), frogs);
  }
  const int end = sign.x + SIGN_MIDDLE_PX + GLYPH_HALF_WIDTH_PX * length_of(line);
  picture_draw(PANEL_FROGICON, frogs <= 1 ? end - 56 : end - 84, sign.y + 45);
  price_line_draw(sign, 66, 0, line);
}

constexpr const char* SWIPE_LINE = "SWIPE / ";
constexpr int SWIPE_LENGTH = 8;

// A swipe that buys up to four frogs shows each of them.
void swipe_few_draw(const Place& sign, long long frogs) {
  constexpr int PITCH_PX = 52;
  constexpr int PAIR_WIDTH_PX = 106;
  const int x = sign.x + SIGN_MIDDLE_PX + GLYPH_HALF_WIDTH_PX * SWIPE_LENGTH - 64;
  price_line_draw(sign, 50, frogs <= 1 ? 0 : -PAIR_WIDTH_PX / 2, SWIPE_LINE);
  if (frogs <= 1) {
    picture_draw(PANEL_FROGICONLRG, x, sign.y);
    return;
  }
  const int first_y = frogs == 2 ? 29 : 9;
  picture_draw(PANEL_FROGICON, x, sign.y + first_y);
  picture_draw(PANEL_FROGICON, x + PITCH_PX, sign.y + first_y);
  if (frogs > 2) picture_draw(PANEL_FROGICON, x, sign.y + 49);
  if (frogs > 3) picture_draw(PANEL_FROGICON, x + PITCH_PX, sign.y + 49);
}

void swipe_many_draw(const Place& sign, long long frogs) {
  char line[64];
  std::snprintf(line, sizeof line, "SWIPE /    X%lld", frogs);
  price_line_draw(sign, 50, -4, line);
  const int x = sign.x + SIGN_MIDDLE_PX + GLYPH_HALF_WIDTH_PX * SWIPE_LENGTH - 84;
  picture_draw(PANEL_FROGICON, x, sign.y + 29);
}

void swipe_price_draw(const Place& sign) {
  const std::int32_t worth = pref_int(PREF_COINS_PER_SWIPE);
  const std::int32_t cost = pref_int(PREF_COINS_TO_PLAY);
  if (cost <= 0 || worth % cost != 0) {  // a cost of 0 can only come from a stored file
    swipe_worth_draw(sign);
    return;
  }
  const long long frogs = 1LL * pref_int(PREF_FROGS_PER_GAME) * (worth / cost);
  if (frogs <= 4) {
    swipe_few_draw(sign, frogs);
  } else {
    swipe_many_draw(sign, frogs);
  }
}

void price_sign_draw() {
  const Place sign = sign_place(SIGN_PRICE);
  if (pref_on(PREF_FREEPLAY)) {
    price_line_draw(sign, 50, 0, "FREEPLAY");
    return;
  }
  switch (pref_int(PREF_CURRENCY_UNIT)) {
    case CURRENCY_DOLLARS:
      money_price_draw(sign, '$');
      break;
    case CURRENCY_EURO:
      money_price_draw(sign, '@');
      break;  // the fonts show the euro there
    case CURRENCY_SWIPES:
      swipe_price_draw(sign);
      break;
    default:
      coin_price_draw(sign);
      break;
  }
}

}  // namespace

void signs_draw() {
  for (const Scenery& sign : signs) {
    cell_draw(static_cast<SheetIndex>(sign.sheet_index), sign.frame, sign.x, sign.y);
  }
  credit_sign_draw(SIGN_LEFT_CREDIT, SIDE_LEFT);
  credit_sign_draw(SIGN_RIGHT_CREDIT, SIDE_RIGHT);
  price_sign_draw();
}
