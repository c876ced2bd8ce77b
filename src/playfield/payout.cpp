// The end of a frog: what is booked, sent to the dispenser and stored.
#include <algorithm>
#include <cstdint>

#include "books/audits.h"
#include "books/journal.h"
#include "books/prefs.h"
#include "frame/game_clock.h"   // now_ms
#include "frame/tick_timers.h"  // award_done
#include "io/jamma.h"
#include "playfield/awards.h"
#include "playfield/paytable.h"
#include "playfield/ticket_dings.h"
#include "presentation/win_show_start.h"

namespace {

constexpr std::int64_t SINK_AFTER_JACKPOT_MS = 2000;

void purse_set_total(int side, Frog& frog, std::int32_t sum) {
  const std::int32_t most = maximum_value();
  frog.total_tickets = std::min(sum, most);
  if (sum > most) audit_add(AUDIT_CAPPED_TICKETS, side, sum - most);
}

// `sum` is what the purse would hold without its cap.
void note_end(int side, const Frog& frog, std::int32_t butterfly, std::int32_t sum) {
  journal_put(JOURNAL_END,
              {side, audit_count(AUDIT_GAMES_PLAYED, side), frog.award_kind.get(),
               frog.base_tickets, butterfly, frog.total_tickets, sum - frog.total_tickets});
}

// Books the award and has it paid, in points or in tickets as the books count.
void pay(int side, JournalTickets by, std::int32_t tickets, std::int32_t paper) {
  audit_add(AUDIT_TICKETS, side, tickets);
  histogram_count(side, tickets);
  const bool told = jamma_command(JAMMA_ADD_TICKETS, side, paper) >= 0;
  journal_put(JOURNAL_TICKETS,
              {side, audit_count(AUDIT_GAMES_PLAYED, side), by, tickets, paper, told ? 1 : 0});
  jamma_command(JAMMA_PULSE_TICKET_METER, side, paper);
}

void pay_total(int side, const Frog& frog) {
  const std::int32_t total = frog.total_tickets;
  pay(side, BY_CATCH, total, pays_points() ? total / 2 : total);
}

void pay_fixed(int side, std::int32_t tickets) {
  audit_add(AUDIT_FIXED_TICKETS, side, tickets);
  pay(side, BY_FIXED, tickets, tickets);
}

// The books count the pieces uncapped, "Tickets" the capped sum.
void pieces_book(int side, const Frog& frog) {
  switch (frog.award_kind) {
    case AWARD_BUG:
      audit_add(AUDIT_BUG_TICKETS, side, frog.base_tickets);
      break;
    case AWARD_TIER1:
      audit_add(AUDIT_BONUS_TICKETS, side, frog.base_tickets);
      break;
    case AWARD_TIER2:
      audit_add(AUDIT_DOUBLE_BONUS_TICKETS, side, frog.base_tickets);
      break;
    case AWARD_FREE:
      audit_add(AUDIT_FREE_TICKETS, side, frog.base_tickets);
      break;
    default:
      break;
  }
  audit_add(AUDIT_BUTTERFLY_TICKETS, side, frog.butterfly_tickets);
}

// Sinking frogs make room for the show.
void sinking_hurry(int side) {
  for (Frog& frog : stations[side].frogs) {
    if (frog.sink_ms <= 0) continue;
    frog.sink_ms = std::min(frog.sink_ms.get(), now_ms() - frog.state_time + SINK_AFTER_JACKPOT_MS);
  }
}

}  // namespace

void purse_empty(Frog& frog) {
  frog.total_tickets = 0;
  frog.award_kind = AWARD_NONE;
  frog.base_tickets = 0;
  frog.butterfly_tickets = 0;
  frog.frame = 0;
  frog.ring_frame = 0;
}

void purse_add_up(int side, Frog& frog) {
  purse_set_total(side, frog, frog.base_tickets + frog.butterfly_tickets);
}

void award_minimum(int side, Frog& frog) {
  const std::int32_t minimum = minimum_value();
  if (frog.total_tickets >= minimum) return;
  frog.base_tickets = minimum;
  purse_add_up(side, frog);
  frog.award_kind = AWARD_FREE;
  if (!is_demo(frog)) audit_add(AUDIT_FREES, side, 1);
}

// The lane is one of the river's.
void award_payout(int side, const Frog& frog) {
  tick_timers.award_done[side] = 1;
  note_end(side, frog, frog.butterfly_tickets, frog.base_tickets + frog.butterfly_tickets);
  if (pref_on(PREF_TICKET_USE)) {
    if (pref_on(PREF_FIXED_TICKET)) {
      ticket_dings(frog.lane, fixed_value());
      pay_fixed(side, fixed_value());
    } else {
      ticket_dings(frog.lane, frog.total_tickets);
      pieces_book(side, frog);
      pay_total(side, frog);
    }
  }
  audits_save();
}

// What the frog held before isn't paid; its butterfly tickets stay in the record and change
// nothing.
void award_jackpot(int side, Frog& frog) {
  const std::int32_t jackpot = jackpot_value();
  frog.base_tickets = jackpot;
  purse_set_total(side, frog, jackpot);
  frog.award_kind = AWARD_JACKPOT;
  if (is_demo(frog)) return;

  sinking_hurry(side);
  audit_add(AUDIT_JACKPOTS, side, 1);
  journal_put(JOURNAL_CATCH, {side, audit_count(AUDIT_GAMES_PLAYED, side), AWARD_JACKPOT, jackpot,
                              frog.total_tickets});
  note_end(side, frog, 0, jackpot);
  if (!pref_on(PREF_TICKET_USE)) {
    win_show_start(side, 0);
  } else if (pref_on(PREF_FIXED_TICKET)) {
    win_show_start(side, fixed_value());
    pay_fixed(side, fixed_value());
  } else {
    audit_add(AUDIT_JACKPOT_TICKETS, side, jackpot);
    win_show_start(side, frog.total_tickets);
    pay_total(side, frog);
  }
  audits_save();
}
