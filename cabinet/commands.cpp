#include "cabinet/commands.h"

#include <algorithm>
#include <csignal>
#include <cstdio>
#include <functional>
#include <vector>

#include "cabinet/books_file.h"
#include "cabinet/cabinet.h"
#include "cabinet/menu_presses.h"
#include "cabinet/readings.h"
#include "cabinet/status.h"

struct CommandRow {
  const char* pattern;
  const char* help;
  std::string (*run)(Cabinet&, const Arguments&, std::int64_t now_ms);
};

namespace {

constexpr double PRESSES_PER_SECOND = 5;
constexpr double SWIPE_PULSES_PER_SECOND = 10;
constexpr double MENU_PRESSES_PER_SECOND = 1;

long whole(const Arguments& a, const char* name, long otherwise) {
  return static_cast<long>(argument(a, name, static_cast<double>(otherwise)));
}

std::string press(Cabinet& cabinet, int input, const Arguments& a, double rate) {
  hands_press(cabinet.hands, input, whole(a, "COUNT", 1), argument(a, "RATE", rate));
  return {};
}

bool is_on(const Arguments& a) {
  return a.choices.back() == "on";
}

// --- switches ---------------------------------------------------------------------------------

std::string do_coin(Cabinet& cabinet, const Arguments& a, std::int64_t) {
  return press(cabinet, INPUT_COIN_LEFT + a.side, a, PRESSES_PER_SECOND);
}
// The card reader's pulses come in over the coin switch.
std::string do_swipe(Cabinet& cabinet, const Arguments& a, std::int64_t) {
  return press(cabinet, INPUT_COIN_LEFT + a.side, a, SWIPE_PULSES_PER_SECOND);
}
std::string do_start(Cabinet& cabinet, const Arguments& a, std::int64_t) {
  return press(cabinet, INPUT_START_LEFT + a.side, a, PRESSES_PER_SECOND);
}
std::string do_service(Cabinet& cabinet, const Arguments& a, std::int64_t) {
  return press(cabinet, INPUT_SERVICE, a, PRESSES_PER_SECOND);
}
std::string do_test(Cabinet& cabinet, const Arguments& a, std::int64_t) {
  if (a.numbers.count("MS") == 0) return press(cabinet, INPUT_TEST, a, PRESSES_PER_SECOND);
  hands_hold(cabinet.hands, INPUT_TEST, argument(a, "MS", 0));
  return {};
}
std::string do_volume(Cabinet& cabinet, const Arguments& a, std::int64_t) {
  const int input = a.choices[0] == "up" ? INPUT_VOLUME_UP : INPUT_VOLUME_DOWN;
  return press(cabinet, input, a, PRESSES_PER_SECOND);
}

// True once the game has seen what was pressed before: its link has answered a request that came
// behind on the line, and then a tick has answered another over USB. Whoever isn't there isn't
// asked.
std::function<bool(std::int64_t)> presses_seen(Board& board, UsbWatchdog& watchdog) {
  enum Step { ASK_LINK, ASK_TICK, TICK_ASKED };
  return [&board, &watchdog, step = ASK_LINK, awaited = 0L](std::int64_t now_ms) mutable {
    if (step == ASK_LINK) {
      awaited = board.counts.watchdog_fed + board.watchdog_unanswered + 1;
      if (board.watchdog_armed) board_ask_for_watchdog(board, now_ms);
      step = ASK_TICK;
    }
    if (step == ASK_TICK) {
      if (board.watchdog_armed && board.counts.watchdog_fed < awaited) return false;
      awaited = watchdog.words + 1;
      usb_watchdog_say(watchdog, USB_WATCHDOG_ASK);
      step = TICK_ASKED;
    }
    if (watchdog.configured && watchdog.words < awaited) return false;
    step = ASK_LINK;
    return true;
  };
}

std::string do_menu(Cabinet& cabinet, const Arguments& a, std::int64_t) {
  if (!hands_idle(cabinet.hands)) return "the hands are still pressing something else";
  const std::vector<int> presses = menu_presses(a.texts[0]);
  if (presses.empty()) return "no menu has the row \"" + a.texts[0] + "\"";
  hands_press_in_turn(cabinet.hands, presses, MENU_PRESSES_PER_SECOND,
                      presses_seen(cabinet.board, cabinet.usb.device));
  return {};
}
std::string do_press(Cabinet& cabinet, const Arguments& a, std::int64_t now_ms) {
  board_switch(cabinet.board, a.input, true, now_ms);
  return {};
}
std::string do_release(Cabinet& cabinet, const Arguments& a, std::int64_t now_ms) {
  board_switch(cabinet.board, a.input, false, now_ms);
  return {};
}
std::string do_hold(Cabinet& cabinet, const Arguments& a, std::int64_t) {
  hands_hold(cabinet.hands, a.input, argument(a, "MS", 0));
  return {};
}
std::string do_burst(Cabinet& cabinet, const Arguments& a, std::int64_t) {
  return press(cabinet, a.input, a, PRESSES_PER_SECOND);
}
std::string do_ball(Cabinet& cabinet, const Arguments& a, std::int64_t now_ms) {
  board_turn_ball(cabinet.board, a.choices[0] == "y" ? 1 : 0,
                  static_cast<int>(argument(a, "STEPS", 0)), now_ms);
  return {};
}
std::string do_hands_off(Cabinet& cabinet, const Arguments&, std::int64_t now_ms) {
  hands_drop(cabinet.hands, cabinet.board, now_ms);
  return {};
}

// --- dispensers -------------------------------------------------------------------------------

std::string do_jam(Cabinet& cabinet, const Arguments& a, std::int64_t) {
  Dispenser& dispenser = cabinet.board.dispensers[a.side];
  dispenser.jammed = a.choices.empty() || !dispenser.jammed;
  return {};
}
std::string do_clear_jam(Cabinet& cabinet, const Arguments& a, std::int64_t) {
  cabinet.board.dispensers[a.side].jammed = false;
  return {};
}
std::string do_empty(Cabinet& cabinet, const Arguments& a, std::int64_t) {
  cabinet.board.dispensers[a.side].paper_left = 0;
  return {};
}
std::string do_refill(Cabinet& cabinet, const Arguments& a, std::int64_t) {
  cabinet.board.dispensers[a.side].paper_left = whole(a, "PAPER", DISPENSER_PAPER_STACK);
  return {};
}
std::string do_rate(Cabinet& cabinet, const Arguments& a, std::int64_t) {
  cabinet.board.dispensers[a.side].rate = argument(a, "RATE", 4);
  return {};
}
std::string do_void(Cabinet& cabinet, const Arguments& a, std::int64_t) {
  cabinet.board.dispensers[a.side].void_count = is_on(a);
  return {};
}

// --- board ------------------------------------------------------------------------------------

std::string do_restart(Cabinet& cabinet, const Arguments& a, std::int64_t now_ms) {
  board_restart(cabinet.board, static_cast<int>(whole(a, "COUNTER", BOARD_RANDOM_COUNTERS)),
                now_ms);
  return {};
}
std::string do_silence(Cabinet& cabinet, const Arguments& a, std::int64_t) {
  cabinet.board.silent = is_on(a);
  return {};
}
std::string do_checksums(Cabinet& cabinet, const Arguments& a, std::int64_t now_ms) {
  board_set_checksums(cabinet.board, is_on(a), now_ms);
  return {};
}
std::string do_dips(Cabinet& cabinet, const Arguments& a, std::int64_t) {
  cabinet.board.settings.dips = static_cast<std::uint8_t>(whole(a, "BYTE", 0));
  return {};
}
std::string do_firmware(Cabinet& cabinet, const Arguments& a, std::int64_t) {
  cabinet.board.settings.firmware = static_cast<std::uint8_t>(whole(a, "BYTE", 0));
  return {};
}
std::string do_hardware(Cabinet& cabinet, const Arguments& a, std::int64_t) {
  cabinet.board.settings.hardware = static_cast<std::uint8_t>(whole(a, "BYTE", 0));
  return {};
}
std::string do_config(Cabinet& cabinet, const Arguments& a, std::int64_t) {
  cabinet.board.settings.config_bits = static_cast<std::uint8_t>(whole(a, "BYTE", 0));
  return {};
}
std::string do_watchdog(Cabinet& cabinet, const Arguments& a, std::int64_t) {
  BoardSettings& settings = cabinet.board.settings;
  int& setting = a.choices[0] == "ask" ? settings.watchdog_ask_ms : settings.watchdog_bite_ms;
  setting = static_cast<int>(whole(a, "MS", 0));
  return {};
}

std::string do_counters(Cabinet& cabinet, const Arguments&, std::int64_t now_ms) {
  board_send_counters(cabinet.board, now_ms);
  return {};
}
std::string do_say(Cabinet& cabinet, const Arguments& a, std::int64_t now_ms) {
  std::string body = a.texts[0];
  body.erase(std::remove(body.begin(), body.end(), ' '), body.end());
  board_say(cabinet.board, body, now_ms);
  return {};
}

// --- line -------------------------------------------------------------------------------------

std::string do_led(Cabinet& cabinet, const Arguments& a, std::int64_t) {
  const std::string& what = a.choices[0];
  if (what == "deaf" || what == "hears") {
    cabinet.led.deaf = what == "deaf";
  } else {
    cabinet.led_cable.plugged = what == "plug";
  }
  return {};
}
std::string do_usb(Cabinet& cabinet, const Arguments& a, std::int64_t) {
  return usb_port_plug(cabinet.usb, a.choices[0] == "plug");
}
std::string do_usb_say(Cabinet& cabinet, const Arguments& a, std::int64_t) {
  UsbWatchdog& watchdog = cabinet.usb.device;
  if (a.choices.empty()) {
    usb_watchdog_say(watchdog, 0xF000 | static_cast<int>(whole(a, "BYTE", 0)));
  } else if (a.choices[0] == "ask") {
    usb_watchdog_say(watchdog, USB_WATCHDOG_ASK);
  } else {
    watchdog.reset_seen = true;
  }
  return {};
}
std::string do_usb_bite(Cabinet& cabinet, const Arguments& a, std::int64_t) {
  cabinet.usb.device.resets_machine = a.choices[0] == "resets";
  return {};
}
std::string do_unplug(Cabinet& cabinet, const Arguments& a, std::int64_t) {
  cabinet.cable.plugged = !a.choices.empty() && !cabinet.cable.plugged;
  return {};
}
std::string do_plug(Cabinet& cabinet, const Arguments&, std::int64_t) {
  cabinet.cable.plugged = true;
  return {};
}
std::string do_fault(Cabinet& cabinet, const Arguments& a, std::int64_t) {
  Cable& cable = cabinet.cable;
  LineFaults& faults = a.choices[0] == "to-host" ? cable.to_host : cable.to_board;
  const auto fault = static_cast<LineFault>(line_fault_find(a.choices[1]));
  const bool fits = line_faults_set(faults, fault, argument(a, "PERCENT", 0),
                                    static_cast<int>(whole(a, "BYTES", 0)));
  return fits ? "" : "so many can't be so far apart";
}
std::string do_seed(Cabinet& cabinet, const Arguments& a, std::int64_t) {
  const auto seed = static_cast<std::uint32_t>(argument(a, "SEED", 0));
  cabinet.board.random.seed(seed);
  line_faults_seed(cabinet.cable.to_host, seed);
  line_faults_seed(cabinet.cable.to_board, seed + 1);
  return {};
}

// --- game -------------------------------------------------------------------------------------

std::string do_game(Cabinet& cabinet, const Arguments& a, std::int64_t now_ms) {
  const std::string& what = a.choices[0];
  if (what == "start") return cabinet_start_game(cabinet);
  if (what == "kill") {
    game_kill(cabinet.game);
  } else {
    game_ask_to_quit(cabinet.game, SIGTERM, now_ms);
  }
  return {};
}
std::string do_power(Cabinet& cabinet, const Arguments& a, std::int64_t now_ms) {
  if (a.choices[0] == "cut") {
    game_kill(cabinet.game);
    hands_drop(cabinet.hands, cabinet.board, now_ms);
    board_power_off(cabinet.board);
    led_display_power(cabinet.led, false);
    usb_watchdog_plug(cabinet.usb.device, cabinet.usb.device.plugged);
    return {};
  }
  led_display_power(cabinet.led, true);
  board_restart(cabinet.board, BOARD_RANDOM_COUNTERS, now_ms);
  cabinet.board.to_host.clear();  // the board is up long before the game opens the port
  return cabinet_start_game(cabinet);
}
std::string do_set_pref(Cabinet& cabinet, const Arguments& a, std::int64_t) {
  if (cabinet.game.killed) return "the game has not ended yet; try again";
  if (cabinet.game.running) return "the game is running and would write its own settings over it";
  return books_set_pref(cabinet.options.drive, a.texts[0], a.texts[1]);
}

// --- looking ----------------------------------------------------------------------------------

std::string do_mark(Cabinet& cabinet, const Arguments&, std::int64_t) {
  frame_log_mark(cabinet.board.log);
  coils_mark(cabinet.board.coils);
  return {};
}
std::string do_status(Cabinet& cabinet, const Arguments&, std::int64_t) {
  cabinet.said += status_text(cabinet) + "\n";
  return {};
}
std::string do_log(Cabinet& cabinet, const Arguments& a, std::int64_t) {
  cabinet.board.log.printing = is_on(a);
  return {};
}
std::string do_frames(Cabinet& cabinet, const Arguments&, std::int64_t) {
  for (const Direction way : {TO_BOARD, TO_HOST}) {
    cabinet.said += frame_log_text(cabinet.board.log, way);
  }
  return {};
}
std::string do_help(Cabinet& cabinet, const Arguments&, std::int64_t) {
  cabinet.said += commands_help();
  return {};
}
std::string do_quit(Cabinet& cabinet, const Arguments&, std::int64_t) {
  cabinet_finish(cabinet, SIGTERM);
  return {};
}

constexpr CommandRow COMMANDS[] = {
    {"coin SIDE [COUNT] [rate RATE]", "coins, one after the other, 5 a second", do_coin},
    {"swipe SIDE [COUNT]", "pulses of the card reader, 10 a second", do_swipe},
    {"start|kill|quit game", "start it, end it like a power cut, ask it to quit", do_game},
    {"start SIDE [COUNT]", "the player's button", do_start},
    {"service [COUNT]", "the service switch", do_service},
    {"test [MS]", "the test switch, briefly or held", do_test},
    {"volume up|down [COUNT]", "the volume switches", do_volume},
    {"menu NAME", "from the main menu's first row to this row, there or in Diagnostics", do_menu},
    {"press INPUT", "close any switch", do_press},
    {"release INPUT", "open it", do_release},
    {"hold INPUT MS", "close it for a time", do_hold},
    {"burst INPUT COUNT rate RATE", "press it again and again", do_burst},
    {"ball x|y STEPS", "turn the trackball", do_ball},
    {"hands off", "forget presses that are still to come", do_hands_off},
    {"jam SIDE [toggle]", "no ticket comes through", do_jam},
    {"clear-jam SIDE", "they come again, at the next ticket command", do_clear_jam},
    {"empty SIDE", "take the paper out", do_empty},
    {"refill SIDE [PAPER]", "put in a stack of 4000, or as many", do_refill},
    {"rate SIDE RATE", "tickets a second, 4 at first", do_rate},
    {"void SIDE on|off", "fault reports carry no count", do_void},
    {"restart [COUNTER]", "restart the board, all counters there or anywhere", do_restart},
    {"silence on|off", "the board hears but says nothing", do_silence},
    {"checksums on|off", "the board says u, or forgets", do_checksums},
    {"dips BYTE", "the DIP switches that are on", do_dips},
    {"firmware BYTE", "version byte; 0x5n has a trackball", do_firmware},
    {"hardware BYTE", "version byte", do_hardware},
    {"config BYTE", "second byte of the configuration answer", do_config},
    {"watchdog ask|bite MS", "how often the board wants W, how long it does without", do_watchdog},
    {"counters", "the board sends its counters once more", do_counters},
    {"say FRAME", "the board says this, even if it is silent", do_say},
    {"unplug [toggle]", "pull the cable", do_unplug},
    {"plug", "put it in again", do_plug},
    {"led deaf|hears|pull|plug", "the LED board doesn't answer, or hangs on no cable", do_led},
    {"usb pull|plug", "the USB watchdog leaves its port, and comes back", do_usb},
    {"usb reset-seen|ask", "it says that it has reset the machine, or wants an answer", do_usb_say},
    {"usb info BYTE", "it says a byte that nobody needs", do_usb_say},
    {"usb bite counts|resets", "whether a bite ends the game and starts it again", do_usb_bite},
    {"fault to-host|to-board drop|garble|duplicate PERCENT [apart BYTES]",
     "line faults of so many bytes, no two closer than that", do_fault},
    {"seed SEED", "chance begins here again", do_seed},
    {"power cut|on", "the whole cabinet goes dark, and comes up", do_power},
    {"set pref NAME VALUE", "change a setting while the game is off", do_set_pref},
    {"mark", "count frames and lamps' changes from here", do_mark},
    {"status", "what stands where", do_status},
    {"frames", "the last frames each way", do_frames},
    {"log on|off", "print each frame", do_log},
    {"help", "this list", do_help},
    {"quit", "end the game and the cabinet", do_quit},
};

bool begins_with(const char* pattern, const std::string& word) {
  const std::string first = std::string(pattern).substr(0, std::string(pattern).find(' '));
  return ("|" + first + "|").find("|" + word + "|") != std::string::npos;
}

}  // namespace

std::string command_parse(const Words& words, Command& command) {
  std::string wanted, reason;
  for (const CommandRow& row : COMMANDS) {
    std::string error;
    const int end = pattern_match(row.pattern, words, 0, command.arguments, error);
    if (end == static_cast<int>(words.size())) {
      command.row = &row;
      return {};
    }
    if (!begins_with(row.pattern, words[0].text)) continue;
    wanted += (wanted.empty() ? "\"" : " or \"") + std::string(row.pattern) + "\"";
    if (!error.empty()) reason = error + "; ";
  }
  if (wanted.empty()) return "there is no command \"" + words[0].text + "\"";
  return reason + "the command is " + wanted;
}

std::string command_do(Cabinet& cabinet, const Command& command, std::int64_t now_ms) {
  return command.row->run(cabinet, command.arguments, now_ms);
}

std::string commands_do(Cabinet& cabinet, const std::string& line, std::int64_t now_ms) {
  Words words;
  std::string error = words_split(line, words);
  if (!error.empty() || words.empty()) return error;
  Command command;
  error = command_parse(words, command);
  if (error.empty()) return command_do(cabinet, command, now_ms);
  Reading reading;
  std::size_t at = 0;
  if (!reading_parse(words, at, {}, reading).empty() || at != words.size()) return error;
  cabinet.said += reading_seen(cabinet, reading) + "\n";
  return {};
}

std::string commands_help() {
  std::string text = "Commands:\n";
  for (const CommandRow& row : COMMANDS) {
    text += help_line(row.pattern, row.help);
  }
  text += "Switches:\n ";
  for (int i = 0; i < INPUT_COUNT; ++i) text += std::string(" ") + input_name(i);
  text += "\nReadings, in a script's conditions; typed alone, one says its value:\n";
  return text + readings_help();
}
