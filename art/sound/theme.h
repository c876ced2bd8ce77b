// The tune that all the music is based on, in degrees, so that each piece can play it in its own
// key and mode: a frog that hops three times and looks round.
#pragma once

#include "art/sound/drums.h"
#include "art/sound/mallets.h"
#include "art/sound/song.h"
#include "art/sound/strings.h"
#include "art/sound/winds.h"

namespace art::sound {

// The question, the answer, and a bridge; four bars each, with the chords under them.
constexpr const char* kHop =
    "1*3 3*3 5*2 6*3 5*3 3*2 | 4*3 6*3 1'*2 7*2 6*2 5*4 |"
    "3*3 5*3 3*2 2*3 4*3 2*2 | 1*2 3*2 5*2 3*2 1*4 -*4 |";
constexpr const char* kHopChords = "1 | 4*8 57*8 | 1*8 57*8 | 1*16 |";

constexpr const char* kHome =
    "1*3 3*3 5*2 6*3 5*3 3*2 | 4*3 6*3 1'*2 2'*2 1'*2 6*4 |"
    "5*3 1'*3 5*2 4*3 2*3 ,7*2 | 1*3 5*3 1'*2! 1'*4! -*4 |";
constexpr const char* kHomeChords = "1 | 4*16 | 1*8 57*8 | 1*16 |";

constexpr const char* kFarBank =
    "6*4 6*2 7*2 1'*4 6*4 | 5*4 5*2 6*2 5*4 3*4 |"
    "4*4 4*2 5*2 6*4 1'*4 | 7*3 7*3 6*2 5*4 -*4 |";
constexpr const char* kFarBankChords = "6m | 1 | 4 | 57 |";

}  // namespace art::sound
