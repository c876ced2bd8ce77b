#include "art/sound/score.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>

namespace art::sound {

namespace {

constexpr double kPlain = 0.78, kLoud = 1.0, kSoft = 0.5;

[[noreturn]] void wrong(std::string_view text, size_t at, const char* why) {
  std::fprintf(stderr, "score: %s\n  %.*s\n  %*s\n", why, static_cast<int>(text.size()),
               text.data(), static_cast<int>(at) + 1, "^");
  std::exit(1);
}

// Shared by melodies and chords: signs, lengths, bars.
struct Reader {
  std::string_view text;
  size_t at = 0;
  double time = 0, length = 2;

  bool more() {
    for (; at < text.size() && (text[at] == ' ' || text[at] == '|'); at++)
      if (text[at] == '|' && std::fmod(time, 16) != 0) wrong(text, at, "this bar isn't full");
    if (at == text.size() && std::fmod(time, 16) != 0) wrong(text, at, "the last bar isn't full");
    return at < text.size();
  }
  bool take(char c) {
    if (at >= text.size() || text[at] != c) return false;
    at++;
    return true;
  }
  int degree() {
    if (at >= text.size() || text[at] < '1' || text[at] > '7')
      wrong(text, at, "a degree of 1 to 7");
    return text[at++] - '1';
  }
  void read_length() {
    if (!take('*')) return;
    char* end = nullptr;
    length = std::strtod(text.data() + at, &end);
    at = static_cast<size_t>(end - text.data());
    if (length <= 0) wrong(text, at, "a length above 0");
  }
};

void check_pattern(std::string_view pattern, std::string_view signs) {
  if (pattern.empty() || pattern.size() % 16) wrong(pattern, pattern.size(), "16 signs to a bar");
  for (size_t i = 0; i < pattern.size(); i++)
    if (signs.find(pattern[i]) == std::string_view::npos) wrong(pattern, i, "unknown sign");
}

const Chord& chord_at(const Chords& over, double at) {
  for (const Chord& chord : over)
    if (at >= chord.at && at < chord.at + chord.length) return chord;
  return over.back();
}

// Calls hit(chord, sign, at, length) for each sign of the repeated pattern except . and -; a note
// ends with its chord.
template <class F>
void each_hit(const Chords& over, std::string_view pattern, F&& hit) {
  const size_t total = static_cast<size_t>(over.back().at + over.back().length);
  for (size_t at = 0; at < total; at++) {
    const char sign = pattern[at % pattern.size()];
    if (sign == '.' || sign == '-') continue;
    const double time = static_cast<double>(at);
    const Chord& chord = chord_at(over, time);
    size_t end = at + 1;
    while (end < total && pattern[end % pattern.size()] == '-' &&
           static_cast<double>(end) < chord.at + chord.length)
      end++;
    hit(chord, sign, time, static_cast<double>(end - at));
  }
}

double velocity_of(char sign) {
  return sign == 'X' ? kLoud : sign == 'o' ? kSoft : kPlain;
}

std::array<int, 4> voicing(const Chord& chord, int centre) {
  std::array<int, 4> out;
  for (size_t i = 0; i < 4; i++) {
    const int up = ((chord.root + chord.tones[i] - (centre - 6)) % 12 + 12) % 12;
    out[i] = centre - 6 + up;
  }
  std::sort(out.begin(), out.end());
  return out;
}

std::array<int, 4> tones_of(Reader& in) {
  int third = 4, fifth = 7, top = 12;
  for (bool read = true; read;) {
    if (in.take('m'))
      third = 3;
    else if (in.take('7'))
      top = 10;
    else if (in.take('6'))
      top = 9;
    else if (in.take('M'))
      top = 11;
    else if (in.take('d'))
      third = 3, fifth = 6, top = 9;
    else
      read = false;
  }
  return {0, third, fifth, top};
}

}  // namespace

Line melody(std::string_view text, int tonic, const Mode& mode) {
  Line line;
  for (Reader in{text}; in.more();) {
    int midi = tonic;
    const bool rest = in.take('-');
    if (!rest) {
      for (bool read = true; read;) {
        if (in.take('b'))
          midi--;
        else if (in.take('#'))
          midi++;
        else if (in.take(','))
          midi -= 12;
        else
          read = false;
      }
      midi += mode.steps[static_cast<size_t>(in.degree())];
      while (in.take('\'')) midi += 12;
    }
    in.read_length();
    const double velocity = in.take('!') ? kLoud : in.take('?') ? kSoft : kPlain;
    if (in.at < text.size() && text[in.at] != ' ' && text[in.at] != '|')
      wrong(text, in.at, "unknown sign");
    if (!rest) line.push_back({in.time, in.length, midi, velocity});
    in.time += in.length;
  }
  return line;
}

Chords chords(std::string_view text, int tonic) {
  Chords out;
  Reader in{text};
  for (in.length = 16; in.more();) {
    int root = tonic;
    if (in.take('b')) root--;
    root += kMajor.steps[static_cast<size_t>(in.degree())];
    const std::array<int, 4> tones = tones_of(in);
    in.read_length();
    out.push_back({in.time, in.length, root, tones});
    in.time += in.length;
  }
  return out;
}

Line bass_line(const Chords& over, std::string_view pattern, int low) {
  check_pattern(pattern, ".-135789");
  Line line;
  each_hit(over, pattern, [&](const Chord& chord, char sign, double at, double length) {
    const int root = low + ((chord.root - low) % 12 + 12) % 12;
    const int up = sign == '8'   ? 12
                   : sign == '9' ? 12 + chord.tones[1]
                                 : chord.tones[static_cast<size_t>((sign - '1') / 2)];
    line.push_back({at, length, root + up, std::fmod(at, 8) == 0 ? 0.9 : kPlain});
  });
  return line;
}

Line comp(const Chords& over, std::string_view pattern, int centre) {
  check_pattern(pattern, ".-xXo");
  Line line;
  each_hit(over, pattern, [&](const Chord& chord, char sign, double at, double length) {
    int last = -1;
    for (int midi : voicing(chord, centre))
      if (midi != last) line.push_back({at, length, last = midi, velocity_of(sign)});
  });
  return line;
}

Line arpeggio(const Chords& over, std::string_view pattern, int centre) {
  check_pattern(pattern, ".-12345678");
  Line line;
  each_hit(over, pattern, [&](const Chord& chord, char sign, double at, double length) {
    const int tone = sign - '1';
    line.push_back({at, length,
                    voicing(chord, centre)[static_cast<size_t>(tone % 4)] + tone / 4 * 12,
                    std::fmod(at, 4) == 0 ? kPlain : 0.65});
  });
  return line;
}

Line hits(std::string_view pattern, int bars) {
  check_pattern(pattern, ".xXo");
  Line line;
  for (size_t i = 0; i < static_cast<size_t>(bars) * 16; i++) {
    const char sign = pattern[i % pattern.size()];
    if (sign != '.') line.push_back({static_cast<double>(i), 1, 60, velocity_of(sign)});
  }
  return line;
}

Line transposed(Line line, int half_tones) {
  for (Note& note : line) note.midi += half_tones;
  return line;
}

Line repeated(const Line& line, int bars, int times) {
  Line out;
  for (int i = 0; i < times; i++)
    for (Note note : line) {
      note.at += 16.0 * bars * i;
      out.push_back(note);
    }
  return out;
}

Line shifted(Line line, double sixteenths) {
  for (Note& note : line) note.at += sixteenths;
  return line;
}

}  // namespace art::sound
