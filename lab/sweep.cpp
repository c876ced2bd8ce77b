#include "lab/sweep.h"

#include <cmath>
#include <cstdint>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <memory>
#include <utility>

#include "books/prefs.h"
#include "lab/boot.h"
#include "lab/pool.h"
#include "lab/progress.h"
#include "lab/settings.h"
#include "lab/text.h"

namespace {

// --- the settings that all places share --------------------------------------------------------

struct Values {
  std::int32_t whole[PREF_COUNT];
  float real[PREF_COUNT];
};

Values values_now() {
  Values values{};
  for (int i = 0; i < PREF_COUNT; ++i) {
    values.whole[i] = prefs[i].int_value;
    values.real[i] = prefs[i].float_value;
  }
  return values;
}

std::string place_set(const Values& behind, const SweepPlace& place) {
  for (int i = 0; i < PREF_COUNT; ++i) {
    prefs[i].int_value = behind.whole[i];
    prefs[i].float_value = behind.real[i];
  }
  prefs[PREF_BOOST_BONUS].int_value = place.boost ? 1 : 0;
  prefs[PREF_TWO_POINT_TICKETS].int_value = place.points ? 1 : 0;
  return settings_use_row(place.row);
}

RunPlan place_plan(const LabOptions& options, const SweepPlace& place) {
  RunPlan plan = options.plan;
  plan.player.kind = place.player;
  return plan;
}

int player_count() {
  return static_cast<int>(player_kinds.size());
}

// --- what is done, on the disk ------------------------------------------------------------------

constexpr char MAGIC[8] = {'L', 'H', 'S', 'W', 'E', 'E', 'P', '1'};

struct PlaceHead {
  char magic[8];
  std::uint64_t
      plan;  // a number that two sweeps share only if all that moves their results is equal
  std::int64_t number, size;
};

void mix(std::uint64_t& hash, const void* data, std::size_t size) {
  const auto* bytes = static_cast<const unsigned char*>(data);
  for (std::size_t i = 0; i < size; ++i) hash = (hash ^ bytes[i]) * 0x100000001B3;
}

std::uint64_t plan_number(const LabOptions& options, const Values& behind) {
  std::uint64_t hash = 0xCBF29CE484222325;
  const PlayerSettings& player = options.plan.player;
  mix(hash, &behind, sizeof behind);
  mix(hash, &options.plan.frogs_per_side, sizeof options.plan.frogs_per_side);
  mix(hash, &options.plan.seed, sizeof options.plan.seed);
  for (const PlayerOption& option : player_options) {
    mix(hash, &(player.*option.value), sizeof(float));
  }
  return hash;
}

std::string place_file(const std::string& folder, int number) {
  return folder + text_of("/place-%03d", number);
}

bool place_read(const std::string& folder, std::uint64_t plan, int number, Sums& sums,
                std::string& error) {
  std::ifstream stream(place_file(folder, number), std::ios::binary);
  if (!stream) return false;
  PlaceHead head{};
  stream.read(reinterpret_cast<char*>(&head), sizeof head);
  stream.read(reinterpret_cast<char*>(&sums), sizeof sums);
  if (!stream || std::memcmp(head.magic, MAGIC, sizeof MAGIC) != 0 ||
      head.size != static_cast<std::int64_t>(sizeof sums)) {
    return false;  // incomplete, or of another version: play it again
  }
  if (head.plan != plan || head.number != number) {
    error = folder + ": holds a sweep with other settings, frogs or seed; name another --state";
    return false;
  }
  return true;
}

bool place_write(const std::string& folder, std::uint64_t plan, int number, const Sums& sums) {
  PlaceHead head{{}, plan, number, sizeof sums};
  std::memcpy(head.magic, MAGIC, sizeof MAGIC);
  const std::string path = place_file(folder, number);
  std::ofstream stream(path + ".new", std::ios::binary);
  stream.write(reinterpret_cast<const char*>(&head), sizeof head);
  stream.write(reinterpret_cast<const char*>(&sums), sizeof sums);
  stream.close();
  std::error_code failed;
  if (stream) std::filesystem::rename(path + ".new", path, failed);
  return stream && !failed;
}

struct Sweep {
  const LabOptions& options;
  Values behind;
  std::uint64_t plan;
  std::vector<std::unique_ptr<Sums>> done;  // by number; null: not played yet
  std::string error;
};

bool state_read(Sweep& sweep) {
  const std::string& folder = sweep.options.state;
  if (folder.empty()) return true;
  std::error_code failed;
  std::filesystem::create_directories(folder, failed);
  if (failed) sweep.error = folder + ": can't be made: " + failed.message();
  for (int number = 0; number < sweep_places() && sweep.error.empty(); ++number) {
    auto sums = std::make_unique<Sums>();
    if (place_read(folder, sweep.plan, number, *sums, sweep.error)) {
      sweep.done[static_cast<std::size_t>(number)] = std::move(sums);
    }
  }
  return sweep.error.empty();
}

bool missing_play(Sweep& sweep) {
  std::vector<std::int64_t> missing;
  for (int number = 0; number < sweep_places(); ++number) {
    if (sweep.done[static_cast<std::size_t>(number)] == nullptr) missing.push_back(number);
  }
  Progress progress("sweep", sweep.options.quiet);
  std::size_t left = missing.size();
  const auto show = [&] {
    progress.show(1.0 - static_cast<double>(left) / static_cast<double>(sweep_places()));
  };
  show();
  const auto play = [&](std::int64_t number, Sums& sums) {
    const SweepPlace place = sweep_place(static_cast<int>(number));
    if (place_set(sweep.behind, place).empty()) {
      run_play(place_plan(sweep.options, place), 1, sums, {});
    }
  };
  const auto done = [&](const PoolJob& job) {
    const auto number = static_cast<int>(job.number);
    sweep.done[static_cast<std::size_t>(number)] = std::make_unique<Sums>(job.sums);
    const std::string& folder = sweep.options.state;
    if (!folder.empty() && !place_write(folder, sweep.plan, number, job.sums)) {
      sweep.error = folder + ": can't be written";
    }
    --left;
    show();
  };
  return pool_run(missing, sweep.options.processes, play, done) && sweep.error.empty();
}

}  // namespace

int sweep_places() {
  return player_count() * PAYTABLE_ROWS * 2 * 2;
}

SweepPlace sweep_place(int number) {
  return {number / (PAYTABLE_ROWS * 4), number / 4 % PAYTABLE_ROWS, (number & 2) != 0,
          (number & 1) != 0};
}

int sweep_number(const SweepPlace& place) {
  return (place.player * PAYTABLE_ROWS + place.row) * 4 + (place.boost ? 2 : 0) +
         (place.points ? 1 : 0);
}

bool sweep_play(const LabOptions& options, std::vector<SweepResult>& all, std::string& error) {
  Sweep sweep{options, values_now(), 0, {}, {}};
  sweep.plan = plan_number(options, sweep.behind);
  sweep.done.resize(sweep_places());
  error = place_set(sweep.behind, sweep_place(0));  // finds a row that can't be reached before play
  if (!error.empty()) return false;
  const bool good = state_read(sweep) && missing_play(sweep);
  for (int number = 0; number < sweep_places() && good; ++number) {
    const SweepPlace place = sweep_place(number);
    place_set(sweep.behind, place);
    all.push_back({place, results_of(place_plan(options, place),
                                     *sweep.done[static_cast<std::size_t>(number)])});
  }
  error = sweep.error.empty() && !good ? "the sweep wasn't finished" : sweep.error;
  return good;
}

namespace {

double off_table(const Results& r) {
  return r.tickets.mean / r.row_average - 1.0;
}

const SweepResult& at(const std::vector<SweepResult>& all, int player, int row, bool boost,
                      bool points) {
  const SweepPlace place{player, row, boost, points};
  return all[static_cast<std::size_t>(sweep_number(place))];
}

std::string table_block(const std::vector<SweepResult>& all, bool boost, bool points) {
  std::string text =
      text_of("\nBoost Bonus %s, Two Point Tickets %s: %s per frog\n\nrow  average",
              boost ? "On" : "Off", points ? "On" : "Off", points ? "points" : "tickets");
  for (const PlayerKind& kind : player_kinds) text += text_of("  %-24s", kind.name);
  text += "\n";
  for (int row = 0; row < PAYTABLE_ROWS; ++row) {
    text += text_of("%3d  %7.1f", row, static_cast<double>(paytable_average(row)));
    for (int player = 0; player < player_count(); ++player) {
      const Results& r = at(all, player, row, boost, points).results;
      text += text_of("  %7.3f +- %.3f %+6.1f%%", r.tickets.mean, r.tickets.half_width,
                      100.0 * off_table(r));
    }
    text += "\n";
  }
  return text;
}

}  // namespace

int sweep_farthest(const std::vector<SweepResult>& all, int player) {
  int farthest = -1;
  for (const SweepResult& each : all) {
    if (each.place.player != player) continue;
    const int number = sweep_number(each.place);
    if (farthest < 0 || std::fabs(off_table(each.results)) >
                            std::fabs(off_table(all[static_cast<std::size_t>(farthest)].results))) {
      farthest = number;
    }
  }
  return farthest;
}

std::string sweep_table(const std::vector<SweepResult>& all) {
  std::string text =
      "Half widths are those of 95% intervals; percentages are off the row's average.\n";
  for (const bool points : {false, true}) {
    for (const bool boost : {false, true}) text += table_block(all, boost, points);
  }
  text += "\nfarthest from its table\n";
  for (int player = 0; player < player_count(); ++player) {
    const SweepResult& each = all[static_cast<std::size_t>(sweep_farthest(all, player))];
    text += text_of("%-8s row %d%s%s: %.3f for %.1f, %+.1f%%\n", player_kinds[player].name,
                    each.place.row, each.place.boost ? ", boost" : "",
                    each.place.points ? ", two points" : "", each.results.tickets.mean,
                    each.results.row_average, 100.0 * off_table(each.results));
  }
  return text;
}

std::string sweep_json(const std::vector<SweepResult>& all) {
  std::string text = "[\n";
  for (const SweepResult& each : all) {
    const Results& r = each.results;
    text += text_of("  {\"player\": \"%s\", \"row\": %d, \"boost\": %s, \"two_points\": %s, ",
                    player_kinds[each.place.player].name, each.place.row,
                    each.place.boost ? "true" : "false", each.place.points ? "true" : "false");
    text += "\"frogs\": " + std::to_string(r.frogs) +
            ", \"average\": " + json_number(r.row_average) +
            ", \"tickets_per_frog\": " + json_number(r.tickets.mean) +
            ", \"half_width_95\": " + json_number(r.tickets.half_width) +
            ", \"left\": " + json_number(r.side_tickets[SIDE_LEFT]) +
            ", \"right\": " + json_number(r.side_tickets[SIDE_RIGHT]) +
            ", \"jackpots_per_frog\": " + json_number(r.jackpots.mean) +
            ", \"jackpots_half_width_95\": " + json_number(r.jackpots.half_width) +
            ", \"menu_jackpots\": " + json_number(r.menu_jackpots) +
            ", \"lanes_climbed\": " + json_number(r.lanes_climbed) + "}";
    text += &each == &all.back() ? "\n" : ",\n";
  }
  return text + "]\n";
}
