// What the tool is asked for, and its answers.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "tools/books/drive.h"
#include "tools/books/ledger.h"
#include "tools/books/table.h"

struct Question {
  std::string folder;
  OutputForm form = FORM_TEXT;
  bool has_since = false;
  std::int64_t since_ms = 0;
  int side = -1;         // -1: both
  std::size_t last = 0;  // 0: all
  std::string kind;      // empty: all
  std::string memory;    // file of the last collection
  std::string to;        // file of the metrics; empty: standard output
  bool collect = false;
  bool pay = false;
};

// The collection sheet: what came in and what went out, in total, since a moment or since the last
// collection.
struct Report {
  std::string span;  // "since ..."
  Table table;
  std::vector<std::string> notes;
};
Report report_of(const Drive& drive, const Question& question, const Collection& collection);

std::vector<Game> games_of(const Ledger& ledger, const Question& question);
Table games_table(const std::vector<Game>& games);
// A game as a story, one line.
std::string game_story(const Game& game);

Table events_table(const Drive& drive, const Question& question);
Table check_table(const Ledger& ledger);
