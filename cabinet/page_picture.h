// The picture for the page, one JPEG after the other, on its own thread. A picture is taken only
// when somebody waits for one, so a slow browser gets fewer pictures, and never an old one.
#pragma once

#include <chrono>
#include <memory>
#include <string>

#include "cabinet/page_link.h"

struct PageFrame {
  long number = 0;  // starts at 1
  std::chrono::steady_clock::time_point taken;
  int width = 0, height = 0;
  std::string jpeg;
};

struct PagePicture;

// Starts the thread. `link` says which process is the game, and receives the reason if there is no
// picture.
PagePicture* page_picture_start(PageLink& link);

// Ends the thread. No call may still be waiting for a frame.
void page_picture_stop(PagePicture* picture);

// Waits at most `wait_ms` for a recent frame with another number than this; null if there was none.
// Any thread.
std::shared_ptr<const PageFrame> page_picture_next(PagePicture& picture, long number, int wait_ms);
