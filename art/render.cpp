#include "art/render.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <mutex>
#include <thread>

namespace art {

namespace fs = std::filesystem;

namespace {

// What the stamps hold: a hash of the running program. Any change of a drawer changes it.
std::string program_stamp() {
  std::ifstream in("/proc/self/exe", std::ios::binary);
  uint64_t hash = 14695981039346656037ull;
  char block[65536];
  while (in.read(block, sizeof block), in.gcount() > 0)
    for (std::streamsize i = 0; i < in.gcount(); i++)
      hash = (hash ^ static_cast<uint8_t>(block[i])) * 1099511628211ull;
  char text[32];
  std::snprintf(text, sizeof text, "%016llx", static_cast<unsigned long long>(hash));
  return text;
}

fs::path stamp_path(const fs::path& outdir, const CatalogueRow& row) {
  std::string name = row.name;
  std::replace(name.begin(), name.end(), '/', '_');
  return outdir / ".art" / name;
}

bool up_to_date(const fs::path& outdir, const CatalogueRow& row, const std::string& stamp) {
  std::error_code error;
  if (!fs::exists(outdir / "images" / row.name, error)) return false;
  std::ifstream in(stamp_path(outdir, row));
  std::string found;
  return in >> found && found == stamp;
}

// To a temporary beside it first: a picture that is there is whole.
bool write_picture(const fs::path& outdir, const CatalogueRow& row, const std::string& stamp) {
  Picture picture = catalogue_render(row);
  fs::path path = outdir / "images" / row.name, part = path;
  part += ".part";
  bool good = std::strstr(row.name, ".png")   ? picture_write_png(picture, part)
              : std::strstr(row.name, ".bmp") ? picture_write_bmp(picture, part)
                                              : picture_write_tga(picture, part);
  std::error_code error;
  if (good) fs::rename(part, path, error);
  if (!good || error) {
    fs::remove(part, error);
    return false;
  }
  std::ofstream out(stamp_path(outdir, row));
  out << stamp << "\n";
  return static_cast<bool>(out.flush());
}

}  // namespace

bool render_files(const std::string& outdir_name, const std::vector<const CatalogueRow*>& rows,
                  bool again, FILE* log) {
  using Clock = std::chrono::steady_clock;
  const fs::path outdir = outdir_name;
  const std::string stamp = program_stamp();
  std::error_code error;
  fs::create_directories(outdir / "images" / "fonts", error);
  fs::create_directories(outdir / ".art", error);
  std::vector<const CatalogueRow*> due;
  for (const CatalogueRow* row : rows)
    if (again || !up_to_date(outdir, *row, stamp)) due.push_back(row);

  std::atomic<size_t> next{0}, done{0};
  std::atomic<bool> good{true};
  std::mutex log_mutex;
  auto work = [&] {
    for (size_t i; (i = next++) < due.size();) {
      auto start = Clock::now();
      bool written = write_picture(outdir, *due[i], stamp);
      if (!written) good = false;
      std::lock_guard<std::mutex> lock(log_mutex);
      size_t n = ++done;
      if (log) {
        double s = std::chrono::duration<double>(Clock::now() - start).count();
        std::fprintf(log, "[%3zu/%zu] %-28s %6.2f s%s\n", n, due.size(), due[i]->name, s,
                     written ? "" : "  FAILED");
        std::fflush(log);
      }
    }
  };
  unsigned count = std::clamp(std::thread::hardware_concurrency(), 1u, 8u);
  std::vector<std::thread> threads;
  for (unsigned i = 1; i < count && i < due.size(); i++) threads.emplace_back(work);
  work();
  for (std::thread& t : threads) t.join();
  if (log)
    std::fprintf(log, "pictures: %zu drawn, %zu up to date\n", due.size(),
                 rows.size() - due.size());
  return good;
}

}  // namespace art
