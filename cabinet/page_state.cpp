#include "cabinet/page_state.h"

#include <sys/stat.h>

#include <cstdint>

#include <nlohmann/json.hpp>

#include "books/settings.h"  // SETTINGS
#include "cabinet/books_file.h"
#include "cabinet/cabinet.h"
#include "cabinet/status.h"

using nlohmann::json;

namespace {

// Counters of both sides.
constexpr AuditIndex COUNTERS[] = {AUDIT_CURRENT_CREDITS, AUDIT_COIN_DROPS,   AUDIT_GAMES_PLAYED,
                                   AUDIT_TICKETS,         AUDIT_TICKETS_OWED, AUDIT_JACKPOTS};

json device(const char* name, bool good, const std::string& text) {
  return {{"name", name}, {"good", good}, {"text", text}};
}

json board_device(const Cabinet& cabinet) {
  const bool good = cabinet.cable.near >= 0 && cabinet.board.powered && cabinet.cable.plugged &&
                    !cabinet.board.silent && cabinet.board.counters_valid;
  return device("I/O board", good, status_link_text(cabinet));
}

json led_device(const Cabinet& cabinet) {
  const LedDisplay& led = cabinet.led;
  const bool there = cabinet.led_cable.near >= 0;
  const char* text = !there                       ? "no LED board"
                     : !led.powered               ? "off"
                     : !cabinet.led_cable.plugged ? "its cable is pulled"
                     : led.deaf                   ? "deaf"
                     : led.types > 0              ? "answers"
                                                  : "nobody has asked it yet";
  return device("LED board", there && led.powered && cabinet.led_cable.plugged && !led.deaf, text);
}

// The board's own watchdog, which restarts the board when the game is silent.
json watchdog_device(const Cabinet& cabinet) {
  const Board& board = cabinet.board;
  std::string text = "fed " + std::to_string(board.counts.watchdog_fed) + " times";
  if (!board.watchdog_armed) text = "not armed";
  if (board.counts.watchdog_bites > 0) {
    text += ", bit " + std::to_string(board.counts.watchdog_bites) + " times";
  }
  return device("Board's watchdog", board.watchdog_armed, text);
}

// The USB watchdog, which resets the machine.
json usb_device(const Cabinet& cabinet) {
  if (cabinet.usb.path.empty()) return device("USB watchdog", false, "none");
  return device("USB watchdog", usb_port_is_open(cabinet.usb),
                usb_watchdog_text(cabinet.usb.device));
}

json books_device(const Cabinet& cabinet) {
  const std::string& drive = cabinet.options.drive;
  std::string text;
  for (const BooksValue& value : {books_audit(drive, audit_name(AUDIT_BOOT_COUNT)),
                                  books_pref(drive, SETTINGS[PREF_VOLUME].name)}) {
    if (!value.found) text += (text.empty() ? "" : "; ") + value.why;
  }
  const bool good = text.empty();
  return device("Books", good, good ? "whole, in " + drive : text);
}

// When the audits were last stored, in seconds since 1970; 0 if never.
std::int64_t stored_at(const Cabinet& cabinet) {
  struct stat file{};
  return stat((cabinet.options.drive + "/audits").c_str(), &file) == 0 ? file.st_mtime : 0;
}

json audits(const Cabinet& cabinet, int side) {
  json rows;
  for (const AuditIndex row : COUNTERS) {
    const BooksValue value = books_audit(cabinet.options.drive, row, side);
    rows[audit_name(row)] = value.found ? json(static_cast<long>(value.value)) : json();
  }
  return rows;
}

json side_state(const Cabinet& cabinet, int side) {
  const Dispenser& dispenser = cabinet.board.dispensers[side];
  const Coils& coils = cabinet.board.coils;
  return {
      {"audits", audits(cabinet, side)},
      {"coin_meter", coils.meter[METER_COIN_LEFT + side]},
      {"ticket_meter", coils.meter[METER_TICKET_LEFT + side]},
      {"takes_coins", coils_lockout(coils, side)},
      {"owed", dispenser.count},
      {"paying", dispenser.running},
      {"fault", dispenser.fault},
      {"jammed", dispenser.jammed},
      {"paper_out", dispenser.paper_out},
      {"paper_left", dispenser.paper_left},
  };
}

}  // namespace

std::string page_state_text(const Cabinet& cabinet, const std::string& picture_trouble) {
  const Board& board = cabinet.board;
  json pressed = json::array();
  for (int input = 0; input < INPUT_COUNT; ++input) {
    if (board.switches.closed[input]) pressed.push_back(input_name(input));
  }
  const json state = {
      {"power", board.powered},
      {"game", cabinet.game.running},
      {"free_play", books_pref(cabinet.options.drive, SETTINGS[PREF_FREEPLAY].name).value != 0},
      {"picture_trouble", picture_trouble},
      {"plugged", cabinet.cable.plugged},
      {"usb_plugged", cabinet.usb.device.plugged},
      {"lamps", board.coils.lamp},
      {"pressed", pressed},
      {"led",
       {{"value", cabinet.led.value},
        {"blink", cabinet.led.blink},
        {"deaf", cabinet.led.deaf},
        {"plugged", cabinet.led_cable.plugged}}},
      {"sides", {side_state(cabinet, LEFT), side_state(cabinet, RIGHT)}},
      {"devices",
       {board_device(cabinet), led_device(cabinet), watchdog_device(cabinet), usb_device(cabinet),
        books_device(cabinet)}},
      {"sound", cabinet.sound != nullptr},
      {"stored_at", stored_at(cabinet)},
  };
  return state.dump(-1, ' ', false, json::error_handler_t::replace);
}
