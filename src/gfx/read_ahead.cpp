#include "gfx/read_ahead.h"

#include <condition_variable>
#include <cstddef>
#include <utility>
#include <vector>

#include "platform/mutex.h"
#include "platform/thread.h"

// How far the reader may be ahead, in bytes of pixels that nobody has taken yet.
static constexpr std::size_t MOST_AHEAD = std::size_t{128} << 20;
static constexpr int JOIN_BOUND_MS = 10000;

struct ReadAhead {
  const PanelName* names;
  int count;
  std::shared_ptr<Thread> thread;

  Mutex mutex;
  std::condition_variable_any moved;
  std::vector<TgaPicture> pictures GUARDED_BY(mutex);
  std::vector<char> ready GUARDED_BY(mutex);
  std::size_t held GUARDED_BY(mutex) = 0;  // bytes
};

namespace {

void read_all(const Thread& /*self*/, void* context) {
  ReadAhead& reading = *static_cast<ReadAhead*>(context);
  for (int i = 0; i < reading.count; ++i) {
    if (gfx_picture_kind(reading.names[i]) != PICTURE_TGA) continue;
    {
      const MutexLock lock(reading.mutex);
      while (reading.held >= MOST_AHEAD) reading.moved.wait(reading.mutex);
    }
    TgaPicture picture = tga_picture_read(reading.names[i]);
    const MutexLock lock(reading.mutex);
    reading.held += picture.image.pixels.size();
    reading.pictures[i] = std::move(picture);
    reading.ready[i] = 1;
    reading.moved.notify_all();
  }
}

}  // namespace

std::shared_ptr<ReadAhead> read_ahead_start(const PanelName* names, int count) {
  auto reading = std::make_shared<ReadAhead>();
  reading->names = names;
  reading->count = count;
  {
    const MutexLock lock(reading->mutex);
    reading->pictures.resize(count);
    reading->ready.resize(count);
  }
  reading->thread = thread_start("pictures", THREAD_PRIORITY_NORMAL, read_all, reading.get());
  return reading;
}

bool read_ahead_ready(ReadAhead& reading, int index) {
  const MutexLock lock(reading.mutex);
  return reading.ready[index] != 0;
}

TgaPicture read_ahead_take(ReadAhead& reading, int index) {
  if (reading.thread == nullptr) return tga_picture_read(reading.names[index]);
  const MutexLock lock(reading.mutex);
  while (reading.ready[index] == 0) reading.moved.wait(reading.mutex);
  TgaPicture picture = std::move(reading.pictures[index]);
  reading.held -= picture.image.pixels.size();
  reading.moved.notify_all();
  return picture;
}

void read_ahead_end(ReadAhead& reading) {
  if (reading.thread != nullptr) thread_join(*reading.thread, JOIN_BOUND_MS);
}
