#include "lab/options.h"

#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <cstring>

#include "lab/settings.h"
#include "lab/text.h"

namespace {

bool number(const std::string& text, double least, double most, double& value) {
  char* end = nullptr;
  value = std::strtod(text.c_str(), &end);
  return !text.empty() && *end == '\0' && value >= least && value <= most;
}

bool whole(const std::string& text, double least, double most, double& value) {
  return number(text, least, most, value) && value == std::floor(value);
}

std::string take_player(const std::string& text, PlayerSettings& player) {
  const int kind = player_find(text);
  if (kind >= 0) {
    player.kind = kind;
    return {};
  }
  std::string all;
  for (const PlayerKind& each : player_kinds)
    all += (all.empty() ? "" : ", ") + std::string(each.name);
  return "--player can't be \"" + text + "\"; there are: " + all;
}

std::string refusal(const std::string& name, const std::string& text) {
  return name + " can't be \"" + text + "\"";
}

struct NumberOption {
  const char* name;
  double least, most;
  void (*set)(LabOptions& options, double n);
};

constexpr NumberOption WHOLE_NUMBERS[] = {
    {"--frogs", 1, 1e9,
     [](LabOptions& o, double n) { o.plan.frogs_per_side = static_cast<std::int64_t>(n); }},
    {"--seed", 0, 0x1p53,
     [](LabOptions& o, double n) { o.plan.seed = static_cast<std::uint64_t>(n); }},
    {"--processes", 1, 1024, [](LabOptions& o, double n) { o.processes = static_cast<int>(n); }},
};

// An option that is one number. False if there is none of this name.
bool take_number(LabOptions& options, const std::string& name, const std::string& text,
                 std::string& error) {
  double n = 0.0;
  for (const NumberOption& row : WHOLE_NUMBERS) {
    if (name != row.name) continue;
    if (!whole(text, row.least, row.most, n)) error = refusal(name, text);
    if (error.empty()) row.set(options, n);
    return true;
  }
  for (const PlayerOption& row : player_options) {
    if (name != row.name) continue;
    if (!number(text, 0, static_cast<double>(row.most), n)) error = refusal(name, text);
    options.plan.player.*row.value = static_cast<float>(n);
    return true;
  }
  return false;
}

bool take_value(LabOptions& options, const std::string& name, const std::string& text,
                std::string& error) {
  if (take_number(options, name, text, error)) return true;
  double n = 0.0;
  const bool path = name == "--html" || name == "--state" || name == "--prefs";
  if (path && text.empty()) {
    error = refusal(name, text);
  } else if (name == "--player") {
    error = take_player(text, options.plan.player);
  } else if (name == "--html") {
    options.html = text;
  } else if (name == "--state") {
    options.state = text;
  } else if (name == "--prefs") {
    error = settings_load(text);
  } else if (name == "--set") {
    error = settings_set(text);
  } else if (name == "--row") {
    error =
        whole(text, -1000, 1000, n) ? settings_use_row(static_cast<int>(n)) : refusal(name, text);
  } else {
    return false;
  }
  return true;
}

std::string player_help() {
  std::string text;
  for (const PlayerKind& kind : player_kinds) {
    const bool first = text.empty();
    text += text_of("  %-21s%s: %s%s\n", first ? "--player NAME" : "", kind.name, kind.help,
                    first ? " (run's default)" : "");
  }
  for (const PlayerOption& option : player_options) {
    const std::string name = std::string(option.name) + " " + option.unit;
    text += text_of("  %-21s%s (%g)\n", name.c_str(), option.help,
                    static_cast<double>(PlayerSettings{}.*option.value));
  }
  return text;
}

std::string take_command(const std::string& text, LabOptions& options) {
  if (text == "run") {
    options.command = COMMAND_RUN;
  } else if (text == "sweep") {
    options.command = COMMAND_SWEEP;
    options.plan.frogs_per_side = 10000;
  } else if (text != "help" && text != "--help") {
    return "\"" + text + "\" is no command; there are run, sweep and help";
  }
  return {};
}

}  // namespace

std::string options_read(int argc, char** argv, LabOptions& options) {
  settings_reset();
  if (argc < 2) return {};
  std::string error = take_command(argv[1], options);
  for (int i = 2; i < argc && error.empty(); ++i) {
    const std::string name = argv[i];
    if (name == "--json") {
      options.json = true;
    } else if (name == "--quiet") {
      options.quiet = true;
    } else if (name == "--help") {
      options.command = COMMAND_HELP;
    } else if (i + 1 == argc || !take_value(options, name, argv[i + 1], error)) {
      error = "\"" + name + "\" " +
              (i + 1 == argc ? "is no option, or lacks its value" : "is no option");
    } else {
      ++i;
    }
  }
  if (!error.empty()) return error;
  if (options.command == COMMAND_RUN && !options.state.empty()) {
    return "\"--state\" is for sweep: a run keeps nothing";
  }
  return options.command == COMMAND_HELP ? std::string{} : settings_complaint();
}

std::string options_help() {
  const std::string head =
      R"(What a setting of the cabinet really pays, by the game's own rules at many times real time.

  payout-lab run [OPTIONS]     one set of settings, one player on both sides
  payout-lab sweep [OPTIONS]   all rows of the paytable, with and without "Boost Bonus" and
                               "Two Point Tickets", for each player

settings, taken in the order given; without any, those of a cabinet out of the box
  --prefs PATH         a file of settings, or a folder that is a cabinet's drive d:
  --set NAME=VALUE     one setting by its name, as --set "Coins To Play=3"
  --row N              the percentage that asks for row N of the paytable, 0 to 44, and its jackpot

play
  --frogs N            frogs on each side (run: 100000, sweep: 10000 in each place)
  --seed N             equal seeds give equal books (1)
)";
  const std::string tail =
      R"(  --processes N        processes to play on; the results don't depend on it (one for each core)

results
  --json               as JSON instead of a table
  --html FILE          and as one page with plots
  --quiet              no progress bar
  --state FOLDER       sweep: what is done is kept there, and a sweep that was ended goes on
)";
  return head + player_help() + tail;
}
