// The names in a playlist file as they are written there; a bank has only their keys.
#pragma once

#include <string>
#include <vector>

enum class NameKind { PLAYLIST, SOUND, GROUP, PLAYED_GROUP, LABEL, GOTO };

struct ScriptName {
  NameKind kind;
  std::string name;
  int line;
  int block;  // number of PLAYLIST and GROUP lines so far: a label belongs to one of them
};

// All names of a file's text, in order. Skips lines that make no sense; the parser has reported
// them.
std::vector<ScriptName> script_names(const std::string& text);
