// Reads the TGA files of a list on a thread of its own while the main thread, the only one that may
// call GL, is busy with the others. It makes a start-up shorter by half a second.
#pragma once

#include <memory>

#include "gfx/panel.h"    // PanelName
#include "gfx/texture.h"  // TgaPicture

struct ReadAhead;

// Begins with the first of `count` names, which must outlive the reading.
std::shared_ptr<ReadAhead> read_ahead_start(const PanelName* names, int count);

// True if the picture has been read and can be taken without waiting.
bool read_ahead_ready(ReadAhead& reading, int index);

// Takes a TGA picture, each once and in the order of the list. Waits for it; without a thread it is
// read here.
TgaPicture read_ahead_take(ReadAhead& reading, int index);

// Ends the thread. All pictures have been taken.
void read_ahead_end(ReadAhead& reading);
