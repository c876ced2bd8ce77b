#include "art/render_jobs.h"

#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <chrono>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <mutex>
#include <set>
#include <system_error>
#include <thread>

namespace art {

namespace fs = std::filesystem;

namespace {

using Clock = std::chrono::steady_clock;

double seconds_since(Clock::time_point then) {
  return std::chrono::duration<double>(Clock::now() - then).count();
}

fs::path stamp_path(const fs::path& outdir, const RenderJob& job) {
  std::string name = job.file;
  std::replace(name.begin(), name.end(), '/', '_');
  return outdir / ".art" / name;
}

bool up_to_date(const fs::path& outdir, const RenderJob& job) {
  std::error_code error;
  if (!fs::exists(outdir / job.file, error)) return false;
  std::ifstream in(stamp_path(outdir, job));
  std::string found;
  return in >> found && found == job.key;
}

bool write_file(const fs::path& outdir, const RenderJob& job) {
  fs::path path = outdir / job.file, part = path;
  part += ".part";
  std::error_code error;
  bool good = job.write(part);
  if (good) fs::rename(part, path, error);
  if (!good || error) {
    fs::remove(part, error);
    return false;
  }
  std::ofstream out(stamp_path(outdir, job));
  out << job.key << "\n";
  return static_cast<bool>(out.flush());
}

// Checks the target folders, so that a wrong one is reported once and not for each file.
bool make_folders(const fs::path& outdir, const std::vector<RenderJob>& jobs) {
  std::set<fs::path> folders = {outdir / ".art"};
  for (const RenderJob& job : jobs) folders.insert((outdir / job.file).parent_path());
  for (const fs::path& folder : folders) {
    std::error_code error;
    fs::create_directories(folder, error);
    if (!error && euidaccess(folder.c_str(), W_OK | X_OK) != 0)
      error.assign(errno, std::generic_category());
    if (!error) continue;
    std::fprintf(stderr, "%s: %s\n", folder.c_str(), error.message().c_str());
    return false;
  }
  return true;
}

// A bar on a terminal. Elsewhere only what fails has a line.
class Progress {
 public:
  Progress(FILE* log, size_t total)
      : log_(log), total_(total), bar_(log && isatty(fileno(log)) == 1) {}

  void say(const char* name, bool good) {
    std::lock_guard<std::mutex> lock(mutex_);
    done_++;
    if (!log_) return;
    if (bar_) {
      char bar[31] = {};
      std::memset(bar, '.', 30);
      std::memset(bar, '#', done_ * 30 / total_);
      std::fprintf(log_, "\r[%s] %3zu/%zu %-32.32s", bar, done_, total_, name);
      if (!good) std::fprintf(log_, " FAILED\n");
      if (done_ == total_) std::fprintf(log_, "\r%78s\r", "");
    } else if (!good) {
      std::fprintf(log_, "%s FAILED\n", name);
    }
    std::fflush(log_);
  }

 private:
  std::mutex mutex_;
  FILE* log_;
  size_t total_, done_ = 0;
  bool bar_;
};

}  // namespace

bool render_jobs(const std::string& outdir_name, std::vector<RenderJob> jobs, bool again,
                 const char* what, FILE* log) {
  const fs::path outdir = outdir_name;
  const auto start = Clock::now();
  const size_t all = jobs.size();
  if (!again) std::erase_if(jobs, [&](const RenderJob& job) { return up_to_date(outdir, job); });
  if (!jobs.empty() && !make_folders(outdir, jobs)) return false;
  std::sort(jobs.begin(), jobs.end(),
            [](const RenderJob& a, const RenderJob& b) { return a.cost > b.cost; });

  std::atomic<size_t> next{0};
  std::atomic<bool> good{true};
  Progress progress(log, jobs.size());
  auto work = [&] {
    for (size_t i; (i = next++) < jobs.size();) {
      bool written = write_file(outdir, jobs[i]);
      if (!written) good = false;
      progress.say(jobs[i].file.c_str(), written);
    }
  };
  unsigned count = std::clamp(std::thread::hardware_concurrency(), 1u, 8u);
  std::vector<std::thread> threads;
  for (unsigned i = 1; i < count && i < jobs.size(); i++) threads.emplace_back(work);
  work();
  for (std::thread& t : threads) t.join();
  if (log)
    std::fprintf(log, "%s: %zu rendered, %zu up to date, %.1f s\n", what, jobs.size(),
                 all - jobs.size(), seconds_since(start));
  return good;
}

}  // namespace art
