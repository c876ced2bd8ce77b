#include "lab/players.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "books/audits.h"
#include "books/prefs.h"
#include "lab/board.h"
#include "lab/expert.h"
#include "lab/flights.h"  // flight_of
#include "lab/screen.h"
#include "playfield/frog_queue.h"  // frog_ready

struct Player {
  bool waiting;             // its frog is ready, and the player has begun to wait
  std::int64_t press_at;    // tick of the press, NEVER while it isn't known
  std::int64_t give_up_at;  // tick at which it presses in any case
  Expert expert;
};

namespace {

constexpr JammaPress START[SIDE_COUNT] = {PRESS_P1S, PRESS_P2S};
constexpr JammaPress COIN[SIDE_COUNT] = {PRESS_C1, PRESS_C2};
constexpr std::int64_t NEVER = INT64_MAX;
constexpr int FIRST_LOG_LANE = LANE_MIDDLE_BANK - 1;
// From a press to the frog's first moment on the first log: seven hops and six rests.
constexpr int TICKS_TO_FIRST_LOG = 13 * HOP_TICKS;
constexpr float FIRST_LOG_SPEED = 2.3F;  // as players are used to it, pixels per tick
constexpr int LOOK_EVERY_TICKS = 16;

struct Players {
  PlayerSettings settings;
  std::uint64_t chance;
  std::int64_t tick;
  Player sides[SIDE_COUNT];
};
constinit Players players{};

// A scrambled Weyl sequence of the players' own.
double chance_unit() {
  std::uint64_t word = players.chance += 0x9E3779B97F4A7C15;
  word = (word ^ (word >> 30)) * 0xBF58476D1CE4E5B9;
  word = (word ^ (word >> 27)) * 0x94D049BB133111EB;
  return static_cast<double>((word ^ (word >> 31)) >> 11) * 0x1p-53;
}

double chance_normal() {
  const double radius = std::sqrt(-2.0 * std::log(1.0 - chance_unit()));
  return radius * std::cos(2.0 * std::numbers::pi * chance_unit());
}

std::int64_t ticks_of_s(double seconds) {
  return static_cast<std::int64_t>(seconds * 1000.0 / TICK_STEP_MS);
}

std::int64_t random_wait() {
  return ticks_of_s(2.0 * static_cast<double>(players.settings.wait_s) * chance_unit());
}

// Whether the log is good that will be below the frog when it leaves the bank. On the right it is
// still out of view, so a player can't wait for it.
bool good_first_log(int side, bool& in_view) {
  const float x = screen_frog_middle(side) + FIRST_LOG_SPEED * TICKS_TO_FIRST_LOG;
  LaneCell cell = CELL_EMPTY;
  in_view = screen_shows(FIRST_LOG_LANE, x, cell);
  return in_view && cell != CELL_EMPTY;
}

void watcher_step(int side, Player& player) {
  if (player.press_at != NEVER) return;
  bool in_view = false;
  if (good_first_log(side, in_view)) {
    const double delay_ms = players.settings.reaction_ms +
                            static_cast<double>(players.settings.error_ms) * chance_normal();
    player.press_at = players.tick + ticks_of_s(std::max(delay_ms, 0.0) / 1000.0);
  } else if (!in_view) {
    player.press_at = players.tick + random_wait();
  }
}

void expert_step(int side, Player& player) {
  if (expert_presses(player.expert, side, player.give_up_at - players.tick)) {
    player.press_at = players.tick;
  }
}

// A new player is a row here; what its functions leave alone, a press at `give_up_at`, is for all.
constexpr PlayerKind KINDS[] = {
    {"random", "presses at a random moment once the frog is ready", "#2a62b8", false,
     [](Player& player) { player.press_at = players.tick + random_wait(); }, [](int, Player&) {}},
    {"eager", "presses as soon as the frog is ready", "#2a8a3a", false,
     [](Player& player) { player.press_at = players.tick; }, [](int, Player&) {}},
    {"watcher", "waits for a good first log, with a hand's delay and error", "#c8920a", false,
     [](Player&) {}, watcher_step},
    {"expert", "looks ahead over all lanes at their present speeds", "#b8322a", true,
     [](Player& player) { expert_reset(player.expert); }, expert_step},
};

constexpr PlayerOption OPTIONS[] = {
    {"--wait", "S", &PlayerSettings::wait_s, 100.0F, "random: mean wait in seconds"},
    {"--reaction", "MS", &PlayerSettings::reaction_ms, 10000.0F,
     "watcher: from seeing to the press"},
    {"--error", "MS", &PlayerSettings::error_ms, 10000.0F, "watcher: standard deviation of it"},
    {"--patience", "S", &PlayerSettings::patience_s, 100.0F,
     "watcher, expert: longest wait for a good moment"},
};

const PlayerKind& kind_of_players() {
  return KINDS[players.settings.kind];
}

void begin_to_wait(Player& player) {
  player.waiting = true;
  player.press_at = NEVER;
  player.give_up_at = players.tick + ticks_of_s(static_cast<double>(players.settings.patience_s));
  kind_of_players().begin_to_wait(player);
}

void start_step(int side) {
  Player& player = players.sides[side];
  if (!player.waiting) begin_to_wait(player);
  kind_of_players().decide(side, player);
  if (players.tick < player.press_at && players.tick < player.give_up_at) return;
  board_press(START[side]);
  player.waiting = false;
}

// Enough for the next frog, all at once.
void coins_step(int side) {
  const std::int32_t each = pref_int(PREF_CURRENCY_UNIT) == CURRENCY_SWIPES
                                ? std::max(pref_int(PREF_COINS_PER_SWIPE_PULSE), 1)
                                : 1;
  const std::int32_t missing =
      pref_int(PREF_COINS_TO_PLAY) - audit_count(AUDIT_CURRENT_COINS, side);
  for (std::int32_t coins = 0; coins < missing; coins += each) board_press(COIN[side]);
}

bool has_credit(int side) {
  return pref_on(PREF_FREEPLAY) || audit_count(AUDIT_CURRENT_CREDITS, side) > 0;
}

}  // namespace

constinit const std::span<const PlayerKind> player_kinds = KINDS;
constinit const std::span<const PlayerOption> player_options = OPTIONS;

int player_find(const std::string& name) {
  const auto is_named = [&](const PlayerKind& kind) { return name == kind.name; };
  const auto found = std::ranges::find_if(player_kinds, is_named);
  return found == player_kinds.end() ? -1 : static_cast<int>(found - player_kinds.begin());
}

void players_reset(const PlayerSettings& settings, std::uint64_t seed) {
  players = {};
  players.settings = settings;
  players.chance = seed;
  screen_reset();
}

void players_step(const bool (&may_launch)[SIDE_COUNT]) {
  if (kind_of_players().remembers && players.tick % LOOK_EVERY_TICKS == 0) screen_look();
  for (int side = 0; side < SIDE_COUNT; ++side) {
    if (!may_launch[side] || flight_of(side) != nullptr) continue;
    if (!has_credit(side)) {
      coins_step(side);
    } else if (frog_ready(side)) {
      start_step(side);
    }
  }
  ++players.tick;
}
