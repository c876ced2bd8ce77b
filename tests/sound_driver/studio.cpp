#include "tests/sound_driver/studio.h"

#include <algorithm>
#include <cstddef>
#include <random>

#include "platform/files.h"
#include "platform/headless/sound_capture.h"

void jps_update_all() {
  ++studio_updates;
}

namespace {

constexpr std::uint32_t HEAD_BYTES = 44;

void append(std::string& bytes, double value, int bits) {
  if (bits == 8) {
    bytes += static_cast<char>(static_cast<int>(std::lround(value * 127)) + 128);
    return;
  }
  const auto sample = static_cast<int>(std::lround(value * 32767));
  bytes += static_cast<char>(sample & 0xFF);
  bytes += static_cast<char>(sample >> 8 & 0xFF);
}

}  // namespace

void Studio::SetUp() {
  files_use_roots(folder.path(), folder.path());
  sound_capture_plug(true);
  studio_updates = 0;
  ASSERT_EQ(jpsdrvr_init(), 0);
  jpsdrvr_set_master_volume(255);
  for (int track = 0; track < JPS_TRACKS; ++track) jpsdrvr_set_volume(track, 255);
}

void Studio::TearDown() {
  for (JpsSound& one : sounds) jpsdrvr_free_sound(one);
  jpsdrvr_shutdown();
}

JpsSound& Studio::sound(const std::string& bytes, Pcm pcm, bool streamed, bool loop) {
  const std::string name = "sound" + std::to_string(sounds.size());
  folder.write(name, std::string(HEAD_BYTES, '\x55') + bytes);
  JpsSound& made = sounds.emplace_back();
  made.streamed = streamed ? 1 : 0;
  made.loop = loop ? 1 : 0;
  made.data_offset = HEAD_BYTES;
  made.file = read_open(name.c_str());
  const JpsWaveFormat format = {1,
                                static_cast<std::uint16_t>(pcm.channels),
                                static_cast<std::uint32_t>(pcm.rate),
                                static_cast<std::uint32_t>(pcm.rate * pcm.frame_bytes()),
                                static_cast<std::uint16_t>(pcm.frame_bytes()),
                                static_cast<std::uint16_t>(pcm.bits)};
  EXPECT_EQ(jpsdrvr_create_buffer(format, static_cast<std::uint32_t>(bytes.size()), made), 0);
  return made;
}

JpsSound& Studio::wave(const std::function<double(int)>& value, int frames, Pcm pcm, bool streamed,
                       bool loop) {
  std::string bytes;
  for (int i = 0; i < frames; ++i) {
    for (int channel = 0; channel < pcm.channels; ++channel) append(bytes, value(i), pcm.bits);
  }
  return sound(bytes, pcm, streamed, loop);
}

JpsSound& Studio::sine(double hz, double amplitude, Pcm pcm, int frames) {
  const double step = 2 * std::numbers::pi * hz / pcm.rate;
  return wave([=](int i) { return amplitude * std::sin(step * i); }, frames, pcm);
}

Take Studio::render(int frames) {
  std::vector<std::int16_t> out(static_cast<std::size_t>(frames) * 2);
  sound_capture_render(frames, out.data(), jpsdrvr_transition);
  Take take;
  for (std::size_t i = 0; i < out.size(); i += 2) {
    take.left.push_back(out[i]);
    take.right.push_back(out[i + 1]);
  }
  return take;
}

std::string noise_bytes(std::size_t size, Pcm pcm, unsigned seed) {
  std::mt19937 random(seed);
  std::string bytes(size, '\0');
  for (char& byte : bytes) byte = static_cast<char>(random());
  const char silence = pcm.bits == 8 ? '\x80' : '\0';
  std::fill_n(bytes.begin(), std::min<std::size_t>(size, 4), silence);
  return bytes;
}

Samples heard(const std::string& bytes, Pcm pcm, int channel) {
  Samples samples;
  const auto frame = static_cast<std::size_t>(pcm.frame_bytes());
  for (std::size_t at = 0; at + frame <= bytes.size(); at += frame) {
    const std::size_t byte = at + (pcm.channels == 2 ? channel * frame / 2 : 0);
    if (pcm.bits == 8) {
      samples.push_back((static_cast<unsigned char>(bytes[byte]) - 128) * 256);
    } else {
      const int low = static_cast<unsigned char>(bytes[byte]);
      samples.push_back(static_cast<signed char>(bytes[byte + 1]) * 256 + low);
    }
  }
  return samples;
}

double level_at(const Samples& samples, double hz) {
  const double step = 2 * std::numbers::pi * hz / 44100;
  const double turn = 2 * std::numbers::pi / static_cast<double>(samples.size());
  double real = 0, imaginary = 0, weight = 0;
  for (std::size_t i = 0; i < samples.size(); ++i) {
    const double window = 1 - std::cos(turn * (static_cast<double>(i) + 0.5));
    real += window * samples[i] * std::cos(step * static_cast<double>(i));
    imaginary += window * samples[i] * std::sin(step * static_cast<double>(i));
    weight += window;
  }
  return 2 * std::hypot(real, imaginary) / weight;
}

double decibels(double ratio) {
  return 20 * std::log10(ratio);
}

double peak(const Samples& samples) {
  double most = 0;
  for (double sample : samples) most = std::max(most, std::abs(sample));
  return most;
}

double steepest(const Samples& samples) {
  double most = 0;
  for (std::size_t i = 1; i < samples.size(); ++i) {
    most = std::max(most, std::abs(samples[i] - samples[i - 1]));
  }
  return most;
}
