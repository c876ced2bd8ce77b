// What scripts compare: readings of the cabinet and of the game's books, and conditions on them.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "cabinet/books_file.h"
#include "cabinet/pattern.h"

struct Cabinet;
struct ReadingRow;

struct Reading {  // a sum of terms
  struct Term {
    int sign;
    const ReadingRow* row;  // null: a number, or a name from "let"
    Arguments arguments;
    double number;
    std::string name;
  };
  std::vector<Term> terms;
  std::string text;
};

struct Condition {
  Reading left, right;
  std::string relation;  // empty: `left` isn't 0
  std::string text;
};

struct Verdict {
  bool holds;
  std::string seen;  // each side with its value
};

// Reads a reading or a condition from the words at `at`, and moves `at` to the next word. `names`
// are those from earlier "let" lines. Returns an error text, empty on success.
std::string reading_parse(const Words& words, std::size_t& at,
                          const std::vector<std::string>& names, Reading& reading);
std::string condition_parse(const Words& words, std::size_t& at,
                            const std::vector<std::string>& names, Condition& condition);

BooksValue reading_value(const Cabinet& cabinet, const Reading& reading);

// The reading with its value, "paper left is 4000", or why it has none.
std::string reading_seen(const Cabinet& cabinet, const Reading& reading);

Verdict condition_check(const Cabinet& cabinet, const Condition& condition);

// The readings, one per line.
std::string readings_help();
