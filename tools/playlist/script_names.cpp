#include "tools/playlist/script_names.h"

#include <algorithm>
#include <string_view>

#include "sound/playlist_lines.h"

namespace {

struct NamedKeyword {
  std::string_view keyword;
  NameKind kind;
  bool behind_a_number;  // the name is the second operand
};

constexpr NamedKeyword KEYWORDS[] = {
    {"PLAYLIST", NameKind::PLAYLIST, true}, {"GROUP", NameKind::GROUP, false},
    {"PLAY", NameKind::SOUND, true},        {"PLAYS", NameKind::SOUND, true},
    {"SOUND", NameKind::SOUND, false},      {"PLAYGROUP", NameKind::PLAYED_GROUP, true},
    {"LABEL", NameKind::LABEL, false},      {"GOTO", NameKind::GOTO, false},
};

// The keyword after time and condition.
std::string_view take_keyword(std::string_view& line) {
  if (line.starts_with('[')) line.remove_prefix(std::min(line.find(']'), line.size() - 1) + 1);
  std::string_view token = playlist_take_token(line);
  if (token == "ONMARKER" || token == "ONSMARKER") {
    playlist_take_token(line);
    token = playlist_take_token(line);
  }
  return token;
}

}  // namespace

std::vector<ScriptName> script_names(const std::string& text) {
  std::vector<ScriptName> names;
  PlaylistLines lines{text};
  int block = 0;
  for (std::string_view line; lines.next(line);) {
    if (playlist_line_is_idle(line)) continue;
    const std::string_view token = take_keyword(line);
    const auto row = std::ranges::find(KEYWORDS, token, &NamedKeyword::keyword);
    if (row == std::end(KEYWORDS)) continue;
    if (row->kind == NameKind::PLAYLIST || row->kind == NameKind::GROUP) ++block;
    PlaylistOperands operands(line);
    std::string_view name;
    if (row->behind_a_number) operands.take(name);
    if (operands.take_quoted(name)) {
      names.push_back({row->kind, std::string(name), lines.number, block});
    }
  }
  return names;
}
