#include "operator/payout_figures.h"

#include <algorithm>
#include <cmath>

#include "books/prefs.h"
#include "operator/info_pane.h"
#include "playfield/paytable.h"

namespace {

constexpr const char* BONUS = SETTINGS[PREF_BONUS_VALUE].name;
constexpr const char* PERCENT = SETTINGS[PREF_PAYOUT_PERCENT].name;

struct Figures {
  float money;     // income of one frog
  float wanted;    // tickets per frog by the settings, rounded to a half
  double average;  // tickets per frog that the paytable row pays
  float achieved;  // the part of the money that this average returns
  float extra;     // tickets per frog that a manual bonus adds or subtracts
  float extra_fraction;
  std::int32_t shown_bonus;
  bool by_hand;
};

// In 32-bit floats, like all figures on the page. The choice of the paytable row uses doubles, so
// near a rounding limit the two may differ by a half. A damaged file can hold any values.
float wanted_of(float money) {
  constexpr float LIMIT = 1e9F;
  const float wanted = money * pref_float(PREF_PAYOUT_PERCENT) / pref_float(PREF_TICKET_VALUE);
  return std::isfinite(wanted) ? rounded_to_half(std::clamp(wanted, -LIMIT, LIMIT)) : 0.0F;
}

float part_of_money(double tickets, float money) {
  return money > 0.0F ? static_cast<float>(tickets) * pref_float(PREF_TICKET_VALUE) / money : 0.0F;
}

Figures figures() {
  Figures f{};
  const std::int32_t frogs = pref_int(PREF_FROGS_PER_GAME);
  f.money = frogs == 0 ? 0.0F
                       : static_cast<float>(pref_int(PREF_COINS_TO_PLAY)) /
                             static_cast<float>(frogs) * pref_float(PREF_COIN_VALUE);
  f.wanted = wanted_of(f.money);
  f.average = static_cast<double>(paytable_average(paytable_row));
  f.achieved = part_of_money(f.average, f.money);
  const std::int32_t natural = paytable[paytable_row].jackpot * paytable_factor;
  const std::int32_t bonus = pref_int(PREF_BONUS_VALUE);
  f.by_hand = bonus != natural;
  f.shown_bonus = jackpot_value();
  const auto more = static_cast<float>(std::int64_t{bonus} - natural);  // a file may hold any value
  f.extra = jackpot_chance() * more * static_cast<float>(boost_factor);
  f.extra_fraction = part_of_money(static_cast<double>(f.extra), f.money);
  return f;
}

double percent(float part) {
  return static_cast<double>(100.0F * part);
}

void lines_disabled() {
  pane_set_line(2, "%-36s %d %s", BONUS, 0, "(DISABLED)");
  pane_set_line(3, "%-36s %0.2f %s", "Average Ticket Payout", 0.0, "(DISABLED)");
  pane_set_line(4, "%-36s %0.2f%%%% %s", PERCENT, 0.0, "(DISABLED)");
}

void lines_fixed(const Figures& f, std::int32_t fixed_bonus) {
  const std::int32_t fixed = pref_int(PREF_FIXED_TICKETS_PER_GAME);
  pane_set_line(2, "%-36s %d %s", BONUS, fixed_bonus, "(FIXED)");
  pane_set_line(3, "%-36s %0.2f %s", "Average Ticket Payout", static_cast<double>(fixed),
                "(FIXED)");
  pane_set_line(4, "%-36s %0.2f%%%% %s", PERCENT, percent(part_of_money(fixed, f.money)),
                "(FIXED)");
}

void lines_in_table(const Figures& f) {
  const float set = pref_float(PREF_PAYOUT_PERCENT);
  if (!f.by_hand) {
    pane_set_line(2, "%-36s %d", BONUS, f.shown_bonus);
    pane_set_line(3, "%-36s %0.2f", "Average Ticket Payout", f.average);
    pane_set_line(4, "%-36s %0.2f%%%%", PERCENT, percent(set));
  } else {
    pane_set_line(2, "%-36s %d (MANUAL)", BONUS, f.shown_bonus);
    pane_set_line(3, "%-36s (%0.2f)", "Average Ticket Payout",
                  f.average + static_cast<double>(f.extra));
    pane_set_line(4, "%-36s (%0.2f%%%%)", PERCENT, percent(set + f.extra_fraction));
  }
}

void lines_capped(const Figures& f) {
  const double set = percent(pref_float(PREF_PAYOUT_PERCENT));
  const auto wanted = static_cast<double>(f.wanted);
  if (!f.by_hand) {
    pane_set_line(2, "%-36s %d", BONUS, f.shown_bonus);
    pane_set_line(3, "%-36s %0.2f (CAPPED TO %0.2f)", "Average Ticket Payout", wanted, f.average);
    pane_set_line(4, "%-36s %0.2f%%%% (CAPPED TO %0.2f%%%%)", PERCENT, set, percent(f.achieved));
  } else {
    pane_set_line(2, "%-36s %d (MANUAL)", BONUS, f.shown_bonus);
    pane_set_line(3, "%-36s %0.2f (CAPPED TO (%0.2f)", "Average Ticket Payout", wanted,
                  f.average + static_cast<double>(f.extra));
    pane_set_line(4, "%-36s %0.2f%%%% (CAPPED TO (%0.2f%%%%)", PERCENT, set,
                  percent(f.achieved + f.extra_fraction));
  }
}

}  // namespace

void pane_payout_figures(std::int32_t fixed_bonus) {
  const Figures f = figures();
  if (!pref_on(PREF_TICKET_USE)) {
    lines_disabled();
  } else if (pref_on(PREF_FIXED_TICKET)) {
    lines_fixed(f, fixed_bonus);
  } else if (f.wanted >= paytable_average(0) && f.wanted <= paytable_average(PAYTABLE_ROWS - 1)) {
    lines_in_table(f);
  } else {
    lines_capped(f);
  }
  pane_set_line(5, "%-36s %0.2f", "Games To Bonus", 1.0 / static_cast<double>(jackpot_chance()));
}
