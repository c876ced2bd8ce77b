// The cost of playlists: reading a long file, and a request for a sound during play.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

#include "platform/clock.h"
#include "platform/files.h"
#include "sound/bank.h"
#include "sound/jps.h"
#include "sound/playlist_parser.h"
#include "tests/playlist/waves.h"
#include "tests/temp_folder.h"

namespace {

constexpr const char* BANK = R"(sounds\mainpls.txt)";

void write_script(const TempFolder& folder, const std::string& script) {
  std::filesystem::create_directory(folder.file("sounds"));
  folder.write("sounds/mainpls.txt", script);
  files_use_roots(folder.path() + "/d", folder.path());
}

// 2,000 lines that name no wave file.
void parse_file(benchmark::State& state) {
  std::string script = "CONSTANT LOUD 200\n";
  for (int number = 0; number < 99; ++number) {
    script += "PLAYLIST " + std::to_string(number) + ", 'playlist" + std::to_string(number) +
              "', LOUD-10, 0xFFFF\n  LABEL 'again'\n";
    for (int i = 0; i < 17; ++i) script += "  [+0.25] SETVOL 0, LOUD + 5, 0.5 ; louder\n";
    script += "END\n";
  }
  const TempFolder folder;
  write_script(folder, script);
  for (auto _ : state) {
    int messages = 0;
    JpsBank* const bank = playlist_parse(BANK, &messages);
    if (messages > 0 || bank->command_count != 99 * 19) state.SkipWithError("not parsed");
    jps_bank_free(bank);
  }
}
BENCHMARK(parse_file)->Unit(benchmark::kMillisecond);

std::string looped(int number, const std::string& keyword, const std::string& file, int priority,
                   const std::string& mask) {
  const std::string name = std::to_string(number);
  return "PLAYLIST " + name + ", '" + name + "', " + std::to_string(priority) + ", " + mask +
         "\nSETVOL 0, 100, 0\nSETVOL 0, 200, 9\n" + keyword + " 0, '" + file + "', 0\nEND\n";
}

// Playlist "3" is a short sound, "1" a stream. Each request takes the oldest of 14 tracks that
// loop, beside two streams, while the mixing and the sound system's own threads run.
void request_a_sound(benchmark::State& state, const char* name) {
  setenv("SDL_AUDIODRIVER", "dummy", 1);
  const TempFolder folder;
  write_script(folder, looped(1, "PLAYS", "long.wav", 200, "0x8000") +
                           looped(2, "PLAYS", "long2.wav", 200, "0x4000") +
                           looped(3, "PLAY", "short.wav", 100, "0xFFFF"));
  folder.write("sounds/long.wav", flat_wave(20, 1000));
  folder.write("sounds/long2.wav", flat_wave(20, 1000));
  folder.write("sounds/short.wav", flat_wave(1, 1000, 22050));
  if (jps_init() != 0 || !jps_bank_load(BANK)) return state.SkipWithError("no sound");
  jps_bank_play_name("1");
  jps_bank_play_name("2");
  for (int i = 0; i < 14; ++i) jps_bank_play_name("3");
  std::vector<double> took_us;
  for (auto _ : state) {
    const auto start = std::chrono::steady_clock::now();
    const std::uint32_t tracks = jps_bank_play_name(name);
    const std::chrono::duration<double> took = std::chrono::steady_clock::now() - start;
    state.SetIterationTime(took.count());
    took_us.push_back(took.count() * 1e6);
    if (tracks == 0) state.SkipWithError("no track");
    clock_sleep_ms(1);
  }
  std::ranges::sort(took_us);
  state.counters["median_us"] = took_us[took_us.size() / 2];
  state.counters["worst_us"] = took_us.back();
  jps_shutdown();
}
BENCHMARK_CAPTURE(request_a_sound, whole, "3")->UseManualTime()->Iterations(5000);
BENCHMARK_CAPTURE(request_a_sound, stream, "1")->UseManualTime()->Iterations(2000);

}  // namespace

BENCHMARK_MAIN();
