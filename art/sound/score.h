// A small notation for music. Time is counted in sixteenths, 16 to a bar.
//
// A melody is written in degrees of a scale, so that a tune can be played in any key or mode:
//
//     "1*3 3*3 5*2 6*4 -*4 | b7 1' ,5 #4"
//
// 1 to 7 is the degree. After it, ' is an octave up and , an octave down. Before it, b is a half
// tone down and # a half tone up. - is a rest. *3 is a length of three sixteenths; without it the
// last length continues. At the end, ! is an accent and ? a soft note. | ends a bar, which must be
// full.
//
// Chords are degrees of the major scale with a quality: "1", "2m", "57", "4M" (major seventh), "16"
// (sixth), "7d" (diminished), "b7".
//
// A pattern has one sign for each sixteenth and repeats over the chords: . is nothing, - holds the
// note before.
//
// A mistake in a score ends the program with a message that shows the position.
#pragma once

#include <array>
#include <string_view>
#include <vector>

namespace art::sound {

struct Note {
  double at, length;  // sixteenths
  int midi;
  double velocity;
};
using Line = std::vector<Note>;

struct Mode {
  std::array<int, 7> steps;
};
constexpr Mode kMajor = {{0, 2, 4, 5, 7, 9, 11}};
constexpr Mode kMixolydian = {{0, 2, 4, 5, 7, 9, 10}};
constexpr Mode kMinor = {{0, 2, 3, 5, 7, 8, 10}};
constexpr Mode kDorian = {{0, 2, 3, 5, 7, 9, 10}};

struct Chord {
  double at, length;         // sixteenths
  int root;                  // midi, in the octave of the key
  std::array<int, 4> tones;  // half tones above the root, in rising order
};
using Chords = std::vector<Chord>;

// tonic: the midi number of degree 1.
Line melody(std::string_view text, int tonic, const Mode& mode = kMajor);
Chords chords(std::string_view text, int tonic);

// Single notes: 1 3 5 7 are the chord's tones (7 is its fourth tone, the sixth in a sixth chord), 8
// the root an octave up, 9 the third above that. The root is in the octave from `low`.
Line bass_line(const Chords& over, std::string_view pattern, int low);

// Whole chords: x (X loud, o soft), each tone within half an octave of `centre`.
Line comp(const Chords& over, std::string_view pattern, int centre);

// Broken chords: 1 to 4 are the tones as `comp` would voice them, 5 to 8 the same an octave up.
Line arpeggio(const Chords& over, std::string_view pattern, int centre);

// Drums: x (X loud, o soft), for this many bars.
Line hits(std::string_view pattern, int bars);

Line transposed(Line line, int half_tones);
Line repeated(const Line& line, int bars, int times);
Line shifted(Line line, double sixteenths);

}  // namespace art::sound
