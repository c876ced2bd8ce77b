// Splits lines into tokens: the command line, and the list of installed files.
#pragma once

constexpr int TOKEN_SLOTS = 64;
constexpr int TOKEN_SIZE = 128;

extern char token_table[TOKEN_SLOTS][TOKEN_SIZE];

// Splits a line at blanks, commas, tabs, parentheses and line ends into the token table, in upper
// case. A ";" at the start of a token ends the line. A token is cut after 127 characters. Returns
// the number of tokens, 0 for a line of 256 characters or more. Main thread.
int app_tokenize_line(const char* line);
