#include "cabinet/status.h"

#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>

#include "cabinet/books_file.h"
#include "cabinet/cabinet.h"

namespace {

constexpr std::int64_t TERMINAL_MS = 200, PRINT_MS = 2000;

std::string number_text(double number) {
  char text[32];
  std::snprintf(text, sizeof text, "%.0f", number);
  return text;
}

std::string side_text(const Cabinet& cabinet, int side) {
  const Dispenser& dispenser = cabinet.board.dispensers[side];
  const BooksValue credits = books_audit(cabinet.options.drive, AUDIT_CURRENT_CREDITS, side);
  const auto* meter = cabinet.board.coils.meter;
  std::string text = side == LEFT ? "LEFT " : "RIGHT ";
  text += (credits.found ? number_text(credits.value) : "?") + " credits ";
  text += std::to_string(dispenser.paper_out) + " paper ";
  text += std::to_string(dispenser.count) + " owed";
  if (dispenser.jammed) text += " JAMMED";
  if (dispenser.paper_left == 0) text += " EMPTY";
  if (dispenser.fault) text += " FAULT";
  text += " meters " + std::to_string(meter[METER_COIN_LEFT + side]) + "/" +
          std::to_string(meter[METER_TICKET_LEFT + side]);
  if (coils_lockout(cabinet.board.coils, side)) text += " lockout";
  return text;
}

std::string lamps_text(const Cabinet& cabinet) {
  std::string text = "lamps";
  for (int channel = 0; channel < LAMP_CHANNELS; ++channel) {
    if (cabinet.board.coils.lamp[channel] != 0) text += " " + std::to_string(channel);
  }
  return text == "lamps" ? "no lamps" : text;
}

std::string money_text(const Cabinet& cabinet) {
  return side_text(cabinet, LEFT) + " | " + side_text(cabinet, RIGHT);
}

}  // namespace

std::string status_link_text(const Cabinet& cabinet) {
  const Board& board = cabinet.board;
  std::string text = cabinet.cable.near < 0   ? "no board"
                     : !board.powered         ? "board off"
                     : !cabinet.cable.plugged ? "unplugged"
                     : board.silent           ? "silent"
                     : board.checksums        ? "link with checksums"
                                              : "link";
  if (board.counts.checksum_errors > 0) {
    text += ", " + std::to_string(board.counts.checksum_errors) + " wrong sums";
  }
  if (board.counts.malformed > 0) {
    text += ", " + std::to_string(board.counts.malformed) + " malformed";
  }
  if (board.counts.watchdog_bites > 0) {
    text += ", " + std::to_string(board.counts.watchdog_bites) + " bites";
  }
  long hits = 0;
  for (const LineFaults* faults : {&cabinet.cable.to_host, &cabinet.cable.to_board}) {
    for (const LineFaults::Kind& kind : faults->kinds) hits += kind.hits;
  }
  if (hits > 0) text += ", " + std::to_string(hits) + " bytes hit";
  return text + (cabinet.game.running ? "" : ", no game");
}

namespace {

std::string usb_text(const Cabinet& cabinet) {
  return cabinet.usb.path.empty() ? "none" : usb_watchdog_text(cabinet.usb.device);
}

void draw(Status& status, const std::string& text) {
  winsize size{};
  ioctl(STDOUT_FILENO, TIOCGWINSZ, &size);
  if (size.ws_row < 3) return;
  if (size.ws_row != status.rows) {
    // The lines above the last one scroll by themselves; save and restore the cursor around it.
    std::printf("\n\0337\033[1;%dr\0338\033[A", size.ws_row - 1);
    status.rows = size.ws_row;
  }
  status.columns = size.ws_col;
  const std::string cut = text.substr(0, static_cast<std::size_t>(status.columns));
  std::printf("\0337\033[%d;1H\033[2K\033[7m%s\033[0m\0338", status.rows, cut.c_str());
  std::fflush(stdout);
}

}  // namespace

std::string status_text(const Cabinet& cabinet) {
  return money_text(cabinet) + " | " + lamps_text(cabinet) + " | LED " +
         led_display_text(cabinet.led) + " | USB " + usb_text(cabinet) + " | " +
         status_link_text(cabinet);
}

void status_open(Status& status, const Cabinet& cabinet) {
  status.on_terminal = !cabinet.options.quiet && isatty(STDOUT_FILENO) == 1;
}

void status_update(Status& status, const Cabinet& cabinet, std::int64_t now_ms) {
  if (cabinet.options.quiet || now_ms < status.next_ms) return;
  if (status.on_terminal) {
    status.next_ms = now_ms + TERMINAL_MS;
    const std::string text = status_text(cabinet);
    winsize size{};
    ioctl(STDOUT_FILENO, TIOCGWINSZ, &size);
    if (text == status.shown && size.ws_row == status.rows) return;
    draw(status, text);
    status.shown = text;
    return;
  }
  // Every lamp step would fill a file, so a line is printed only when money or paper changes.
  status.next_ms = now_ms + PRINT_MS;
  const std::string text = money_text(cabinet);
  if (!cabinet.options.script.empty() || text == status.shown) return;
  status.shown = text;
  std::printf("%s | %s\n", text.c_str(), status_link_text(cabinet).c_str());
  std::fflush(stdout);
}

void status_close(Status& status) {
  if (!status.on_terminal || status.rows == 0) return;
  std::printf("\0337\033[r\033[%d;1H\033[2K\0338\n", status.rows);
  std::fflush(stdout);
}
