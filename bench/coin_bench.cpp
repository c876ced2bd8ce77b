// The delay of a coin through the real threads: from the last byte of its frame on the wire to the
// press that the game may take, and to the books on disk, as percentiles.
#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <random>
#include <string>
#include <thread>
#include <vector>

#include "books/audits.h"
#include "books/prefs.h"
#include "frame/game_clock.h"
#include "frame/tick.h"
#include "io/jamma.h"
#include "platform/clock.h"
#include "platform/environment.h"
#include "platform/files.h"
#include "platform/thread.h"
#include "playfield/playfield.h"
#include "tests/io_wire/board.h"
#include "tests/plain_sheets.h"
#include "tests/temp_folder.h"

namespace {

using Clock = std::chrono::steady_clock;
constexpr int COINS = 1000;
constexpr auto LOST_AFTER = std::chrono::seconds(2);

double ms_since(Clock::time_point begun) {
  return std::chrono::duration<double, std::milli>(Clock::now() - begun).count();
}

void report(const char* what, std::vector<double>& took_ms) {
  std::ranges::sort(took_ms);
  const auto at = [&](double part) {
    return took_ms[static_cast<std::size_t>(part * static_cast<double>(took_ms.size() - 1))];
  };
  std::printf("%-24s %4zu coins   median %6.2f ms   p99 %6.2f ms   worst %6.2f ms\n", what,
              took_ms.size(), at(0.5), at(0.99), took_ms.back());
}

// A coin at a random moment of the tick: the time from the frame that ends the press until
// `arrived`. -1 if it never arrives.
template <typename Arrived>
double coin_timed(Board& board, std::mt19937& random, Arrived arrived) {
  std::this_thread::sleep_for(std::chrono::microseconds(15000 + random() % 20000));
  board.coin_edge();
  std::this_thread::sleep_for(std::chrono::milliseconds(15));
  const auto begun = Clock::now();
  board.coin_edge();
  while (!arrived()) {
    if (Clock::now() - begun > LOST_AFTER) return -1;
    std::this_thread::sleep_for(std::chrono::microseconds(50));
  }
  return ms_since(begun);
}

std::int32_t coins_on_disk(const std::string& path) {
  std::int32_t count = -1;
  const int fd = open(path.c_str(), O_RDONLY | O_CLOEXEC);
  if (fd < 0) return -1;
  constexpr off_t PLACE = 4 + AUDIT_COIN_DROPS * sizeof(AuditRow) + offsetof(AuditRow, count);
  if (pread(fd, &count, sizeof count, PLACE) != sizeof count) count = -1;
  close(fd);
  return count;
}

// The game's thread without a scene.
void game_body(const Thread& self, void* /*context*/) {
  game_begin();
  while (!thread_stop_requested(self)) {
    if (game_tick_due(clock_ms())) game_tick(clock_ms());
    clock_sleep_ms(1);
  }
}

void measure_pending(Board& board, std::mt19937& random) {
  std::vector<double> took_ms;
  for (int i = 0; i < COINS; ++i) {
    jamma_presses_clear(PRESS_C1);
    const double ms = coin_timed(board, random, [] { return jamma_presses_pending(PRESS_C1) > 0; });
    if (ms >= 0) took_ms.push_back(ms);
  }
  report("byte to pending", took_ms);
}

void measure_disk(Board& board, std::mt19937& random, const std::string& audits_path) {
  std::vector<double> took_ms;
  const auto game = thread_start("game", THREAD_PRIORITY_NORMAL, game_body, nullptr);
  std::this_thread::sleep_for(std::chrono::milliseconds(100));
  for (int i = 0; i < COINS; ++i) {
    const std::int32_t before = coins_on_disk(audits_path);
    const double ms =
        coin_timed(board, random, [&] { return coins_on_disk(audits_path) > before; });
    if (ms >= 0) took_ms.push_back(ms);
  }
  report("byte to coin on disk", took_ms);
  thread_request_stop(*game);
  thread_join(*game, 5000);
}

void measure_store() {
  std::vector<double> took_ms;
  for (int i = 0; i < 300; ++i) {
    const auto begun = Clock::now();
    audits_save();
    took_ms.push_back(ms_since(begun));
  }
  report("a store of the books", took_ms);
}

}  // namespace

int main(int argc, char** argv) {
  // The disk is that of the folder named, or of the temporary folder.
  if (argc > 1) setenv("TMPDIR", argv[1], 1);
  const TempFolder drive;
  files_use_roots(drive.path(), drive.path());
  Board board;
  environment.com[0] = board.path();
  prefs_load();
  audits_load();
  plain_sheets();
  playfield_reset();
  if (JammaInit() != 0) return 1;
  std::this_thread::sleep_for(std::chrono::milliseconds(200));
  std::mt19937 random(1);
  measure_store();
  measure_pending(board, random);
  measure_disk(board, random, drive.file("audits"));
  JammaShutdown();
  return 0;
}
