// The picture for the page, JPEG by JPEG, on a thread of its own. It is taken only when somebody
// waits for one, so whoever is slow gets fewer, and never an old one.
#pragma once

#include <chrono>
#include <memory>
#include <string>

#include "cabinet/page_link.h"

struct PageFrame {
  long number = 0;  // counted from 1
  std::chrono::steady_clock::time_point taken;
  int width = 0, height = 0;
  std::string jpeg;
};

struct PagePicture;

// Starts the thread. `link` says which process is the game, and is told why there is no picture.
PagePicture* page_picture_start(PageLink& link);

// Ends it. Nobody may wait for a frame any more.
void page_picture_stop(PagePicture* picture);

// Waits for a frame that isn't the one with this number, taken a moment ago or later, at most
// `wait_ms`; null if there was none. Any thread.
std::shared_ptr<const PageFrame> page_picture_next(PagePicture& picture, long number, int wait_ms);
