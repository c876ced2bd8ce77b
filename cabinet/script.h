// A script: commands, and lines that wait or check what must be true of the cabinet. It runs beside
// the cabinet's loop, one step at a time.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "cabinet/commands.h"
#include "cabinet/readings.h"

struct Cabinet;

enum ScriptLineKind {
  SCRIPT_COMMAND,
  SCRIPT_WAIT,        // wait MS
  SCRIPT_WAIT_UNTIL,  // wait until CONDITION [within MS]
  SCRIPT_EXPECT,      // expect CONDITION [within MS]
  SCRIPT_EXPECT_FOR,  // expect CONDITION for MS
  SCRIPT_LET,         // let NAME = READING
};

struct ScriptLine {
  int number;
  ScriptLineKind kind;
  std::string text;
  Command command;
  Condition condition;
  Reading reading;
  std::string name;
  std::int64_t ms = 0;
};

enum ScriptState { SCRIPT_RUNS, SCRIPT_PASSED, SCRIPT_FAILED };

struct Script {
  std::string file;
  std::vector<ScriptLine> lines;
  std::size_t at = 0;
  bool line_begun = false;
  std::int64_t line_began_ms = 0;
  int expectations = 0;
  std::string failure;  // what went wrong, where, and what was seen
};

// Reads a script from its text; `file` is for messages. Returns an error text with the line's
// number, empty on success.
std::string script_parse(const std::string& text, const std::string& file, Script& script);

// Reads it from the file.
std::string script_load(const std::string& file, Script& script);

// Runs what is due now.
ScriptState script_step(Script& script, Cabinet& cabinet, std::int64_t now_ms);

// Ends it with a failure at its present line.
void script_fail(Script& script, const Cabinet& cabinet, const std::string& why);
