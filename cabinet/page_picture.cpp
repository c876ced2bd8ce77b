#include "cabinet/page_picture.h"

#include <turbojpeg.h>

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <thread>
#include <utility>

#include "cabinet/screen_grab.h"

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

struct PagePicture {
  explicit PagePicture(PageLink& page_link) : link(page_link) {}
  PageLink& link;
  std::thread thread;
  std::mutex mutex;
  std::condition_variable wanted;  // somebody waits, or `stopping`
  std::condition_variable taken;   // there is a new frame
  std::shared_ptr<const PageFrame> newest;
  int waiting = 0;  // calls that wait for a frame
  bool stopping = false;
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
  const std::lock_guard lock(link.mutex);
  link.picture_trouble = trouble;
}

void take_frames(PagePicture& picture) {
  const std::unique_ptr<ScreenGrab, void (*)(ScreenGrab*)> grab(screen_grab_new(),
                                                                screen_grab_delete);
  Compressor compressor;
  Clock::time_point due = Clock::now();
  long number = 0;
  std::unique_lock lock(picture.mutex);
  for (;;) {
    picture.wanted.wait(lock, [&] { return picture.stopping || picture.waiting > 0; });
    picture.wanted.wait_until(lock, due, [&] { return picture.stopping; });
    if (picture.stopping) return;
    lock.unlock();
    const Clock::time_point now = Clock::now();
    ScreenPicture screen;
    std::string trouble = screen_grab_take(*grab, picture.link.game_pid, screen);
    std::shared_ptr<PageFrame> frame;
    if (trouble.empty()) frame = compress(compressor, screen);
    if (trouble.empty() && !frame) trouble = tjGetErrorStr2(compressor.handle);
    tell_trouble(picture.link, trouble);
    lock.lock();
    due = now + (frame ? FRAME_MS : RETRY_MS);
    if (!frame) continue;
    frame->number = ++number;
    frame->taken = now;
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
    const std::lock_guard lock(picture->mutex);
    picture->stopping = true;
    picture->wanted.notify_all();
    picture->taken.notify_all();
  }
  picture->thread.join();
  delete picture;
}

std::shared_ptr<const PageFrame> page_picture_next(PagePicture& picture, long number, int wait_ms) {
  std::unique_lock lock(picture.mutex);
  // If nobody watches, the newest frame is out of date.
  const Clock::time_point oldest = Clock::now() - FRAME_MS;
  const auto is_newer = [&] {
    const auto& newest = picture.newest;
    return newest && newest->number != number && newest->taken >= oldest;
  };
  ++picture.waiting;
  picture.wanted.notify_one();
  picture.taken.wait_for(lock, milliseconds(wait_ms),
                         [&] { return picture.stopping || is_newer(); });
  --picture.waiting;
  return is_newer() ? picture.newest : nullptr;
}
