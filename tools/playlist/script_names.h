// The names in a playlist file, as they are written there; a bank knows only their keys.
#pragma once

#include <string>
#include <vector>

enum class NameKind { PLAYLIST, SOUND, GROUP, PLAYED_GROUP, LABEL, GOTO };

struct ScriptName {
  NameKind kind;
  std::string name;
  int line;
  int block;  // counts the PLAYLIST and GROUP lines so far: labels belong to one
};

// All names of a file's text, in their order. Lines that make no sense are passed over: the parser
// has told of them.
std::vector<ScriptName> script_names(const std::string& text);
