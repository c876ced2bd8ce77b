// The words of a command line, and patterns that say what they may be. One pattern is the parser,
// the error message and the line of the help.
//
// A pattern is words parted by spaces: "coin" stands for itself, "on|off" for one of its choices,
// a word in capitals for an argument of the kinds in pattern.cpp, and what is in brackets may be
// left out.
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

// Parts a line into words; "..." is one word, # begins a comment. Returns an error text, empty if
// all went well.
std::string words_split(const std::string& line, Words& words);

// The number that a word is, decimal or 0x. False if it is none.
bool word_number(const Word& word, double& number);

// Matches the words from `at` on. Returns the place behind the last one that the pattern took, or
// -1; then `error` may say which argument was wrong.
int pattern_match(const std::string& pattern, const Words& words, std::size_t at,
                  Arguments& arguments, std::string& error);

// A number argument, or `otherwise` if it was left out.
double argument(const Arguments& arguments, const char* name, double otherwise);

// A line of the help, for a pattern.
std::string help_line(const std::string& pattern, const std::string& help);
