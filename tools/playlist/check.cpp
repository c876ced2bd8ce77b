#include "tools/playlist/check.h"

#include <algorithm>
#include <cctype>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <set>
#include <string_view>
#include <vector>

#include "sound/bank.h"
#include "sound/game_playlists.h"
#include "tools/playlist/script_names.h"
#include "tools/playlist/stage.h"

namespace {

namespace fs = std::filesystem;

std::string text_of(const std::string& file) {
  std::ifstream stream(file, std::ios::binary);
  return {std::istreambuf_iterator<char>(stream), {}};
}

int missing_playlists(const JpsBank& bank) {
  int missing = 0;
  for (const char* name : GAME_PLAYLISTS) {
    if (jps_find_playlist(bank, jps_key(name)) != nullptr) continue;
    std::printf("missing: the game asks for a playlist '%s'\n", name);
    ++missing;
  }
  return missing;
}

bool share_a_space(const ScriptName& one, const ScriptName& other) {
  return one.kind == other.kind && (one.kind != NameKind::LABEL || one.block == other.block);
}

// Different names with one key: the first one found would silently be used for both.
int mistaken_names(const std::vector<ScriptName>& names) {
  int mistaken = 0;
  for (std::size_t i = 0; i < names.size(); ++i) {
    for (std::size_t j = 0; j < i; ++j) {
      if (!share_a_space(names[i], names[j]) || names[i].name == names[j].name ||
          jps_key(names[i].name) != jps_key(names[j].name)) {
        continue;
      }
      std::printf("line %d: '%s' can't be distinguished from '%s' in line %d; rename one of them\n",
                  names[i].line, names[i].name.c_str(), names[j].name.c_str(), names[j].line);
      ++mistaken;
      break;
    }
  }
  return mistaken;
}

int lost_jumps(const std::vector<ScriptName>& names) {
  int lost = 0;
  for (const ScriptName& jump : names) {
    if (jump.kind != NameKind::GOTO) continue;
    if (std::ranges::any_of(names, [&jump](const ScriptName& label) {
          return label.kind == NameKind::LABEL && label.block == jump.block &&
                 label.name == jump.name;
        })) {
      continue;
    }
    std::printf("line %d: GOTO '%s', but its playlist has no such LABEL\n", jump.line,
                jump.name.c_str());
    ++lost;
  }
  return lost;
}

int unused_groups(const std::vector<ScriptName>& names) {
  int unused = 0;
  for (const ScriptName& group : names) {
    if (group.kind != NameKind::GROUP) continue;
    if (std::ranges::any_of(names, [&group](const ScriptName& played) {
          return played.kind == NameKind::PLAYED_GROUP && played.name == group.name;
        })) {
      continue;
    }
    std::printf("unused: line %d: group '%s'\n", group.line, group.name.c_str());
    ++unused;
  }
  return unused;
}

// A script may use either kind of slash, and any case.
std::string plain_name(std::string name) {
  std::ranges::transform(name, name.begin(), [](unsigned char c) {
    return static_cast<char>(c == '/' ? '\\' : std::tolower(c));
  });
  return name;
}

bool is_wave(const fs::path& path) {
  return plain_name(path.string()).ends_with(".wav");
}

// The files that are played.
std::set<std::string> played_files(const JpsBank& bank, const std::vector<ScriptName>& names) {
  std::set<std::string> played;
  for (const ScriptName& sound : names) {
    if (sound.kind == NameKind::SOUND && jps_find_sound(bank, jps_key(sound.name)) != nullptr) {
      played.insert(plain_name(sound.name));
    }
  }
  return played;
}

// Collects the names of the waves in a folder and the folders below. A folder that can't be read is
// reported, and its files aren't counted.
void collect_waves(const fs::path& folder, const fs::path& root, std::vector<std::string>& names) {
  std::error_code failed, ignored;
  for (fs::directory_iterator at(folder, failed), end; !failed && at != end; at.increment(failed)) {
    if (at->is_directory(ignored) && !at->is_symlink(ignored)) {
      collect_waves(at->path(), root, names);
    } else if (is_wave(at->path())) {
      names.push_back(at->path().lexically_relative(root).string());
    }
  }
  if (failed) std::printf("not read: %s: %s\n", folder.c_str(), failed.message().c_str());
}

int unused_waves(const std::set<std::string>& played, const std::string& file) {
  std::error_code failed;
  const fs::path folder = fs::weakly_canonical(file, failed).parent_path();
  std::vector<std::string> unused;
  collect_waves(folder, folder, unused);
  std::erase_if(unused, [&](const std::string& name) { return played.contains(plain_name(name)); });
  std::ranges::sort(unused);
  for (const std::string& name : unused) std::printf("unused: %s\n", name.c_str());
  return static_cast<int>(unused.size());
}

}  // namespace

bool check_playlist_file(const std::string& file) {
  SoundStage stage;
  const JpsBank* const bank = stage.parse(file);
  if (bank == nullptr) return false;
  const std::vector<ScriptName> names = script_names(text_of(file));
  const int errors =
      stage.messages + mistaken_names(names) + lost_jumps(names) + missing_playlists(*bank);
  const int unused = unused_groups(names) + unused_waves(played_files(*bank, names), file);
  std::printf("%s: %u playlists, %u sounds, %u groups; %d errors, %d unused\n", file.c_str(),
              bank->playlist_count, bank->sound_count, bank->group_count, errors, unused);
  return errors == 0;
}
