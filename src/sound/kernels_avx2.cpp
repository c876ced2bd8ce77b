#if defined(__x86_64__)

#include <immintrin.h>

#include <cstddef>
#include <cstdint>

#include "sound/kernels.h"

#define WIDE __attribute__((target("avx2,fma")))

namespace {

// The remaining samples that don't fill a vector.
const SoundKernels& plain() {
  return sound_kernels_plain;
}

WIDE void unpack_stereo_16(const std::byte* in, int whole, float* left, float* right) {
  for (int i = 0; i < whole; i += 8) {
    const __m256i both = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(in + i * 4));
    const __m256i low = _mm256_srai_epi32(_mm256_slli_epi32(both, 16), 16);
    _mm256_storeu_ps(left + i, _mm256_cvtepi32_ps(low));
    _mm256_storeu_ps(right + i, _mm256_cvtepi32_ps(_mm256_srai_epi32(both, 16)));
  }
}

WIDE void unpack_mono_16(const std::byte* in, int whole, float* left) {
  for (int i = 0; i < whole; i += 8) {
    const __m128i eight = _mm_loadu_si128(reinterpret_cast<const __m128i*>(in + i * 2));
    _mm256_storeu_ps(left + i, _mm256_cvtepi32_ps(_mm256_cvtepi16_epi32(eight)));
  }
}

void unpack(const std::byte* in, int frames, int channels, int bytes, float* left, float* right) {
  const int whole = bytes == 2 ? frames & ~7 : 0;
  if (channels == 2) {
    unpack_stereo_16(in, whole, left, right);
  } else {
    unpack_mono_16(in, whole, left);
  }
  plain().unpack(in + static_cast<std::ptrdiff_t>(whole) * channels * bytes, frames - whole,
                 channels, bytes, left + whole, right + whole);
}

// Adds the upper half of a vector to the lower.
WIDE inline __m128 halved(__m256 sums) {
  return _mm_add_ps(_mm256_castps256_ps128(sums), _mm256_extractf128_ps(sums, 1));
}

// Four output frames at a time, so that the sums across their vectors share the shuffles.
template <int OCTETS, bool STEREO>
WIDE void resample_run(const ResampleRun& run) {
  std::uint64_t position = run.fraction;
  __m128 left[4], right[4];
  for (int i = 0; i < run.frames; i += 4) {
    for (int k = 0; k < 4; ++k, position += run.step) {
      const std::size_t at = position >> 32;
      const std::size_t row = static_cast<std::uint32_t>(position) >> 24;
      const __m256 between =
          _mm256_set1_ps(static_cast<float>(static_cast<int>(position & 0xFFFFFF)) * 0x1p-24F);
      const float* low = run.rows + row * (OCTETS * 8);
      const float* high = low + OCTETS * 8;
      __m256 left_sum = _mm256_setzero_ps(), right_sum = _mm256_setzero_ps();
      for (int tap = 0; tap < OCTETS * 8; tap += 8) {
        const __m256 first = _mm256_loadu_ps(low + tap);
        const __m256 rise = _mm256_sub_ps(_mm256_loadu_ps(high + tap), first);
        const __m256 weight = _mm256_fmadd_ps(between, rise, first);
        left_sum = _mm256_fmadd_ps(weight, _mm256_loadu_ps(run.in_left + at + tap), left_sum);
        if constexpr (STEREO) {
          right_sum = _mm256_fmadd_ps(weight, _mm256_loadu_ps(run.in_right + at + tap), right_sum);
        }
      }
      left[k] = halved(left_sum);
      if constexpr (STEREO) right[k] = halved(right_sum);
    }
    _mm_storeu_ps(run.out_left + i,
                  _mm_hadd_ps(_mm_hadd_ps(left[0], left[1]), _mm_hadd_ps(left[2], left[3])));
    if constexpr (STEREO) {
      _mm_storeu_ps(run.out_right + i,
                    _mm_hadd_ps(_mm_hadd_ps(right[0], right[1]), _mm_hadd_ps(right[2], right[3])));
    }
  }
}

template <int OCTETS>
void resample_taps(const ResampleRun& run) {
  run.in_right != nullptr ? resample_run<OCTETS, true>(run) : resample_run<OCTETS, false>(run);
}

void resample(const ResampleRun& run) {
  ResampleRun whole = run;
  whole.frames &= ~3;
  switch (run.taps) {
    case 16:
      resample_taps<2>(whole);
      break;
    case 24:
      resample_taps<3>(whole);
      break;
    case 32:
      resample_taps<4>(whole);
      break;
    case 40:
      resample_taps<5>(whole);
      break;
    default:
      whole.frames = 0;
      break;
  }
  ResampleRun rest = run;
  const std::uint64_t position = run.fraction + whole.frames * run.step;
  rest.frames -= whole.frames;
  rest.fraction = static_cast<std::uint32_t>(position);
  rest.in_left += position >> 32;
  rest.out_left += whole.frames;
  if (rest.in_right != nullptr) {
    rest.in_right += position >> 32;
    rest.out_right += whole.frames;
  }
  plain().resample(rest);
}

WIDE void mix(const float* in, int frames, float gain, float gain_step, float* bus) {
  const int whole = frames & ~7;
  const __m256 lanes = _mm256_setr_ps(0, 1, 2, 3, 4, 5, 6, 7);
  __m256 gains = _mm256_fmadd_ps(lanes, _mm256_set1_ps(gain_step), _mm256_set1_ps(gain));
  const __m256 rise = _mm256_set1_ps(gain_step * 8);
  for (int i = 0; i < whole; i += 8) {
    const __m256 sum = _mm256_fmadd_ps(_mm256_loadu_ps(in + i), gains, _mm256_loadu_ps(bus + i));
    _mm256_storeu_ps(bus + i, sum);
    gains = _mm256_add_ps(gains, rise);
  }
  plain().mix(in + whole, frames - whole, gain + static_cast<float>(whole) * gain_step, gain_step,
              bus + whole);
}

WIDE void pack(const float* left, const float* right, int frames, std::int16_t* out) {
  const int whole = frames & ~7;
  for (int i = 0; i < whole; i += 8) {
    const __m256i l = _mm256_cvtps_epi32(_mm256_loadu_ps(left + i));
    const __m256i r = _mm256_cvtps_epi32(_mm256_loadu_ps(right + i));
    // Lanes of four: the packed words of unpacklo and unpackhi come out in order.
    const __m256i words =
        _mm256_packs_epi32(_mm256_unpacklo_epi32(l, r), _mm256_unpackhi_epi32(l, r));
    _mm256_storeu_si256(reinterpret_cast<__m256i*>(out + i * 2), words);
  }
  plain().pack(left + whole, right + whole, frames - whole, out + whole * 2);
}

}  // namespace

constexpr SoundKernels sound_kernels_avx2 = {unpack, resample, mix, pack};

#endif
