#include "tools/books/metrics.h"

#include <algorithm>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <set>
#include <string>
#include <string_view>

#include "frame/sides.h"
#include "tools/books/ledger.h"  // SIDE_WORDS

namespace {

constexpr double MS_PER_S = 1000.0;

// --- the text ---------------------------------------------------------------------------------

class Page {
 public:
  // Samples follow the name and the help of their family.
  void family(const char* name, const char* type, const char* help) {
    name_ = name;
    text += std::string("# HELP ") + name + ' ' + help + "\n# TYPE " + name + ' ' + type + '\n';
  }
  void sample(const std::string& labels, double value) {
    char number[40];
    std::snprintf(number, sizeof number, " %.15g\n", value);
    text += name_ + (labels.empty() ? "" : '{' + labels + '}') + number;
  }
  template <typename Value>
  void sides(Value value) {
    for (int side = 0; side < SIDE_COUNT; ++side) {
      sample(of_side(side), static_cast<double>(value(side)));
    }
  }
  void one(const char* name, const char* type, const char* help, double value) {
    family(name, type, help);
    sample({}, value);
  }
  static std::string of_side(int side) { return std::string("side=\"") + SIDE_WORDS[side] + '"'; }

  std::string text;

 private:
  std::string name_;
};

// A value between quotes.
std::string quoted(std::string_view value) {
  std::string text = "\"";
  for (const char letter : value) {
    if (letter == '"' || letter == '\\') text += '\\';
    text += letter;
  }
  return text + '"';
}

// --- the run ----------------------------------------------------------------------------------

// Something that is there or not: how often it came, and how long it stayed.
struct Spell {
  bool on = false;
  std::int64_t times = 0, ms = 0, since_ms = 0;

  void set(bool now_on, std::int64_t utc_ms) {
    if (now_on == on) return;
    if (now_on) ++times;
    if (on) ms += std::max<std::int64_t>(utc_ms - since_ms, 0);
    on = now_on;
    since_ms = utc_ms;
  }
  [[nodiscard]] double seconds(std::int64_t now_ms) const {
    const std::int64_t open = on ? std::max<std::int64_t>(now_ms - since_ms, 0) : 0;
    return static_cast<double>(ms + open) / MS_PER_S;
  }
};

struct Run {
  std::string version;
  std::int64_t start_ms = 0, coin_ms = 0;  // the coin may be from before the start
  std::int64_t event_ms = 0;
  Spell fault[SIDE_COUNT], link_down;
  std::int64_t paper[SIDE_COUNT]{}, owed[SIDE_COUNT]{};
  bool owed_known[SIDE_COUNT]{};
  std::int64_t store_failures = 0, lost = 0;
  std::set<std::string, std::less<>> not_stored;  // files
};

// What is owed was told by the board, or the board was told it.
void take_owed(Run& run, const JournalLine& line, bool paid) {
  const int side = side_of(line);
  const std::int64_t owed = number_of(line, "owed") + number_of(line, "queued");
  if (paid && run.owed_known[side]) {
    run.paper[side] += std::max<std::int64_t>(run.owed[side] - owed, 0);
  }
  run.owed[side] = owed;
  run.owed_known[side] = true;
}

void take_money(Run& run, const JournalLine& line) {
  switch (line.kind) {
    case JOURNAL_COIN:
    case JOURNAL_SWIPE:
      run.coin_ms = line.utc_ms;
      break;
    case JOURNAL_TICKETS:
      if (field_of(line, "told") == "yes") run.owed[side_of(line)] += number_of(line, "paper");
      break;
    case JOURNAL_RESTORED:
      if (field_of(line, "told") == "yes") take_owed(run, line, false);
      break;
    case JOURNAL_PAPER:
      take_owed(run, line, true);
      break;
    case JOURNAL_TICKETS_CLEARED:
      run.owed[side_of(line)] = 0;
      break;
    default:
      break;
  }
}

Run after_start(const JournalLine& line, std::int64_t coin_ms) {
  Run run;
  run.version = field_of(line, "version");
  run.start_ms = line.utc_ms;
  run.coin_ms = coin_ms;
  return run;
}

void take_trouble(Run& run, const JournalLine& line) {
  switch (line.kind) {
    case JOURNAL_START:
      run = after_start(line, run.coin_ms);
      break;
    case JOURNAL_FAULT:
    case JOURNAL_FAULT_OVER:
      run.fault[side_of(line)].set(line.kind == JOURNAL_FAULT, line.utc_ms);
      break;
    case JOURNAL_LINK_LOST:
    case JOURNAL_LINK_BACK:
      run.link_down.set(line.kind == JOURNAL_LINK_LOST, line.utc_ms);
      break;
    case JOURNAL_NOT_STORED:
      ++run.store_failures;
      run.not_stored.emplace(field_of(line, "file"));
      break;
    case JOURNAL_STORED:
      run.not_stored.erase(std::string(field_of(line, "file")));
      break;
    case JOURNAL_LOST:
      run.lost += number_of(line, "events");
      break;
    default:
      break;
  }
}

Run run_of(const Journal& journal) {
  Run run;
  for (const JournalLine& line : journal.lines) {
    take_trouble(run, line);
    run.event_ms = line.utc_ms;
    take_money(run, line);
  }
  return run;
}

// --- the families -----------------------------------------------------------------------------

struct Counter {
  const char* name;
  AuditIndex row;
  const char* help;
};
constexpr Counter COUNTERS[] = {
    {"lilyhop_coins_total", AUDIT_COIN_DROPS, "Coins, or pulses of the card reader."},
    {"lilyhop_plays_total", AUDIT_GAMES_PLAYED, "Frogs played."},
    {"lilyhop_tickets_total", AUDIT_TICKETS,
     "Tickets won; points where Two Point Tickets is on, two for a ticket of paper."},
    {"lilyhop_capped_tickets_total", AUDIT_CAPPED_TICKETS, "Tickets that Maximum Tickets took."},
    {"lilyhop_jackpots_total", AUDIT_JACKPOTS, "Jackpots won."},
    {"lilyhop_service_credits_total", AUDIT_SERVICE_CREDITS, "Presses of the Service button."},
    {"lilyhop_on_seconds_total", AUDIT_TIME_GAME_ON, "Time that the game was on."},
    {"lilyhop_play_seconds_total", AUDIT_TIME_PLAYED, "Time that frogs were in play."},
    {"lilyhop_boots_total", AUDIT_BOOT_COUNT, "Starts of the game."},
    {"lilyhop_daily_reboots_total", AUDIT_PERIODIC_REBOOT_COUNT, "Reboots after a day."},
    {"lilyhop_test_entries_total", AUDIT_TEST_ENTRY_COUNT, "How often the menus were opened."},
    {"lilyhop_watchdog_resets_total", AUDIT_WATCHDOG_COUNT, "Resets by the watchdog."},
    {"lilyhop_io_checksum_failures_total", AUDIT_IO_CHECKSUM_FAILURES,
     "Frames of the I/O board with a wrong checksum."},
};

struct Award {
  const char* name;
  AuditIndex row;
};
constexpr Award AWARDS[] = {
    {"bug", AUDIT_BUG_TICKETS},         {"butterfly", AUDIT_BUTTERFLY_TICKETS},
    {"tier1", AUDIT_BONUS_TICKETS},     {"tier2", AUDIT_DOUBLE_BONUS_TICKETS},
    {"jackpot", AUDIT_JACKPOT_TICKETS}, {"minimum", AUDIT_FREE_TICKETS},
    {"fixed", AUDIT_FIXED_TICKETS}};

const Audit& audit_of(AuditIndex row) {
  return *std::ranges::find(AUDITS, row, &Audit::row);
}

void put_counters(Page& page, const Drive& drive) {
  for (const Counter& counter : COUNTERS) {
    const Audit& about = audit_of(counter.row);
    page.family(counter.name, "counter", counter.help);
    for (int side = 0; side < about.sides; ++side) {
      const AuditRow& row = drive.audits[counter.row + side];
      page.sample(about.sides == SIDE_COUNT ? Page::of_side(side) : "",
                  about.kind == KIND_TIME ? static_cast<double>(row.time_ms) / MS_PER_S
                                          : static_cast<double>(row.count));
    }
  }
  page.family("lilyhop_award_tickets_total", "counter", "Tickets won by what paid them.");
  for (const Award& award : AWARDS) {
    for (int side = 0; side < SIDE_COUNT; ++side) {
      page.sample(Page::of_side(side) + ",award=" + quoted(award.name),
                  drive.audits[award.row + side].count);
    }
  }
  page.one("lilyhop_books_stored_timestamp_seconds", "gauge", "When the books were last stored.",
           static_cast<double>(drive.stored_s));
}

// 0.01, not the float that is nearest to it.
double shortest(float value) {
  char text[32];
  std::snprintf(text, sizeof text, "%.6g", static_cast<double>(value));
  return std::strtod(text, nullptr);
}

void put_settings(Page& page, const Drive& drive) {
  page.family("lilyhop_setting", "gauge", "A setting of the operator; 1 is on.");
  for (const Setting& setting : SETTINGS) {
    if (setting.menu == NO_MENU && setting.pref != PREF_VOLUME &&
        setting.pref != PREF_ATTRACT_VOLUME) {
      continue;
    }
    const PrefRow& row = drive.prefs[setting.pref];
    page.sample(
        "setting=" + quoted(setting_label(setting)),
        setting_is_real(setting) ? shortest(row.float_value) : static_cast<double>(row.int_value));
  }
}

void put_dispensers(Page& page, const Drive& drive, const Run& run, std::int64_t now_ms) {
  page.family("lilyhop_paper_tickets_total", "counter",
              "Tickets of paper that came out since the start, by the board's count.");
  page.sides([&](int side) { return run.paper[side]; });
  page.family("lilyhop_owed_tickets", "gauge", "Tickets of paper that are yet to come out.");
  page.sides([&](int side) {
    return run.owed_known[side] ? run.owed[side]
                                : std::int64_t{drive.audits[AUDIT_TICKETS_OWED + side].count};
  });
  page.family("lilyhop_dispenser_fault", "gauge", "1: the dispenser is empty or jammed.");
  page.sides([&](int side) { return run.fault[side].on; });
  page.family("lilyhop_dispenser_faults_total", "counter", "Its faults since the start.");
  page.sides([&](int side) { return run.fault[side].times; });
  page.family("lilyhop_dispenser_fault_seconds_total", "counter",
              "Time with a fault since the start.");
  page.sides([&](int side) { return run.fault[side].seconds(now_ms); });
}

void put_run(Page& page, const Run& run, std::int64_t now_ms) {
  page.family("lilyhop_info", "gauge", "The game's version.");
  page.sample("version=" + quoted(run.version), 1);
  const auto moment = [&](const char* name, const char* help, std::int64_t utc_ms) {
    if (utc_ms > 0) page.one(name, "gauge", help, static_cast<double>(utc_ms) / MS_PER_S);
  };
  moment("lilyhop_start_time_seconds", "When the game started.", run.start_ms);
  moment("lilyhop_last_event_timestamp_seconds", "When the journal got its last event.",
         run.event_ms);
  moment("lilyhop_last_coin_timestamp_seconds", "When the last coin or swipe was counted.",
         run.coin_ms);
  page.one("lilyhop_link_up", "gauge", "1: the I/O board answers.", run.link_down.on ? 0 : 1);
  page.one("lilyhop_link_losses_total", "counter", "How often it was lost since the start.",
           static_cast<double>(run.link_down.times));
  page.one("lilyhop_link_down_seconds_total", "counter", "Time without it since the start.",
           run.link_down.seconds(now_ms));
  page.one("lilyhop_books_not_stored", "gauge", "1: a file of the books can't be stored.",
           run.not_stored.empty() ? 0 : 1);
  page.one("lilyhop_store_failures_total", "counter", "How often that began since the start.",
           static_cast<double>(run.store_failures));
  page.one("lilyhop_lost_events_total", "counter",
           "Events since the start that the journal could not keep.",
           static_cast<double>(run.lost));
}

void put_pay(Page& page, const PayResult& pay) {
  if (pay.utc_ms == 0) return;
  page.family("lilyhop_pay_check", "gauge", "1: what the last check of the pay has found.");
  for (int verdict = 0; verdict < PAY_VERDICTS; ++verdict) {
    page.sample("verdict=" + quoted(PAY_WORDS[verdict]), verdict == pay.verdict ? 1 : 0);
  }
  page.one("lilyhop_pay_check_p_value", "gauge", "Its p-value.", pay.p);
  page.one("lilyhop_pay_check_frogs", "gauge", "The frogs that it looked at.",
           static_cast<double>(pay.frogs));
  page.one("lilyhop_pay_check_timestamp_seconds", "gauge", "When it was made.",
           static_cast<double>(pay.utc_ms) / MS_PER_S);
}

}  // namespace

std::string metrics_text(const Drive& drive, const PayResult& pay, std::int64_t now_ms) {
  const Run run = run_of(drive.journal);
  Page page;
  put_run(page, run, now_ms);
  put_dispensers(page, drive, run, now_ms);
  if (drive.has_audits) put_counters(page, drive);
  if (drive.has_prefs) put_settings(page, drive);
  put_pay(page, pay);
  page.one("lilyhop_damaged_files", "gauge",
           "Files of books and journal that are missing or damaged.",
           static_cast<double>(drive.damages.size()));
  return page.text;
}
