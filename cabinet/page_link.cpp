#include "cabinet/page_link.h"

#include <sys/eventfd.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <cstring>
#include <utility>

namespace {

constexpr int ANSWER_MS = 10'000;  // the cabinet answers at once, but the machine may be busy

void wake(const PageLink& link) {
  const std::uint64_t one = 1;
  // It fails only when it is readable anyway.
  [[maybe_unused]] const ssize_t n = write(link.wake, &one, sizeof one);
}

std::future<PageReply> put(PageLink& link, PageRequest::Kind kind, const std::string& page,
                           const std::string& text) REQUIRES(link.mutex) {
  link.requests.push_back({kind, page, text, {}});
  wake(link);
  return link.requests.back().reply.get_future();
}

}  // namespace

std::string page_link_open(PageLink& link) {
  link.wake = eventfd(0, EFD_NONBLOCK | EFD_CLOEXEC);
  return link.wake < 0 ? std::string("eventfd: ") + std::strerror(errno) : std::string();
}

void page_link_close(PageLink& link) {
  const MutexLock lock(link.mutex);
  link.closing = true;
  for (PageRequest& request : link.requests) request.reply.set_value({"the cabinet ends", {}});
  link.requests.clear();
  link.changed.notify_all();
}

void page_link_free(PageLink& link) {
  if (link.wake >= 0) close(link.wake);
  link.wake = -1;
}

PageReply page_link_ask(PageLink& link, PageRequest::Kind kind, const std::string& page,
                        const std::string& text) {
  std::future<PageReply> answer;
  {
    const MutexLock lock(link.mutex);
    if (link.closing) return {"the cabinet ends", {}};
    answer = put(link, kind, page, text);
  }
  if (answer.wait_for(std::chrono::milliseconds(ANSWER_MS)) != std::future_status::ready) {
    return {"the cabinet didn't answer in time; it may still do it", {}};
  }
  return answer.get();
}

std::vector<PageRequest> page_link_take(PageLink& link) {
  std::uint64_t count = 0;
  [[maybe_unused]] const ssize_t n = read(link.wake, &count, sizeof count);
  const MutexLock lock(link.mutex);
  return std::exchange(link.requests, {});
}

void page_link_publish(PageLink& link, std::string state) {
  const MutexLock lock(link.mutex);
  if (state == link.state) return;
  link.state = std::move(state);
  ++link.state_number;
  link.changed.notify_all();
}

std::string page_link_state(PageLink& link, long& number, int wait_ms) {
  const auto end = std::chrono::steady_clock::now() + std::chrono::milliseconds(wait_ms);
  const MutexLock lock(link.mutex);
  while (!link.closing && link.state_number <= number) {
    if (link.changed.wait_until(link.mutex, end) == std::cv_status::timeout) break;
  }
  if (link.closing || link.state_number <= number) return {};
  number = link.state_number;
  return link.state;
}

void page_link_enter(PageLink& link, const std::string& page) {
  const MutexLock lock(link.mutex);
  ++link.pages[page];
  wake(link);
}

void page_link_leave(PageLink& link, const std::string& page) {
  const MutexLock lock(link.mutex);
  if (--link.pages[page] > 0) return;
  link.pages.erase(page);
  if (!link.closing) put(link, PageRequest::GONE, page, {});
}

bool page_link_knows(PageLink& link, const std::string& page) {
  const MutexLock lock(link.mutex);
  return link.pages.count(page) > 0;
}

bool page_link_watched(PageLink& link) {
  const MutexLock lock(link.mutex);
  return !link.pages.empty();
}

bool page_link_closing(PageLink& link) {
  const MutexLock lock(link.mutex);
  return link.closing;
}
