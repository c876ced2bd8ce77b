// The words of a command line, and patterns that they must match. One pattern is the parser, the
// error message and the line of the help.
// A pattern consists of words separated by spaces: "coin" is itself, "on|off" is one of its
// choices, a word in capitals is an argument of one of the kinds in pattern.cpp, and words in
// brackets are optional.
#pragma once

#include <cstddef>
#include <map>
#include <string>
#include <vector>

struct Word {
  std::string text;
  bool quoted = false;
};
using Words = std::vector<Word>;

struct Arguments {
  int side = 0;
  int input = 0;
  int meter = 0;
  std::vector<std::string> choices;       // of "on|off" and the like, in order
  std::vector<std::string> texts;         // of NAME, VALUE, FRAME, in order
  std::map<std::string, double> numbers;  // of the others, by their word in the pattern
};

// Splits a line into words; "..." is one word, # begins a comment. Returns an error text, empty on
// success.
std::string words_split(const std::string& line, Words& words);

// The value of a word, decimal or 0x. False if it is not a number.
bool word_number(const Word& word, double& number);

// Matches the words from `at` on. Returns the position after the last matched word, or -1; then
// `error` may say which argument was wrong.
int pattern_match(const std::string& pattern, const Words& words, std::size_t at,
                  Arguments& arguments, std::string& error);

// A number argument, or `otherwise` if it is missing.
double argument(const Arguments& arguments, const char* name, double otherwise);

// A line of the help, for a pattern.
std::string help_line(const std::string& pattern, const std::string& help);
