// The state of the cabinet in one line, at the bottom of the terminal or printed at each change.
#pragma once

#include <cstdint>
#include <string>

struct Cabinet;

struct Status {
  bool on_terminal = false;
  int rows = 0, columns = 0;
  std::int64_t next_ms = 0;
  std::string shown;
};

// The line.
std::string status_text(const Cabinet& cabinet);

// The state of the line between game and board.
std::string status_link_text(const Cabinet& cabinet);

// Takes the bottom line of the terminal for it, if standard output is one.
void status_open(Status& status, const Cabinet& cabinet);

// Shows it, at its own pace.
void status_update(Status& status, const Cabinet& cabinet, std::int64_t now_ms);

// Gives the line back.
void status_close(Status& status);
