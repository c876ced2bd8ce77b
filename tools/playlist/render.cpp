#include "tools/playlist/render.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <fstream>

#include "platform/headless/clock_control.h"
#include "platform/headless/sound_capture.h"
#include "sound/bank.h"
#include "sound/driver.h"
#include "sound/player.h"
#include "tools/playlist/stage.h"

namespace {

constexpr int RATE = 44100;
constexpr int CHANNELS = 2;
constexpr int FRAME_BYTES = CHANNELS * 2;

void put(std::string& bytes, std::uint32_t value, int size) {
  for (int i = 0; i < size; ++i) bytes += static_cast<char>(value >> 8 * i);
}

bool write_wave(const std::string& file, const std::vector<std::int16_t>& samples) {
  const auto size = static_cast<std::uint32_t>(samples.size() * 2);
  std::string bytes = "RIFF";
  put(bytes, 36 + size, 4);
  bytes += "WAVEfmt ";
  put(bytes, 16, 4);
  put(bytes, 1, 2);
  put(bytes, CHANNELS, 2);
  put(bytes, RATE, 4);
  put(bytes, RATE * FRAME_BYTES, 4);
  put(bytes, FRAME_BYTES, 2);
  put(bytes, 16, 2);
  bytes += "data";
  put(bytes, size, 4);
  for (const std::int16_t sample : samples) put(bytes, static_cast<std::uint16_t>(sample), 2);
  std::ofstream stream(file, std::ios::binary);
  stream << bytes;
  stream.close();
  return stream.good();
}

std::string decibels(const std::vector<std::int16_t>& samples) {
  int peak = 0;
  for (const std::int16_t sample : samples) peak = std::max(peak, std::abs(int{sample}));
  if (peak == 0) return "silent";
  char text[32];
  std::snprintf(text, sizeof text, "peak %.1f dB", 20 * std::log10(peak / 32768.0));
  return text;
}

int milliseconds(double seconds) {
  return static_cast<int>(std::lround(seconds * 1000));
}

// Whether all names exist and start before the end.
bool has_all(const JpsBank& bank, const RenderOptions& options) {
  for (const RenderRequest& request : options.requests) {
    if (jps_find_playlist(bank, jps_key(request.name)) == nullptr) {
      std::printf("%s has no playlist '%s'\n", options.script.c_str(), request.name.c_str());
      return false;
    }
    if (milliseconds(request.at_s) >= milliseconds(options.for_s)) {
      std::printf("'%s' at %.3f s would never start: --for ends at %.3f s\n", request.name.c_str(),
                  request.at_s, options.for_s);
      return false;
    }
  }
  return true;
}

// Starts what is due in this millisecond.
void ask(const JpsBank& bank, const RenderOptions& options, int ms) {
  for (const RenderRequest& request : options.requests) {
    if (milliseconds(request.at_s) != ms) continue;
    const JpsPlaylist* const playlist = jps_find_playlist(bank, jps_key(request.name));
    const std::uint32_t tracks = jps_bank_play(bank, playlist->number);
    if (tracks != 0 || playlist->tracks_needed == 0) continue;
    std::printf("%.3f s: no track for '%s'\n", ms / 1000.0, request.name.c_str());
  }
}

std::vector<std::int16_t> hear(const JpsBank& bank, const RenderOptions& options) {
  const int length_ms = milliseconds(options.for_s);
  std::vector<std::int16_t> samples;
  samples.reserve(static_cast<std::size_t>(length_ms + 1) * RATE / 1000 * CHANNELS);
  for (int ms = 0; ms < length_ms; ++ms) {
    ask(bank, options, ms);
    const std::int64_t done = static_cast<std::int64_t>(samples.size()) / CHANNELS;
    const int frames = static_cast<int>((ms + 1) * std::int64_t{RATE} / 1000 - done);
    samples.resize(samples.size() + static_cast<std::size_t>(frames) * CHANNELS);
    sound_capture_render(frames, samples.data() + done * CHANNELS, jpsdrvr_transition);
    headless_clock_advance(1);
    jps_update_all();
  }
  return samples;
}

}  // namespace

bool render_playlists(const RenderOptions& options) {
  SoundStage stage;
  const JpsBank* const bank = stage.parse(options.script);
  if (bank == nullptr || !has_all(*bank, options)) return false;
  const std::vector<std::int16_t> samples = hear(*bank, options);
  if (!write_wave(options.output, samples)) {
    std::printf("%s can't be written\n", options.output.c_str());
    return false;
  }
  std::printf("%s: %.3f s, %s, %d playlists still playing\n", options.output.c_str(), options.for_s,
              decibels(samples).c_str(), jps_players_running());
  return true;
}
