// The commands of standard input and of scripts: one table for parsing, help and doing.
#pragma once

#include <cstdint>
#include <string>

#include "cabinet/pattern.h"

struct Cabinet;
struct CommandRow;

struct Command {
  const CommandRow* row = nullptr;
  Arguments arguments;
};

// Reads a command without doing it. Returns an error text, empty if all went well.
std::string command_parse(const Words& words, Command& command);

// Does it. Returns an error text, empty if all went well.
std::string command_do(Cabinet& cabinet, const Command& command, std::int64_t now_ms);

// Reads and does a line; an empty one does nothing, and one that is a reading says its value.
// Returns an error text, empty if all went well.
std::string commands_do(Cabinet& cabinet, const std::string& line, std::int64_t now_ms);

// The commands, a line each.
std::string commands_help();
