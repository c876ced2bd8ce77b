#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstring>

#include "sound/kernels.h"

namespace {

std::int16_t sample_16(const std::byte* in) {
  std::int16_t value = 0;
  std::memcpy(&value, in, sizeof value);
  return value;
}

float sample_8(std::byte in) {
  return static_cast<float>((static_cast<int>(in) - 128) * 256);
}

void unpack(const std::byte* in, int frames, int channels, int bytes, float* left, float* right) {
  for (int i = 0; i < frames; ++i) {
    const std::byte* frame = in + static_cast<std::ptrdiff_t>(i) * channels * bytes;
    left[i] = bytes == 2 ? static_cast<float>(sample_16(frame)) : sample_8(*frame);
    if (channels == 1) continue;
    right[i] = bytes == 2 ? static_cast<float>(sample_16(frame + 2)) : sample_8(frame[1]);
  }
}

void resample(const ResampleRun& run) {
  std::uint64_t position = run.fraction;
  for (int i = 0; i < run.frames; ++i, position += run.step) {
    const std::size_t at = position >> 32;
    const auto row = static_cast<std::uint32_t>(position) >> 24;
    const float between = static_cast<float>(position & 0xFFFFFF) * 0x1p-24F;
    const float* low = run.rows + static_cast<std::ptrdiff_t>(row) * run.taps;
    const float* high = low + run.taps;
    float left = 0, right = 0;
    for (int tap = 0; tap < run.taps; ++tap) {
      const float weight = low[tap] + between * (high[tap] - low[tap]);
      left += weight * run.in_left[at + tap];
      if (run.in_right != nullptr) right += weight * run.in_right[at + tap];
    }
    run.out_left[i] = left;
    if (run.in_right != nullptr) run.out_right[i] = right;
  }
}

void mix(const float* in, int frames, float gain, float gain_step, float* bus) {
  for (int i = 0; i < frames; ++i) bus[i] += in[i] * (gain + static_cast<float>(i) * gain_step);
}

std::int16_t saturated(float value) {
  return static_cast<std::int16_t>(std::lrint(std::clamp(value, -32768.0F, 32767.0F)));
}

void pack(const float* left, const float* right, int frames, std::int16_t* out) {
  for (int i = 0; i < frames; ++i) {
    out[2 * i] = saturated(left[i]);
    out[2 * i + 1] = saturated(right[i]);
  }
}

}  // namespace

constexpr SoundKernels sound_kernels_plain = {unpack, resample, mix, pack};

const SoundKernels& sound_kernels() {
#if defined(__x86_64__)
  static const bool wide = __builtin_cpu_supports("avx2") && __builtin_cpu_supports("fma");
  if (wide) return sound_kernels_avx2;
#endif
  return sound_kernels_plain;
}
