// The commands of standard input and of scripts: one table for parsing, help and execution.
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

// Reads a command without running it. Returns an error text, empty on success.
std::string command_parse(const Words& words, Command& command);

// Runs it. Returns an error text, empty on success.
std::string command_do(Cabinet& cabinet, const Command& command, std::int64_t now_ms);

// Reads and runs a line. An empty line does nothing; a reading prints its value. Returns an error
// text, empty on success.
std::string commands_do(Cabinet& cabinet, const std::string& line, std::int64_t now_ms);

// The commands, one per line.
std::string commands_help();
