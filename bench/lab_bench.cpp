// How many times real time the payout lab reaches on one core, and what each step of it costs.
//
// Each step's function is wrapped by the linker to note that it runs; a timer looks at the note a
// thousand times a second. So the tick is the real one, whole and in its own order.
#include <benchmark/benchmark.h>
#include <sys/time.h>

#include <csignal>
#include <cstdint>
#include <ctime>
#include <memory>

#include "books/audits.h"
#include "books/prefs.h"
#include "gfx/strip.h"
#include "io/jamma.h"
#include "lab/boot.h"
#include "lab/players.h"
#include "lab/sums.h"

namespace {

enum Step {
  STEP_OTHER,
  STEP_PLAYERS,
  STEP_TICK,
  STEP_SLOTS,
  STEP_FLIGHTS,
  STEP_RIVER,
  STEP_LEAD,
  STEP_LANES,
  STEP_BUTTERFLY,
  STEP_STATIONS,
  STEP_ATTRACT,
  STEP_VOICES,
  STEP_AUDITS,
  STEP_MONEY,
  STEP_LAMPS,
  STEP_REBOOT,
  STEP_SHOW,
  STEP_STORE,
  STEP_PRESSES,
  STEP_COUNT
};
constexpr const char* STEP_NAMES[STEP_COUNT] = {
    "other", "players",   "tick",     "slots",   "flights", "river",  "lead",
    "lanes", "butterfly", "stations", "attract", "voices",  "audits", "money",
    "lamps", "reboot",    "show",     "store",   "presses"};

volatile std::sig_atomic_t step_now = STEP_OTHER;
volatile std::sig_atomic_t seen[STEP_COUNT];

struct Note {
  explicit Note(Step step) : before(step_now) { step_now = step; }
  ~Note() { step_now = before; }
  Note(const Note&) = delete;
  Note& operator=(const Note&) = delete;
  std::sig_atomic_t before;
};

}  // namespace

// NOLINTBEGIN: the linker's names
extern "C" {
void __real__Z12players_stepRA2_Kb(const bool (&a)[2]);
void __wrap__Z12players_stepRA2_Kb(const bool (&a)[2]) {
  const Note note(STEP_PLAYERS);
  __real__Z12players_stepRA2_Kb(a);
}
bool __real__Z9game_tickl(std::int64_t a);
bool __wrap__Z9game_tickl(std::int64_t a) {
  const Note note(STEP_TICK);
  return __real__Z9game_tickl(a);
}
void __real__Z15gfx_slots_placeP4Lanem(Lane* a, std::uint64_t b);
void __wrap__Z15gfx_slots_placeP4Lanem(Lane* a, std::uint64_t b) {
  const Note note(STEP_SLOTS);
  __real__Z15gfx_slots_placeP4Lanem(a, b);
}
void __real__Z12flights_stepR9AwardsSum(AwardsSum& a);
void __wrap__Z12flights_stepR9AwardsSum(AwardsSum& a) {
  const Note note(STEP_FLIGHTS);
  __real__Z12flights_stepR9AwardsSum(a);
}
void __real__Z16river_speed_stepv();
void __wrap__Z16river_speed_stepv() {
  const Note note(STEP_RIVER);
  __real__Z16river_speed_stepv();
}
void __real__Z16lead_lane_updatev();
void __wrap__Z16lead_lane_updatev() {
  const Note note(STEP_LEAD);
  __real__Z16lead_lane_updatev();
}
void __real__Z11lane_updatei(int a);
void __wrap__Z11lane_updatei(int a) {
  const Note note(STEP_LANES);
  __real__Z11lane_updatei(a);
}
void __real__Z16butterfly_updatev();
void __wrap__Z16butterfly_updatev() {
  const Note note(STEP_BUTTERFLY);
  __real__Z16butterfly_updatev();
}
void __real__Z14station_updatei(int a);
void __wrap__Z14station_updatei(int a) {
  const Note note(STEP_STATIONS);
  __real__Z14station_updatei(a);
}
void __real__Z19attract_volume_stepv();
void __wrap__Z19attract_volume_stepv() {
  const Note note(STEP_ATTRACT);
  __real__Z19attract_volume_stepv();
}
void __real__Z11voices_stepv();
void __wrap__Z11voices_stepv() {
  const Note note(STEP_VOICES);
  __real__Z11voices_stepv();
}
void __real__Z12attract_stepv();
void __wrap__Z12attract_stepv() {
  const Note note(STEP_ATTRACT);
  __real__Z12attract_stepv();
}
void __real__Z11audits_tickRK10AuditsTick(const AuditsTick& a);
void __wrap__Z11audits_tickRK10AuditsTick(const AuditsTick& a) {
  const Note note(STEP_AUDITS);
  __real__Z11audits_tickRK10AuditsTick(a);
}
void __real__Z10coins_takei(int a);
void __wrap__Z10coins_takei(int a) {
  const Note note(STEP_MONEY);
  __real__Z10coins_takei(a);
}
void __real__Z10start_takei(int a);
void __wrap__Z10start_takei(int a) {
  const Note note(STEP_MONEY);
  __real__Z10start_takei(a);
}
void __real__Z12tickets_pollv();
void __wrap__Z12tickets_pollv() {
  const Note note(STEP_MONEY);
  __real__Z12tickets_pollv();
}
void __real__Z12lamps_updatev();
void __wrap__Z12lamps_updatev() {
  const Note note(STEP_LAMPS);
  __real__Z12lamps_updatev();
}
bool __real__Z20periodic_reboot_stepv();
bool __wrap__Z20periodic_reboot_stepv() {
  const Note note(STEP_REBOOT);
  return __real__Z20periodic_reboot_stepv();
}
void __real__Z13win_show_stepv();
void __wrap__Z13win_show_stepv() {
  const Note note(STEP_SHOW);
  __real__Z13win_show_stepv();
}
void __real__Z11audits_savev();
void __wrap__Z11audits_savev() {
  const Note note(STEP_STORE);
  __real__Z11audits_savev();
}
void __real__Z19jamma_presses_clear10JammaPress(JammaPress a);
void __wrap__Z19jamma_presses_clear10JammaPress(JammaPress a) {
  const Note note(STEP_PRESSES);
  __real__Z19jamma_presses_clear10JammaPress(a);
}
}
// NOLINTEND

namespace {

void on_timer(int /*signal*/) {
  seen[step_now] = seen[step_now] + 1;
}

void timer_set(int every_us) {
  std::signal(SIGPROF, on_timer);
  const itimerval timer{{0, every_us}, {0, every_us}};
  setitimer(ITIMER_PROF, &timer, nullptr);
}

double processor_s() {
  timespec time{};
  clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
  return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) * 1e-9;
}

// Both sides play 250 frogs each, again and again. Counters: game time for processor time, frogs a
// second, and the part of the time that each step takes, in percent.
void boots(benchmark::State& state) {
  prefs_reset();
  PlayerSettings player;
  player.kind = static_cast<PlayerKind>(state.range(0));
  state.SetLabel(player_names[player.kind]);
  const auto sums = std::make_unique<Sums>();
  for (auto& each : seen) each = 0;
  const double begun_s = processor_s();
  timer_set(1000);
  std::int64_t number = 0;
  for (auto _ : state) boot_play({boot_seed(1, number++), 250, player}, *sums);
  timer_set(0);
  const double took_s = processor_s() - begun_s;
  state.counters["times_real_time"] = static_cast<double>(sums->game_ms) / 1000.0 / took_s;
  state.counters["frogs_a_second"] = static_cast<double>(sums_frogs(*sums)) / took_s;
  double all = 0.0;
  for (const auto& each : seen) all += each;
  for (int step = 0; step < STEP_COUNT; ++step) {
    if (seen[step] > 0) state.counters[STEP_NAMES[step]] = 100.0 * seen[step] / all;
  }
}
BENCHMARK(boots)->DenseRange(0, PLAYER_KINDS - 1)->Unit(benchmark::kMillisecond)->MinTime(3.0);

}  // namespace

BENCHMARK_MAIN();
