#include "lab/progress.h"

#include <unistd.h>

#include <cmath>
#include <cstdio>
#include <utility>

namespace {

constexpr int BAR = 30;

std::string time_text(double seconds) {
  char text[32];
  const auto s = static_cast<int>(std::lround(seconds));
  if (s >= 3600) {
    std::snprintf(text, sizeof text, "%d:%02d:%02d", s / 3600, s / 60 % 60, s % 60);
  } else {
    std::snprintf(text, sizeof text, "%d:%02d", s / 60, s % 60);
  }
  return text;
}

}  // namespace

Progress::Progress(std::string what, bool quiet)
    : what_(std::move(what)),
      quiet_(quiet),
      terminal_(isatty(STDERR_FILENO) == 1),
      start_(Clock::now()),
      next_(start_) {}

Progress::~Progress() {
  if (!quiet_ && terminal_ && begun_ >= 0.0) std::fputc('\n', stderr);
}

void Progress::show(double done) {
  if (quiet_) return;
  const Clock::time_point now = Clock::now();
  if (begun_ < 0.0) begun_ = done;
  if (now < next_ && done < 1.0) return;
  next_ = now + (terminal_ ? std::chrono::milliseconds(200) : std::chrono::seconds(30));
  const double passed_s = std::chrono::duration<double>(now - start_).count();
  const double left_s = done > begun_ ? passed_s * (1.0 - done) / (done - begun_) : 0.0;
  const std::string left = done > begun_ ? time_text(left_s) + " left" : "";
  if (!terminal_) {
    std::fprintf(stderr, "%s: %.1f%%, %s\n", what_.c_str(), 100.0 * done, left.c_str());
    return;
  }
  const auto full = static_cast<std::size_t>(done * BAR);
  std::fprintf(stderr, "\r%s [%s%s] %5.1f%%  %-16s", what_.c_str(), std::string(full, '#').c_str(),
               std::string(BAR - full, '.').c_str(), 100.0 * done, left.c_str());
  std::fflush(stderr);
}
