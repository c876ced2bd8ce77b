// Reads a cabinet's books and its journal.
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <iterator>
#include <string>
#include <string_view>
#include <vector>

#include "platform/files.h"
#include "tools/books/answers.h"
#include "tools/books/metrics.h"
#include "tools/books/moment.h"
#include "tools/books/pay.h"

namespace {

constexpr int EXIT_USAGE = 2;

constexpr const char* HELP =
    "books report [FOLDER] [--since TIME] [--collect] [--memory FILE]\n"
    "    The collection sheet: coins, frogs, tickets by kind and the percentage paid back, since "
    "the\n"
    "    last collection. --collect makes this the last collection. It is remembered in FILE, "
    "which\n"
    "    is \"collection\" beside the books if not named; the game doesn't know it. With --since "
    "the\n"
    "    sheet is from the journal.\n"
    "\n"
    "books games [FOLDER] [--last N] [--side left|right] [--since TIME]\n"
    "    Each game as a story: when it was paid for and launched, what it caught and won, and "
    "when\n"
    "    the paper was out.\n"
    "\n"
    "books events [FOLDER] [--since TIME] [--kind KIND] [--side left|right] [--last N]\n"
    "    The lines of the journal. docs/journal.md says what each one means.\n"
    "\n"
    "books check [FOLDER]\n"
    "    Compares the books with the journal. Names what doesn't add up, and what a power cut or "
    "a\n"
    "    kill explains. The exit code is 1 if something doesn't add up.\n"
    "\n"
    "books check [FOLDER] --pay [--since TIME] [--memory FILE]\n"
    "    Compares what the frogs won since the last change of settings with what the lab's players "
    "win\n"
    "    under these settings. What they do is kept in FILE, \"paycheck\" beside the books if not "
    "named.\n"
    "    The exit code is 1 if the cabinet pays above or below.\n"
    "\n"
    "books metrics [FOLDER] [--to FILE]\n"
    "    The cabinet's counters and state in the text format of Prometheus, to FILE in one step. "
    "Events\n"
    "    are counted from the last start of the game.\n"
    "\n"
    "FOLDER is the cabinet's drive d:, also of a running game, or a copy of it; LILYHOP_DRIVE_D if "
    "not\n"
    "named. TIME is \"2026-11-25\" or \"2026-11-25 19:13\", in the local time zone (TZ). All "
    "but metrics take\n"
    "--csv or --json, with times in UTC.\n";

int usage_error(const std::string& what) {
  std::fprintf(stderr, "books: %s; see books help\n", what.c_str());
  return EXIT_USAGE;
}

bool is_kind(const std::string& word) {
  return std::ranges::any_of(JOURNAL_ROWS, [&](const JournalRow& row) { return word == row.name; });
}

// False if the option doesn't take the value.
bool take_value(Question& question, const std::string& option, const std::string& value) {
  if (option == "--memory") question.memory = value;
  if (option == "--to") question.to = value;
  if (option == "--kind") question.kind = value;
  if (option == "--side") question.side = value == "right" ? SIDE_RIGHT : SIDE_LEFT;
  if (option == "--last") question.last = std::strtoul(value.c_str(), nullptr, 10);
  if (option == "--since") question.has_since = moment_from_words(value, question.since_ms);
  return !value.empty() && (option != "--kind" || is_kind(value)) &&
         (option != "--side" || value == "left" || value == "right") &&
         (option != "--last" || question.last > 0) && (option != "--since" || question.has_since);
}

// Empty, or a line that says what is wrong.
std::string read_words(int count, char** words, Question& question) {
  constexpr std::string_view WITH_VALUE[] = {"--memory", "--to",   "--kind",
                                             "--side",   "--last", "--since"};
  for (int i = 0; i < count; ++i) {
    const std::string word = words[i];
    if (word == "--csv" || word == "--json") {
      question.form = word == "--csv" ? FORM_CSV : FORM_JSON;
    } else if (word == "--collect" || word == "--pay") {
      (word == "--pay" ? question.pay : question.collect) = true;
    } else if (std::ranges::find(WITH_VALUE, word) != std::end(WITH_VALUE)) {
      const std::string value = ++i < count ? words[i] : "";
      if (!take_value(question, word, value))
        return std::string(word).append(" doesn't take \"").append(value).append("\"");
    } else if (word.starts_with("--")) {
      return "there is no option " + word;
    } else if (!question.folder.empty()) {
      return "one folder is enough, not also " + word;
    } else {
      question.folder = word;
    }
  }
  const char* const drive = std::getenv("LILYHOP_DRIVE_D");
  if (question.folder.empty() && drive != nullptr) question.folder = drive;
  if (question.folder.empty()) return "say which folder the books are in, or set LILYHOP_DRIVE_D";
  if (question.memory.empty()) {
    question.memory = question.folder + (question.pay ? "/paycheck" : "/collection");
  }
  return {};
}

void print_damages(const Drive& drive) {
  for (const std::string& damage : drive.damages) {
    std::fprintf(stderr, "books: %s\n", damage.c_str());
  }
}

// Damages are in the JSON, and beside the other forms on standard error.
void print(const Table& table, const Question& question, const Drive& drive) {
  if (question.form == FORM_JSON) {
    std::fputs(table_json(table, drive.damages).c_str(), stdout);
    return;
  }
  print_damages(drive);
  const std::string text = question.form == FORM_CSV ? table_csv(table) : table_text(table);
  std::fputs(text.c_str(), stdout);
}

int run_report(const Drive& drive, const Question& question) {
  const Collection collection = collection_read(question.memory);
  const Report report = report_of(drive, question, collection);
  if (question.form == FORM_TEXT) {
    std::printf("%s, %s\n\n", question.folder.c_str(), report.span.c_str());
  }
  print(report.table, question, drive);
  for (const std::string& note : report.notes) std::fprintf(stderr, "books: %s\n", note.c_str());
  if (!question.collect) return EXIT_SUCCESS;
  if (!drive.has_audits) return usage_error("without counters nothing can be collected");
  const std::string wrong = collection_write(question.memory, drive, moment_now());
  if (wrong.empty()) return EXIT_SUCCESS;
  std::fprintf(stderr, "books: %s\n", wrong.c_str());
  return EXIT_FAILURE;
}

int run_games(const Drive& drive, const Question& question) {
  const std::vector<Game> games = games_of(ledger_of(drive), question);
  if (question.form != FORM_TEXT) {
    print(games_table(games), question, drive);
    return EXIT_SUCCESS;
  }
  print_damages(drive);
  for (const Game& game : games) std::printf("%s\n", game_story(game).c_str());
  return EXIT_SUCCESS;
}

// A folder's name for a shell.
std::string shell_word(std::string_view text) {
  std::string word = "'";
  for (const char letter : text)
    word += letter == '\'' ? std::string("'\\''") : std::string(1, letter);
  return word + "'";
}

// Lets one of the lab's players play under the cabinet's settings. Empty, or a line that says what
// is wrong.
std::string play_in_lab(const std::string& folder, const char* name, PayPlayer& player) {
  const std::string lab = files_program_folder() + "/payout-lab";
  const std::string command = shell_word(lab) +
                              " run --quiet --json --processes 1 --frogs 20000 --prefs " +
                              shell_word(folder) + " --player " + name;
  std::FILE* const pipe = popen(command.c_str(), "r");
  if (pipe == nullptr) return lab + ": can't be started";
  std::string json;
  char part[4096];
  for (std::size_t got = 0; (got = std::fread(part, 1, sizeof part, pipe)) > 0;)
    json.append(part, got);
  if (pclose(pipe) != 0 || !pay_player_read(json, player)) return lab + ": has not played";
  return {};
}

// The lab plays only if it hasn't yet under these settings.
std::string know_players(const Drive& drive, PayFile& file) {
  const std::string settings = pay_settings(drive.prefs);
  if (file.settings == settings && !file.players.empty()) return {};
  file = {};
  file.settings = settings;
  for (const char* const name : {"random", "eager", "watcher"}) {
    const std::string wrong = play_in_lab(drive.folder, name, file.players.emplace_back());
    if (!wrong.empty()) return wrong;
  }
  return {};
}

int run_pay(const Drive& drive, const Question& question) {
  print_damages(drive);
  PayFile file = pay_read(question.memory);
  std::string wrong = drive.has_prefs ? know_players(drive, file) : "the settings can't be read";
  if (wrong.empty()) {
    const PaySums sums = pay_sums(drive.journal, question.since_ms);
    file.result = pay_judge(sums, file.players);
    file.result.utc_ms = moment_now();
    std::printf("%s\n", pay_sentence(sums, file.players, file.result).c_str());
    wrong = pay_write(question.memory, file);
  }
  if (!wrong.empty()) std::fprintf(stderr, "books: %s\n", wrong.c_str());
  return wrong.empty() && file.result.verdict == PAYS_AS_SET ? EXIT_SUCCESS : EXIT_FAILURE;
}

int run_check(const Drive& drive, const Question& question) {
  if (question.pay) return run_pay(drive, question);
  const Ledger ledger = ledger_of(drive);
  std::size_t wrong = 0;
  for (const Finding& finding : ledger.findings) wrong += finding.wrong ? 1 : 0;
  print(check_table(ledger), question, drive);
  if (question.form == FORM_TEXT) {
    for (int side = 0; side < SIDE_COUNT; ++side) {
      const PaperCounts& paper = ledger.paper[side];
      std::printf("%s: %lld tickets of paper told, %lld out, %lld owed\n", SIDE_WORDS[side],
                  static_cast<long long>(paper.told), static_cast<long long>(paper.out),
                  static_cast<long long>(paper.owed));
    }
    std::printf(wrong > 0 ? "%zu things don't add up\n" : "books and journal add up\n", wrong);
  }
  return wrong > 0 || !drive.has_audits || drive.journal.lines.empty() ? EXIT_FAILURE
                                                                       : EXIT_SUCCESS;
}

int run_events(const Drive& drive, const Question& question) {
  print(events_table(drive, question), question, drive);
  return EXIT_SUCCESS;
}

int run_metrics(const Drive& drive, const Question& question) {
  const std::string text =
      metrics_text(drive, pay_read(question.folder + "/paycheck").result, moment_now());
  if (question.to.empty()) {
    std::fputs(text.c_str(), stdout);
    return EXIT_SUCCESS;
  }
  const std::string wrong = file_replace(question.to, text);
  if (wrong.empty()) return EXIT_SUCCESS;
  std::fprintf(stderr, "books: %s\n", wrong.c_str());
  return EXIT_FAILURE;
}

constexpr struct {
  const char* verb;
  int (*run)(const Drive& drive, const Question& question);
  JournalPart part = WHOLE_JOURNAL;
} VERBS[] = {{"report", run_report},
             {"games", run_games},
             {"events", run_events},
             {"check", run_check},
             {"metrics", run_metrics, LAST_RUN}};

}  // namespace

int main(int argc, char** argv) {
  const std::string verb = argc > 1 ? argv[1] : "";
  if (verb == "help" || verb == "--help" || verb == "-h") {
    std::fputs(HELP, stdout);
    return EXIT_SUCCESS;
  }
  for (const auto& row : VERBS) {
    if (verb != row.verb) continue;
    Question question;
    const std::string wrong = read_words(argc - 2, argv + 2, question);
    if (!wrong.empty()) return usage_error(wrong);
    Drive drive;
    const std::string unread = drive_read(question.folder, drive, row.part);
    if (!unread.empty()) {
      std::fprintf(stderr, "books: %s\n", unread.c_str());
      return EXIT_USAGE;
    }
    return row.run(drive, question);
  }
  return usage_error(verb.empty() ? "say report, games, events, check or metrics"
                                  : "it can't \"" + verb + "\"");
}
