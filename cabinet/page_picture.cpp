#include "cabinet/page_picture.h"

#include <turbojpeg.h>

#include <chrono>
#include <condition_variable>
#include <thread>
#include <utility>

#include "cabinet/screen_grab.h"
#include "platform/mutex.h"

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

struct PagePicture {
  explicit PagePicture(PageLink& page_link) : link(page_link) {}
  PageLink& link;
  std::thread thread;
  Mutex mutex;
  std::condition_variable_any wanted;  // somebody waits, or `stopping`
  std::condition_variable_any taken;   // there is a new frame
  std::shared_ptr<const PageFrame> newest GUARDED_BY(mutex);
  int waiting GUARDED_BY(mutex) = 0;  // calls that wait for a frame
  bool stopping GUARDED_BY(mutex) = false;
};

namespace {

constexpr milliseconds FRAME_MS(33);   // no more than 30 a second
constexpr milliseconds RETRY_MS(200);  // after a failed attempt
constexpr int JPEG_QUALITY = 82;

// One thread needs only one compressor and one buffer, which grows as needed.
struct Compressor {
  tjhandle handle = tjInitCompress();
  unsigned char* bytes = nullptr;
  unsigned long capacity = 0;
  Compressor() = default;
  Compressor(const Compressor&) = delete;
  Compressor& operator=(const Compressor&) = delete;
  ~Compressor() {
    tjFree(bytes);
    tjDestroy(handle);
  }
};

std::shared_ptr<PageFrame> compress(Compressor& compressor, const ScreenPicture& picture) {
  unsigned long size = compressor.capacity;
  const int failed = tjCompress2(compressor.handle, picture.pixels, picture.width,
                                 picture.row_bytes, picture.height, TJPF_BGRX, &compressor.bytes,
                                 &size, TJSAMP_420, JPEG_QUALITY, TJFLAG_FASTDCT);
  if (failed != 0) return nullptr;
  if (size > compressor.capacity) compressor.capacity = size;
  auto frame = std::make_shared<PageFrame>();
  frame->width = picture.width;
  frame->height = picture.height;
  frame->jpeg.assign(reinterpret_cast<const char*>(compressor.bytes), size);
  return frame;
}

void tell_trouble(PageLink& link, const std::string& trouble) {
  const MutexLock lock(link.mutex);
  link.picture_trouble = trouble;
}

// Waits until somebody wants a frame, and not before `due`. False at the end.
bool wait_until_wanted(PagePicture& picture, Clock::time_point due) {
  const MutexLock lock(picture.mutex);
  while (!picture.stopping && picture.waiting == 0) picture.wanted.wait(picture.mutex);
  while (!picture.stopping && Clock::now() < due) picture.wanted.wait_until(picture.mutex, due);
  return !picture.stopping;
}

void take_frames(PagePicture& picture) {
  const std::unique_ptr<ScreenGrab, void (*)(ScreenGrab*)> grab(screen_grab_new(),
                                                                screen_grab_delete);
  Compressor compressor;
  Clock::time_point due = Clock::now();
  long number = 0;
  while (wait_until_wanted(picture, due)) {
    const Clock::time_point now = Clock::now();
    ScreenPicture screen;
    std::string trouble = screen_grab_take(*grab, picture.link.game_pid, screen);
    std::shared_ptr<PageFrame> frame;
    if (trouble.empty()) frame = compress(compressor, screen);
    if (trouble.empty() && !frame) trouble = tjGetErrorStr2(compressor.handle);
    tell_trouble(picture.link, trouble);
    due = now + (frame ? FRAME_MS : RETRY_MS);
    if (!frame) continue;
    frame->number = ++number;
    frame->taken = now;
    const MutexLock lock(picture.mutex);
    picture.newest = std::move(frame);
    picture.taken.notify_all();
  }
}

}  // namespace

PagePicture* page_picture_start(PageLink& link) {
  auto* picture = new PagePicture(link);
  picture->thread = std::thread([picture] { take_frames(*picture); });
  return picture;
}

void page_picture_stop(PagePicture* picture) {
  {
    const MutexLock lock(picture->mutex);
    picture->stopping = true;
    picture->wanted.notify_all();
    picture->taken.notify_all();
  }
  picture->thread.join();
  delete picture;
}

std::shared_ptr<const PageFrame> page_picture_next(PagePicture& picture, long number, int wait_ms) {
  const Clock::time_point begun = Clock::now();
  // If nobody watches, the newest frame is out of date.
  const auto is_newer = [&](const std::shared_ptr<const PageFrame>& newest) {
    return newest && newest->number != number && newest->taken >= begun - FRAME_MS;
  };
  const MutexLock lock(picture.mutex);
  ++picture.waiting;
  picture.wanted.notify_one();
  while (!picture.stopping && !is_newer(picture.newest)) {
    const auto result = picture.taken.wait_until(picture.mutex, begun + milliseconds(wait_ms));
    if (result == std::cv_status::timeout) break;
  }
  --picture.waiting;
  return is_newer(picture.newest) ? picture.newest : nullptr;
}
