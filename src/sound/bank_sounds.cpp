#include "sound/bank_sounds.h"

#include <cstdint>
#include <cstdio>

#include "platform/files.h"
#include "sound/bank.h"
#include "sound/wave_header.h"

namespace {

constexpr std::uint16_t PCM = 1, EXTENSIBLE = 0xFFFE;

// Why the driver can't mix this sound, or null if it can.
const char* fault_of(const WaveInfo& info) {
  const JpsWaveFormat& format = info.format;
  if (format.format_tag != PCM && format.format_tag != EXTENSIBLE) return "it is not plain PCM";
  if (format.channels != 1 && format.channels != 2) return "it has neither 1 nor 2 channels";
  if (format.bits != 8 && format.bits != 16) return "its samples have neither 8 nor 16 bits";
  if (format.sample_rate < 100 || format.sample_rate > 100000) {
    return "its sample rate is not in the range 100-100000";
  }
  return info.data_size == 0 ? "it has no samples" : nullptr;
}

// If its writer was interrupted or couldn't know the size in advance, the header gives a size that
// the file doesn't hold. What is there is played.
void hold_to_file(WaveInfo& info, ReadFile* file, std::uint32_t data_offset, const char* path) {
  const std::uint64_t size = read_size(file);
  const std::uint64_t there = size > data_offset ? size - data_offset : 0;
  if (info.data_size <= there) return;
  std::printf(
      "jps_parse_addsound(): Warning! %s: its header promises %u bytes of samples, it has %u\n",
      path, info.data_size, static_cast<std::uint32_t>(there));
  info.data_size = static_cast<std::uint32_t>(there);
}

bool streams(StreamMode mode, std::uint32_t data_size) {
  return mode == STREAM_ALWAYS || (mode == STREAM_BY_SIZE && data_size > JPS_WHOLE_SOUND_MAX);
}

// Fills `sound` from its open file. False if it can't be played.
bool load(JpsSound& sound, StreamMode mode, const char* path) {
  WaveInfo info;
  std::uint32_t data_offset = 0;
  const char* fault = "it is not a wave file";
  if (read_wav_header(info, sound.file, data_offset)) {
    hold_to_file(info, sound.file, data_offset, path);
    fault = fault_of(info);
  }
  if (fault != nullptr) {
    std::printf("jps_parse_addsound(): ERROR! %s: %s\n", path, fault);
    return false;
  }
  sound.data_offset = data_offset;
  sound.streamed = streams(mode, info.data_size) ? 1 : 0;
  return jpsdrvr_create_buffer(info.format, info.data_size, sound) == 0;
}

}  // namespace

JpsSound* jps_parse_addsound(const std::string& folder, std::string_view name, JpsBank& bank,
                             StreamMode mode) {
  const JpsKey key = jps_key(name);
  JpsSound* const known = jps_find_sound(bank, key);
  if (known != nullptr) return known;
  if (bank.sound_count == bank.sound_capacity) {
    std::puts("jps_parse_addsound(): ERROR! Already alloc'ed max # of sounds");
    return nullptr;
  }
  const std::string path = folder + std::string(name);
  ReadFile* const file = read_open_any_case(path.c_str());
  if (file == nullptr) return nullptr;
  JpsSound& sound = bank.sounds[bank.sound_count];
  sound = {};
  sound.key = key;
  sound.file = file;
  const bool good = load(sound, mode, path.c_str());
  if (!good) std::printf("jps_parse_addsound(): ERROR! Couldn't load %s\n", path.c_str());
  if (!good || sound.streamed == 0) {
    read_close(file);
    sound.file = nullptr;
  }
  if (!good) return nullptr;
  ++bank.sound_count;
  return &sound;
}
