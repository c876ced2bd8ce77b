#include "presentation/debug_pages.h"

#include <algorithm>
#include <iterator>

#include "books/audit_time.h"
#include "books/audits.h"
#include "books/prefs.h"
#include "gfx/panel.h"  // gfx_rect_draw
#include "gfx/text.h"

namespace {

constexpr int LEFT_PX = 16;
constexpr int HEADING_Y_PX = 16;
constexpr int FIRST_Y_PX = 48;
constexpr int LINE_PX = 16;
constexpr int BACKDROP_PX = 8;
constexpr std::uint32_t BACKDROP_COLOUR = 0x80000000;
constexpr int AUDITS_PER_PAGE = 43;
constexpr int CELLS_PER_PAGE = 200;
constexpr int CELLS_PER_BLOCK = 50;
constexpr int LINES_PER_BLOCK = 10;

void backdrop(int x, int width, int height) {
  gfx_rect_draw(x, BACKDROP_PX, width, height, BACKDROP_COLOUR, BACKDROP_COLOUR);
}

void audit_line(const AuditRow& row, int y) {
  if ((row.flags & AUDIT_IS_TIME) != 0) {
    char time[AUDIT_TIME_SIZE];
    audit_format_time(row.time_ms, time);
    text_draw(FONT_8X12, COLOUR_WHITE, LEFT_PX, y, "%-32.32s %s", row.name, time);
  } else if ((row.flags & AUDIT_IS_FLOAT) != 0) {
    text_draw(FONT_8X12, COLOUR_WHITE, LEFT_PX, y, "%-32.32s %.3f", row.name,
              static_cast<double>(row.float_value));
  } else {
    text_draw(FONT_8X12, COLOUR_WHITE, LEFT_PX, y, "%-32.32s %d", row.name, row.count.get());
  }
}

// A name, like a text, comes from a file and need not end in its field.
void pref_line(const PrefRow& row, int y) {
  if ((row.flags & PREF_SHOWS_FLOAT) != 0) {
    text_draw(FONT_8X12, COLOUR_WHITE, LEFT_PX, y, "%-32.32s %.3f", row.name,
              static_cast<double>(row.float_value));
  } else if ((row.flags & PREF_SHOWS_CURRENCY) != 0) {
    const std::int32_t code = row.int_value;
    const bool known = code >= 0 && code < static_cast<int>(std::size(currency_codes));
    text_draw(FONT_8X12, COLOUR_WHITE, LEFT_PX, y, "%-32.32s %.8s", row.name,
              known ? currency_codes[code] : "");
  } else if ((row.flags & PREF_SHOWS_TEXT) != 0) {
    text_draw(FONT_8X12, COLOUR_WHITE, LEFT_PX, y, "%-32.32s %.80s", row.name, row.text_value);
  } else {
    text_draw(FONT_8X12, COLOUR_WHITE, LEFT_PX, y, "%-32.32s %d", row.name, row.int_value.get());
  }
}

// Fewer games than none come from a damaged file.
double per_game(AuditIndex left_row, int side) {
  const std::int32_t games = audit_count(AUDIT_GAMES_PLAYED, side);
  return games < 1 ? 0.0 : static_cast<double>(audit_count(left_row, side)) / games;
}

struct CatchRow {
  int y;
  const char* text[SIDE_COUNT];
  AuditIndex count, tickets;
};

constexpr CatchRow catch_rows[] = {
    {96, {"Bugs Per Game Left", "Bugs Per Game Right"}, AUDIT_BUGS, AUDIT_BUG_TICKETS},
    {128,
     {"Butterflies Per Game Left", "Butterflies Per Game Right"},
     AUDIT_BUTTERFLIES,
     AUDIT_BUTTERFLY_TICKETS},
    {160, {"Bonuses Per Game Left", "Bonuses Per Game Right"}, AUDIT_BONUSES, AUDIT_BONUS_TICKETS},
    {192,
     {"Double Bonuses Per Game Left", "Double Bonuses Per Game Right"},
     AUDIT_DOUBLE_BONUSES,
     AUDIT_DOUBLE_BONUS_TICKETS},
    {224,
     {"Jackpots Per Game Left", "Jackpots Per Game Right"},
     AUDIT_JACKPOTS,
     AUDIT_JACKPOT_TICKETS},
    {272,
     {"Consolations Per Game Left", "Consolations Per Game Right"},
     AUDIT_FREES,
     AUDIT_FREE_TICKETS},
};

void time_per_game_line(int side, int y, const char* text) {
  const std::int32_t games = audit_count(AUDIT_GAMES_PLAYED, side);
  char time[AUDIT_TIME_SIZE] = "";
  if (games > 0) audit_format_time(audits[AUDIT_TIME_TOTAL_PLAYED + side].time_ms / games, time);
  text_draw(FONT_8X12, COLOUR_WHITE, LEFT_PX, y, "%-32s %s", text, time);
}

}  // namespace

void audits_dump(int page) {
  text_draw(FONT_8X12, COLOUR_WHITE, LEFT_PX, HEADING_Y_PX, "AUDITS %d", page + 1);
  const int first = page * AUDITS_PER_PAGE;
  const int end = std::min(first + AUDITS_PER_PAGE, static_cast<int>(AUDIT_COUNT));
  for (int row = first; row < end; ++row) {
    audit_line(audits[row], FIRST_Y_PX + (row - first) * LINE_PX);
  }
}

void statistics_dump() {
  text_draw(FONT_8X12, COLOUR_WHITE, LEFT_PX, HEADING_Y_PX, "STATISTICS");
  for (int side = 0; side < SIDE_COUNT; ++side) {
    const int down = side * LINE_PX;
    const bool left = side == SIDE_LEFT;
    text_draw(FONT_8X12, COLOUR_WHITE, LEFT_PX, 48 + down, "%-32s %.3f",
              left ? "Tickets Per Game Left" : "Tickets Per Game Right",
              per_game(AUDIT_TICKETS, side));
    for (const CatchRow& row : catch_rows) {
      text_draw(FONT_8X12, COLOUR_WHITE, LEFT_PX, row.y + down, "%-32s %-7.3f %.3f", row.text[side],
                per_game(row.count, side), per_game(row.tickets, side));
    }
    time_per_game_line(side, 320 + down, left ? "Time Per Game Left" : "Time Per Game Right");
  }
}

void prefs_dump() {
  text_draw(FONT_8X12, COLOUR_WHITE, LEFT_PX, HEADING_Y_PX, "PREFS");
  for (int row = 0; row < PREF_COUNT; ++row) pref_line(prefs[row], FIRST_Y_PX + row * LINE_PX);
}

void histogram_dump(int side, int page) {
  const int x = side == SIDE_LEFT ? 16 : 696;
  const auto& cells = histogram[side];
  text_draw(FONT_8X12, COLOUR_WHITE, x, HEADING_Y_PX, "HISTOGRAM %d", page + 1);
  int y = FIRST_Y_PX;
  for (int block = 0; block < CELLS_PER_PAGE / CELLS_PER_BLOCK; ++block, y += LINE_PX) {
    for (int line = 0; line < LINES_PER_BLOCK; ++line, y += LINE_PX) {
      const int c = page * CELLS_PER_PAGE + block * CELLS_PER_BLOCK + line;
      text_draw(FONT_8X12, COLOUR_WHITE, x, y,
                "%04d : %-8d %04d : %-8d %04d : %-8d %04d : %-8d %04d : %d", c,
                static_cast<int>(cells[c]), c + 10, static_cast<int>(cells[c + 10]), c + 20,
                static_cast<int>(cells[c + 20]), c + 30, static_cast<int>(cells[c + 30]), c + 40,
                static_cast<int>(cells[c + 40]));
    }
  }
}

void debug_page_draw() {
  const std::int32_t page = debug_page;
  if (page == DEBUG_STATISTICS) {
    backdrop(8, 384, 344);
    statistics_dump();
  } else if (page == DEBUG_AUDITS_1 || page == DEBUG_AUDITS_2) {
    backdrop(8, 384, 728);
    audits_dump(page - DEBUG_AUDITS_1);
  } else if (page == DEBUG_PREFS) {
    backdrop(8, 384, 440);
    prefs_dump();
  } else if (page >= DEBUG_HISTOGRAM_1 && page <= DEBUG_HISTOGRAM_7) {
    for (int side = 0; side < SIDE_COUNT; ++side) {
      backdrop(side == SIDE_LEFT ? 8 : 688, 664, 728);
      histogram_dump(side, page - DEBUG_HISTOGRAM_1);
    }
  }
}
