#include "art/sound/song.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <string_view>
#include <vector>

#include "art/sound/reverb.h"

namespace art::sound {

namespace {

// A loop's note that goes past the end continues at the start.
void mix_in(Song& song, const Signal& note, size_t at, const Place& place) {
  const double angle = (place.pan + 1) * std::numbers::pi / 4, gain = gain_of_db(place.db);
  const auto left = static_cast<float>(gain * std::cos(angle));
  const auto right = static_cast<float>(gain * std::sin(angle));
  const auto send = static_cast<float>(gain * place.send);
  for (size_t i = 0, to = at; i < note.size(); i++, to++) {
    if (to >= song.left.size()) {
      if (!song.feel.loop) return;
      to = 0;
    }
    song.left[to] += left * note[i];
    song.right[to] += right * note[i];
    song.send[to] += send * note[i];
  }
}

// Turns down loud parts, slowly enough to keep the beat alive.
class Glue {
 public:
  explicit Glue(double drive) : drive_(drive) {}
  void step(double& left, double& right) {
    const double level = std::max(std::abs(left), std::abs(right));
    const double speed = level > seen_ ? 0.010 : 0.160;
    seen_ += (level - seen_) * (1 - std::exp(-1 / (speed * kRate)));
    constexpr double kThreshold = 0.25;
    const double gain = seen_ > kThreshold ? std::pow(seen_ / kThreshold, -0.4) : 1;
    left = std::tanh(left * gain * drive_);
    right = std::tanh(right * gain * drive_);
  }

 private:
  double drive_, seen_ = 0;
};

// For small speakers in a loud room: lifts the range above the voice.
class Brightness {
 public:
  double step(double x) {
    shelf_.step(x);
    return x + 0.55 * shelf_.high;
  }

 private:
  Filter shelf_{3200, 0.6};
};

double peak_of(const Song& song) {
  float peak = 1e-9f;
  for (size_t i = 0; i < song.left.size(); i++)
    peak = std::max({peak, std::abs(song.left[i]), std::abs(song.right[i])});
  return peak;
}

}  // namespace

Song::Song(const Feel& how, int bars) : feel(how) {
  const double seconds = bars * 240.0 / feel.bpm + (feel.loop ? 0 : feel.tail_s);
  left.resize(frames_of(seconds));
  right.resize(left.size());
  send.resize(left.size());
}

double Song::seconds_at(double sixteenths) const {
  const double pair = 2.0 * feel.swing_unit, start = std::floor(sixteenths / pair) * pair;
  const double in = (sixteenths - start) / pair;
  const double swung =
      in < 0.5 ? in * 2 * feel.swing : feel.swing + (in - 0.5) * 2 * (1 - feel.swing);
  return (start + swung * pair) * 15 / feel.bpm;
}

void play(Song& song, Instrument instrument, const Place& place, const Line& line, int bar) {
  for (size_t i = 0; i < line.size(); i++) {
    const Note& note = line[i];
    const auto seed =
        static_cast<uint32_t>(i * 131 + static_cast<size_t>(note.midi) * 17 + 7 * bar);
    Noise uneven(seed);
    const double start = song.seconds_at(16.0 * bar + note.at);
    const double end = song.seconds_at(16.0 * bar + note.at + note.length);
    const double force = std::clamp(note.velocity * uneven.between(0.94, 1.06), 0.05, 1.0);
    const double late = uneven.between(0, 0.005);
    mix_in(song, instrument({hz_of_midi(note.midi), (end - start) * place.gate, force, seed}),
           frames_of(start + late), place);
  }
}

void beat(Song& song, Instrument drum, const Place& place, std::string_view pattern, int bar,
          int bars, double hz) {
  for (const Note& note : hits(pattern, bars)) {
    const auto seed = static_cast<uint32_t>(note.at * 37 + 11 * bar + hz);
    Noise uneven(seed);
    const double force = std::clamp(note.velocity * uneven.between(0.93, 1.07), 0.05, 1.0);
    const double start = song.seconds_at(16.0 * bar + note.at) + uneven.between(0, 0.003);
    mix_in(song, drum({hz, 0.1, force, seed}), frames_of(start), place);
  }
}

Wave mix_down(const Song& song, double wet, double drive) {
  Reverb reverb(0.42);
  Glue glue(drive);
  Filter rumble_left(32, 0.7), rumble_right(32, 0.7);
  Brightness bright_left, bright_right;
  const double level = 0.9 / peak_of(song);
  const size_t frames = song.left.size();
  Wave out{2, std::vector<float>(2 * frames)};
  // A loop is processed twice: the second time, room and filters include its end.
  for (int pass = song.feel.loop ? 0 : 1; pass < 2; pass++)
    for (size_t i = 0; i < frames; i++) {
      double room_left, room_right;
      reverb.step(song.send[i], room_left, room_right);
      double l = bright_left.step(rumble_left.highpass(level * (song.left[i] + wet * room_left)));
      double r =
          bright_right.step(rumble_right.highpass(level * (song.right[i] + wet * room_right)));
      glue.step(l, r);
      out.samples[2 * i] = static_cast<float>(l);
      out.samples[2 * i + 1] = static_cast<float>(r);
    }
  return out;
}

}  // namespace art::sound
