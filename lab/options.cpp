#include "lab/options.h"

#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <cstring>

#include "lab/settings.h"

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
  std::string all;
  for (int kind = 0; kind < PLAYER_KINDS; ++kind) {
    if (text == player_names[kind]) {
      player.kind = static_cast<PlayerKind>(kind);
      return {};
    }
    all += std::string(kind > 0 ? ", " : "") + player_names[kind];
  }
  return "--player can't be \"" + text + "\"; there are: " + all;
}

// An option that is one number. False if there is none of this name.
bool take_number(LabOptions& options, const std::string& name, const std::string& text,
                 std::string& error) {
  double n = 0.0;
  PlayerSettings& player = options.plan.player;
  bool good = false;
  if (name == "--frogs") {
    good = whole(text, 1, 1e9, n);
    options.plan.frogs_per_side = static_cast<std::int64_t>(n);
  } else if (name == "--seed") {
    good = whole(text, 0, 0x1p53, n);
    options.plan.seed = static_cast<std::uint64_t>(n);
  } else if (name == "--processes") {
    good = whole(text, 1, 1024, n);
    options.processes = static_cast<int>(n);
  } else if (name == "--wait") {
    good = number(text, 0, 100, n);
    player.wait_s = static_cast<float>(n);
  } else if (name == "--reaction") {
    good = number(text, 0, 10000, n);
    player.reaction_ms = static_cast<float>(n);
  } else if (name == "--error") {
    good = number(text, 0, 10000, n);
    player.error_ms = static_cast<float>(n);
  } else if (name == "--patience") {
    good = number(text, 0, 100, n);
    player.patience_s = static_cast<float>(n);
  } else {
    return false;
  }
  if (!good) error = name + " can't be \"" + text + "\"";
  return true;
}

bool take_value(LabOptions& options, const std::string& name, const std::string& text,
                std::string& error) {
  if (take_number(options, name, text, error)) return true;
  double n = 0.0;
  const bool path = name == "--html" || name == "--state" || name == "--prefs";
  if (path && text.empty()) {
    error = name + " can't be \"\"";
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
    error = whole(text, -1000, 1000, n) ? settings_use_row(static_cast<int>(n))
                                        : "--row can't be \"" + text + "\"";
  } else {
    return false;
  }
  return true;
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
  return R"(What a setting of the cabinet really pays, by the game's own rules at many times real time.

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
  --player NAME        random: presses at a random moment once the frog is ready (run's default)
                       eager: presses as soon as it is ready
                       watcher: waits for a good first log, with a hand's delay and error
                       expert: looks ahead over all lanes at their present speeds
  --wait S             random: mean wait in seconds (1)
  --reaction MS        watcher: from seeing to the press (250)
  --error MS           watcher: standard deviation of it (60)
  --patience S         watcher, expert: longest wait for a good moment (10)
  --processes N        processes to play on; the results don't depend on it (one for each core)

results
  --json               as JSON instead of a table
  --html FILE          and as one page with plots
  --quiet              no progress bar
  --state FOLDER       sweep: what is done is kept there, and a sweep that was ended goes on
)";
}
