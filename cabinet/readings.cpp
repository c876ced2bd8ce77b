#include "cabinet/readings.h"

#include <algorithm>
#include <cstdio>

#include "cabinet/cabinet.h"

struct ReadingRow {
  const char* pattern;
  const char* help;
  BooksValue (*read)(const Cabinet&, const Arguments&);
};

namespace {

BooksValue known(double value) {
  return {true, value, {}};
}

const Dispenser& dispenser(const Cabinet& cabinet, const Arguments& a) {
  return cabinet.board.dispensers[a.side];
}

long frames(const Cabinet& cabinet, const Arguments& a, Direction direction) {
  const std::string& text = a.texts[0];
  return text.size() == 1 ? frame_log_letters(cabinet.board.log, direction, text[0])
                          : frame_log_exact(cabinet.board.log, direction, text);
}

double presses(const Cabinet& cabinet, int input) {
  const long whole_presses = cabinet.board.switches.edges[input] / 2;
  return static_cast<double>(whole_presses);
}

BooksValue read_game(const Cabinet& cabinet, const Arguments& a) {
  if (a.choices[0] == "exit-code") return known(cabinet.game.exit_code);
  return known(cabinet.game.running == (a.choices[0] == "running") ? 1 : 0);
}

BooksValue read_hits(const Cabinet& cabinet, const Arguments& a) {
  const LineFaults& faults =
      a.choices[0] == "to-host" ? cabinet.cable.to_host : cabinet.cable.to_board;
  return known(static_cast<double>(faults.kinds[line_fault_find(a.choices[1])].hits));
}

const LampCurve& curve(const Cabinet& cabinet, const Arguments& a) {
  return cabinet.board.coils.curve[static_cast<int>(argument(a, "CHANNEL", 0))];
}

BooksValue read_led(const Cabinet& cabinet, const Arguments& a) {
  const LedDisplay& led = cabinet.led;
  if (a.choices[0] == "value") return known(led.value);
  if (a.choices[0] == "blink") return known(led.blink ? 1 : 0);
  return known(static_cast<double>(a.choices[0] == "asked" ? led.types : led.malformed));
}

BooksValue read_usb(const Cabinet& cabinet, const Arguments& a) {
  const UsbWatchdog& watchdog = cabinet.usb.device;
  const std::string& what = a.choices[0];
  if (what == "open") return known(usb_port_is_open(cabinet.usb) ? 1 : 0);
  if (what == "allowance") return known(watchdog.allowance);
  if (what == "last") return known(watchdog.last);
  const long count = what == "fed"     ? watchdog.fed
                     : what == "bites" ? watchdog.bites
                     : what == "words" ? watchdog.words
                                       : watchdog.malformed;
  return known(static_cast<double>(count));
}

using C = const Cabinet&;
using A = const Arguments&;

const ReadingRow READINGS[] = {
    {"tickets SIDE", "paper that came out",
     [](C c, A a) { return known(static_cast<double>(dispenser(c, a).paper_out)); }},
    {"owed SIDE", "tickets that the board still has to pay",
     [](C c, A a) { return known(dispenser(c, a).count); }},
    {"paper SIDE", "paper left in the dispenser",
     [](C c, A a) { return known(static_cast<double>(dispenser(c, a).paper_left)); }},
    {"fault SIDE", "1 while the dispenser has given up",
     [](C c, A a) { return known(dispenser(c, a).fault ? 1 : 0); }},
    {"paying SIDE", "1 while its motor runs",
     [](C c, A a) { return known(dispenser(c, a).running ? 1 : 0); }},
    {"meter METER", "coin-left, coin-right, ticket-left, ticket-right",
     [](C c, A a) { return known(static_cast<double>(c.board.coils.meter[a.meter])); }},
    {"lamp CHANNEL", "its value, 0 to 4095",
     [](C c, A a) {
       return known(c.board.coils.lamp[static_cast<int>(argument(a, "CHANNEL", 0))]);
     }},
    {"lamp-lowest CHANNEL", "its lowest value since \"mark\"",
     [](C c, A a) { return known(curve(c, a).lowest); }},
    {"lamp-highest CHANNEL", "its highest value",
     [](C c, A a) { return known(curve(c, a).highest); }},
    {"lamp-changes CHANNEL", "how often it changed; a breath takes many steps",
     [](C c, A a) { return known(static_cast<double>(curve(c, a).changes)); }},
    {"led value|blink|asked|malformed",
     "the LED board: its number (-1: none yet), 1 while it blinks", read_led},
    {"usb fed|allowance|bites|open|words|last|malformed",
     "the USB watchdog: times, seconds, 1 while the game has it open, its last word", read_usb},
    {"lockout SIDE", "1 while the coil is energised",
     [](C c, A a) { return known(coils_lockout(c.board.coils, a.side) ? 1 : 0); }},
    {"coins SIDE", "how often the coin switch was pressed and released",
     [](C c, A a) { return known(presses(c, INPUT_COIN_LEFT + a.side)); }},
    {"presses INPUT", "the same for any switch",
     [](C c, A a) { return known(presses(c, a.input)); }},
    {"frame FRAME [count]", "frames from the game since \"mark\": T, or \"T 80 19\"",
     [](C c, A a) { return known(static_cast<double>(frames(c, a, TO_BOARD))); }},
    {"sent FRAME [count]", "frames to the game since \"mark\"",
     [](C c, A a) { return known(static_cast<double>(frames(c, a, TO_HOST))); }},
    {"audit NAME", "a row of the audits on disk, times in milliseconds",
     [](C c, A a) { return books_audit(c.options.drive, a.texts[0]); }},
    {"pref NAME", "a row of the settings on disk",
     [](C c, A a) { return books_pref(c.options.drive, a.texts[0]); }},
    {"checksum-errors", "frames from the game with a wrong or no checksum",
     [](C c, A) { return known(static_cast<double>(c.board.counts.checksum_errors)); }},
    {"malformed", "invalid frames from the game",
     [](C c, A) { return known(static_cast<double>(c.board.counts.malformed)); }},
    {"checksums", "1 while the board has them on",
     [](C c, A) { return known(c.board.checksums ? 1 : 0); }},
    {"restarts", "of the board",
     [](C c, A) { return known(static_cast<double>(c.board.counts.restarts)); }},
    {"watchdog fed|bites", "W frames, and restarts without them",
     [](C c, A a) {
       const BoardCounts& counts = c.board.counts;
       return known(static_cast<double>(a.choices[0] == "fed" ? counts.watchdog_fed
                                                              : counts.watchdog_bites));
     }},
    {"hits to-host|to-board drop|garble|duplicate", "bytes that a line fault has hit", read_hits},
    {"lost-bytes", "bytes lost at an open cable end",
     [](C c, A) { return known(static_cast<double>(c.cable.lost_bytes)); }},
    {"game running|ended|exit-code", "the game's process", read_game},
    {"hands busy|idle", "presses that are still to come",
     [](C c, A a) { return known(hands_idle(c.hands) == (a.choices[0] == "idle") ? 1 : 0); }},
    {"on", "1", [](C, A) { return known(1); }},
    {"off", "0", [](C, A) { return known(0); }},
};

constexpr const char* RELATIONS[] = {"==", "!=", "<=", ">=", "<", ">"};

bool relate(const std::string& relation, double left, double right) {
  if (relation == "==") return left == right;
  if (relation == "!=") return left != right;
  if (relation == "<=") return left <= right;
  if (relation == ">=") return left >= right;
  if (relation == "<") return left < right;
  return left > right;
}

std::string text_of(const Words& words, std::size_t begin, std::size_t end) {
  std::string text;
  for (std::size_t i = begin; i < end; ++i) {
    if (!text.empty()) text += ' ';
    text += words[i].quoted ? "\"" + words[i].text + "\"" : words[i].text;
  }
  return text;
}

std::string parse_term(const Words& words, std::size_t& at, const std::vector<std::string>& names,
                       Reading::Term& term) {
  if (at >= words.size()) return "a reading is missing at the end";
  if (word_number(words[at], term.number)) {
    ++at;
    return {};
  }
  std::string reason;
  for (const ReadingRow& row : READINGS) {
    std::string error;
    const int end = pattern_match(row.pattern, words, at, term.arguments, error);
    if (end >= 0) {
      term.row = &row;
      at = static_cast<std::size_t>(end);
      return {};
    }
    const std::string pattern = row.pattern;
    if (pattern.substr(0, pattern.find(' ')) == words[at].text) {
      reason = error;
      if (!reason.empty()) reason += "; ";
      reason += "the reading is \"" + pattern + "\"";
    }
  }
  if (!reason.empty()) return reason;
  if (std::find(names.begin(), names.end(), words[at].text) == names.end()) {
    return "there is no reading \"" + words[at].text + "\"";
  }
  term.name = words[at++].text;
  return {};
}

BooksValue term_value(const Cabinet& cabinet, const Reading::Term& term) {
  if (term.row != nullptr) return term.row->read(cabinet, term.arguments);
  if (term.name.empty()) return known(term.number);
  const auto found = cabinet.names.find(term.name);
  if (found == cabinet.names.end()) return {false, 0, term.name + " isn't known"};
  return known(found->second);
}

std::string seen_of(const Reading& reading, const BooksValue& value) {
  char number[48];
  std::snprintf(number, sizeof number, "%.10g", value.value);
  return reading.text + " is " + (value.found ? number : "unknown (" + value.why + ")");
}

}  // namespace

std::string reading_parse(const Words& words, std::size_t& at,
                          const std::vector<std::string>& names, Reading& reading) {
  const std::size_t begin = at;
  int sign = 1;
  for (;;) {
    Reading::Term term{sign, nullptr, {}, 0, {}};
    if (std::string error = parse_term(words, at, names, term); !error.empty()) return error;
    reading.terms.push_back(term);
    if (at >= words.size() || (words[at].text != "+" && words[at].text != "-")) break;
    sign = words[at++].text == "+" ? 1 : -1;
  }
  reading.text = text_of(words, begin, at);
  return {};
}

std::string condition_parse(const Words& words, std::size_t& at,
                            const std::vector<std::string>& names, Condition& condition) {
  const std::size_t begin = at;
  if (std::string error = reading_parse(words, at, names, condition.left); !error.empty()) {
    return error;
  }
  if (at < words.size()) {
    for (const char* relation : RELATIONS) {
      if (words[at].text == relation) condition.relation = relation;
    }
    const bool bare = words[at].text == "on" || words[at].text == "off";  // "lockout left on"
    if (!condition.relation.empty()) {
      ++at;
    } else if (bare) {
      condition.relation = "==";
    }
    if (!condition.relation.empty()) {
      std::string error = reading_parse(words, at, names, condition.right);
      if (!error.empty()) return error;
    }
  }
  condition.text = text_of(words, begin, at);
  return {};
}

BooksValue reading_value(const Cabinet& cabinet, const Reading& reading) {
  double sum = 0;
  for (const Reading::Term& term : reading.terms) {
    BooksValue value = term_value(cabinet, term);
    if (!value.found) return value;
    sum += term.sign * value.value;
  }
  return known(sum);
}

std::string reading_seen(const Cabinet& cabinet, const Reading& reading) {
  return seen_of(reading, reading_value(cabinet, reading));
}

Verdict condition_check(const Cabinet& cabinet, const Condition& condition) {
  const BooksValue left = reading_value(cabinet, condition.left);
  const std::string seen = seen_of(condition.left, left);
  if (condition.relation.empty()) return {left.found && left.value != 0, seen};
  const BooksValue right = reading_value(cabinet, condition.right);
  const bool both = left.found && right.found;
  return {both && relate(condition.relation, left.value, right.value),
          seen + ", " + seen_of(condition.right, right)};
}

std::string readings_help() {
  std::string text;
  for (const ReadingRow& row : READINGS) {
    text += help_line(row.pattern, row.help);
  }
  return text;
}
