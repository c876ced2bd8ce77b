// The virtual cabinet: `cabinet --help`.

#include <csignal>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <string>

#include "cabinet/cabinet.h"
#include "cabinet/commands.h"
#include "cabinet/greeting.h"
#include "cabinet/script.h"
#include "cabinet/status.h"

namespace {

constexpr int IDLE_WAIT_MS = 50, SCRIPT_WAIT_MS = 5;

int complain(const std::string& error) {
  std::fprintf(stderr, "cabinet: %s\n", error.c_str());
  return 2;
}

int help() {
  std::printf("%s\nKeys in the game's window:\n%s\n%s", options_help().c_str(), keys_help().c_str(),
              commands_help().c_str());
  std::printf(
      "Scripts have commands, and\n"
      "  wait MS\n"
      "  wait until CONDITION [within MS]   at most MS, by default 10000\n"
      "  expect CONDITION [within MS]       by default at once\n"
      "  expect CONDITION for MS            true all the time\n"
      "  let NAME = READING                 a reading to compare later ones with\n"
      "A condition is a reading that must not be 0, or two with == != < <= > >= between them;\n"
      "readings can be added and subtracted. Only \"start game\" starts the game.\n");
  return 0;
}

// Runs the loop until everything has ended. Returns the exit code.
int run(Cabinet& cabinet, Status& status) {
  const std::int64_t end_ms =
      cabinet_now_ms() + static_cast<std::int64_t>(cabinet.options.for_seconds * 1000);
  for (;;) {
    if (cabinet.finishing && !cabinet.game.running) return game_verdict(cabinet.game);
    const bool ended = cabinet_turn(cabinet, IDLE_WAIT_MS);
    // If the game ends by itself, the cabinet ends too. A game that a command ended may be started
    // again.
    if (ended && !cabinet.game.end_ordered) return game_verdict(cabinet.game);
    const std::int64_t now_ms = cabinet_now_ms();
    if (cabinet.options.for_seconds > 0 && now_ms >= end_ms && !cabinet.finishing) {
      cabinet_finish(cabinet, SIGTERM);
    }
    status_update(status, cabinet, now_ms);
  }
}

// The same, controlled by a script.
int run_script(Cabinet& cabinet, Script& script, Status& status) {
  ScriptState state = SCRIPT_RUNS;
  while (state == SCRIPT_RUNS) {
    const bool ended = cabinet_turn(cabinet, SCRIPT_WAIT_MS);
    if (ended && game_verdict(cabinet.game) != 0) {
      script_fail(script, cabinet,
                  "the game ended with exit code " + std::to_string(cabinet.game.exit_code));
    } else if (cabinet.finishing) {
      script_fail(script, cabinet, "the cabinet was told to end");
    }
    state = script_step(script, cabinet, cabinet_now_ms());
    status_update(status, cabinet, cabinet_now_ms());
  }
  const bool was_running = cabinet.game.running;
  cabinet_finish(cabinet, SIGTERM);
  while (cabinet.game.running) cabinet_turn(cabinet, SCRIPT_WAIT_MS);
  if (state == SCRIPT_PASSED && was_running && game_verdict(cabinet.game) != 0) {
    script_fail(script, cabinet,
                cabinet.game.would_not_quit
                    ? "the game didn't quit when it was asked to"
                    : "the game ended with exit code " + std::to_string(cabinet.game.exit_code));
    state = SCRIPT_FAILED;
  }
  status_close(status);
  if (state == SCRIPT_FAILED) {
    std::printf("%sscript failed; the books are in %s\n", script.failure.c_str(),
                cabinet.options.drive.c_str());
    return 1;
  }
  std::printf("script passed: %d expectations\n", script.expectations);
  if (cabinet.options.drive_is_temporary) {
    std::error_code failed;
    std::filesystem::remove_all(cabinet.options.drive, failed);
  }
  return 0;
}

}  // namespace

int main(int argc, char** argv) {
  static Cabinet cabinet;
  Options& options = cabinet.options;
  if (std::string error = options_read(argc, argv, options); !error.empty()) {
    return complain(error);
  }
  if (options.help) return help();
  Script script;
  const bool scripted = !options.script.empty();
  if (scripted) {
    if (std::string error = script_load(options.script, script); !error.empty()) {
      return complain(error);
    }
  }
  if (std::string error = cabinet_open(cabinet); !error.empty()) return complain(error);
  std::fputs(greeting_text(cabinet).c_str(), stdout);
  std::fflush(stdout);
  Status status;
  status_open(status, cabinet);
  hardware_goes_first();
  int code = 0;
  if (scripted) {
    code = run_script(cabinet, script, status);
  } else {
    cabinet.commands_open = true;
    std::string error;
    if (!options.no_game) error = cabinet_start_game(cabinet);
    code = error.empty() ? run(cabinet, status) : complain(error);
    status_close(status);
    if (error.empty()) std::fputs(farewell_text(cabinet, code).c_str(), stdout);
  }
  cabinet_close(cabinet);
  return code;
}
