#include "tools/playlist/stage.h"

#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>

#include "platform/files.h"
#include "platform/headless/clock_control.h"
#include "sound/bank.h"
#include "sound/driver.h"
#include "sound/player.h"
#include "sound/playlist_parser.h"

namespace {

// Why a file can't be read; null: it can.
const char* hindrance(const std::string& file) {
  std::error_code failed;
  if (euidaccess(file.c_str(), R_OK) != 0) return std::strerror(errno);
  return std::filesystem::is_directory(file, failed) ? std::strerror(EISDIR) : nullptr;
}

}  // namespace

SoundStage::SoundStage() {
  // With the host's root as the program's folder, an absolute path is a valid name for the game's
  // file functions.
  files_use_roots("", "/");
  headless_clock_set(1000);
  jps_players_reset();
  jpsdrvr_init();
}

SoundStage::~SoundStage() {
  jps_banks_free();
  jpsdrvr_shutdown();
}

JpsBank* SoundStage::parse(const std::string& file) {
  if (const char* why = hindrance(file)) {
    std::fprintf(stderr, "playlist: %s: %s\n", file.c_str(), why);
    return nullptr;
  }
  std::error_code failed;
  const auto path = std::filesystem::weakly_canonical(file, failed);
  return playlist_parse(failed ? file.c_str() : path.c_str(), &messages);
}
