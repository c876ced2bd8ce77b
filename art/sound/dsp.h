// The building blocks of all sounds: noise, oscillators, filters, envelopes. Everything runs at
// 44100 samples a second; times are in seconds, frequencies in hertz.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <numbers>
#include <vector>

namespace art::sound {

constexpr int kRate = 44100;
constexpr double kTau = 2 * std::numbers::pi;

using Signal = std::vector<float>;  // one channel

inline size_t frames_of(double seconds) {
  return static_cast<size_t>(std::lround(seconds * kRate));
}
inline double gain_of_db(double db) {
  return std::pow(10.0, db / 20);
}
inline double hz_of_midi(double midi) {
  return 440 * std::pow(2.0, (midi - 69) / 12);
}

// White noise, -1 to 1. The seed determines all of it, so a sound is always the same.
class Noise {
 public:
  explicit Noise(uint32_t seed) : state_(seed * 2654435761u + 0x9E3779B9u) {
    for (int i = 0; i < 4; i++) next();
  }
  double next() {
    state_ ^= state_ << 13;
    state_ ^= state_ >> 17;
    state_ ^= state_ << 5;
    return state_ / 2147483647.5 - 1;
  }
  double between(double low, double high) { return low + (next() + 1) / 2 * (high - low); }

 private:
  uint32_t state_;
};

// An oscillator without audible aliasing: the corners are rounded over one sample (polyBLEP).
class Oscillator {
 public:
  explicit Oscillator(double phase = 0) : phase_(phase) {}
  double sine(double hz) {
    step(hz);
    return std::sin(kTau * phase_);
  }
  double triangle(double hz) {
    step(hz);
    return 4 * std::abs(phase_ - 0.5) - 1;
  }
  double saw(double hz) {
    step(hz);
    return 2 * phase_ - 1 - corner(phase_);
  }
  // width: the share of the period that is high, 0 to 1; the mean is removed.
  double pulse(double hz, double width) {
    step(hz);
    double other = phase_ + 1 - width;
    other -= std::floor(other);
    return (phase_ < width ? 1 : -1) + corner(phase_) - corner(other) + 1 - 2 * width;
  }

 private:
  void step(double hz) {
    delta_ = hz / kRate;
    phase_ += delta_;
    phase_ -= std::floor(phase_);
  }
  double corner(double t) const {
    if (t < delta_) return t /= delta_, t + t - t * t - 1;
    if (t > 1 - delta_) return t = (t - 1) / delta_, t * t + t + t + 1;
    return 0;
  }
  double phase_, delta_ = 0;
};

// A state variable filter that can be swept at any speed; gives low, band and high at once.
class Filter {
 public:
  double low = 0, band = 0, high = 0;
  Filter() = default;
  Filter(double hz, double q) { set(hz, q); }
  void set(double hz, double q) {
    g_ = std::tan(std::numbers::pi * std::clamp(hz, 10.0, 0.45 * kRate) / kRate);
    k_ = 1 / q;
    a_ = 1 / (1 + g_ * (g_ + k_));
  }
  void step(double in) {
    const double v3 = in - b_;
    band = a_ * s_ + g_ * a_ * v3;
    low = b_ + g_ * band;
    s_ = 2 * band - s_;
    b_ = 2 * low - b_;
    high = in - k_ * band - low;
  }
  double lowpass(double in) { return step(in), low; }
  double bandpass(double in) { return step(in), band * k_; }  // 1 at its centre
  double highpass(double in) { return step(in), high; }

 private:
  double g_ = 0.1, k_ = 1, a_ = 1, s_ = 0, b_ = 0;
};

// From 1 down by 60 dB in `t60` seconds.
inline double decay(double t, double t60) {
  return std::exp(-6.9078 * t / t60);
}

// From 0 to 1 in `seconds`, smoothly.
inline double rise(double t, double seconds) {
  if (t >= seconds) return 1;
  return t <= 0 ? 0 : 0.5 - 0.5 * std::cos(std::numbers::pi * t / seconds);
}

// A held note: up in `attack`, down to `sustain` in about `fall`, and out within `release` after
// its length.
inline double held(double t, double length, double attack, double fall, double sustain,
                   double release) {
  const double body = rise(t, attack) * (sustain + (1 - sustain) * std::exp(-t / fall));
  return t < length ? body : body * (1 - rise(t - length, release));
}

inline double mix_of(double a, double b, double t) {
  return a + (b - a) * t;
}

// From a to b in equal musical steps, t from 0 to 1.
inline double glide(double a, double b, double t) {
  return a * std::pow(b / a, std::clamp(t, 0.0, 1.0));
}

// A signal of this many seconds, computed sample by sample from its time.
template <class F>
Signal fill(double seconds, F&& sample_at) {
  Signal out(frames_of(seconds));
  for (size_t i = 0; i < out.size(); i++)
    out[i] = static_cast<float>(sample_at(static_cast<double>(i) / kRate));
  return out;
}

inline void add(Signal& to, const Signal& from, double at_s, double gain) {
  const size_t at = frames_of(at_s);
  if (to.size() < at + from.size()) to.resize(at + from.size());
  for (size_t i = 0; i < from.size(); i++) to[at + i] += static_cast<float>(gain * from[i]);
}

}  // namespace art::sound
