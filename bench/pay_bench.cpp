// How often `books check --pay` is wrong, and how soon it finds what is wrong with a cabinet.
//
//   bench_pay PAYCHECK EXPERT STILL   runs of frogs drawn from what the lab's players won
//   bench_pay PAYCHECK LAB...         the lab's own runs, three or more, judged once each:
//                                     frogs that share boots
//
// PAYCHECK is the file that the check keeps; EXPERT, STILL and LAB are JSON of `payout-lab run`.
// STILL is a random player's, from a lab built with the speed of a meadow's lane at 0 in lane_rows.
#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <functional>
#include <iterator>
#include <map>
#include <random>
#include <string>
#include <vector>

#include "frame/sides.h"
#include "tools/books/pay.h"

namespace {

constexpr int FROGS_MOST = 50000, LOOK_EVERY = 500;

using Random = std::mt19937;

// Draws what a frog of a player wins.
class Draw {
 public:
  explicit Draw(const std::map<int, std::int64_t>& frogs) {
    std::vector<double> weights;
    for (const auto& [tickets, count] : frogs) {
      won.push_back(tickets);
      weights.push_back(static_cast<double>(count));
    }
    place = std::discrete_distribution<std::size_t>(weights.begin(), weights.end());
  }
  int operator()(Random& random) { return won[place(random)]; }

 private:
  std::vector<int> won;
  std::discrete_distribution<std::size_t> place;
};

struct Sides {
  explicit Sides(const PayPlayer& player)
      : draws{Draw(player.frogs[SIDE_LEFT]), Draw(player.frogs[SIDE_RIGHT])} {}
  Draw draws[SIDE_COUNT];
};

using Frog = std::function<int(int side, Random& random)>;

// Frogs until the verdict, 0 if it never came.
int frogs_until(PayVerdict verdict, const Frog& frog, const std::vector<PayPlayer>& players,
                Random& random) {
  PaySums sums;
  for (int frogs = 1; frogs <= FROGS_MOST; ++frogs) {
    const int side = frogs % SIDE_COUNT;
    ++sums.frogs[side];
    sums.tickets[side] += frog(side, random);
    if (frogs % LOOK_EVERY != 0) continue;
    const PayVerdict now = pay_judge(sums, players).verdict;
    if (now != PAYS_AS_SET && (verdict == PAYS_AS_SET || now == verdict)) return frogs;
  }
  return 0;
}

// With PAYS_AS_SET any alarm counts, and is a false one.
void measure(const char* what, PayVerdict verdict, int runs, const Frog& frog,
             const std::vector<PayPlayer>& players) {
  std::vector<int> found;
  for (int run = 0; run < runs; ++run) {
    Random random(static_cast<unsigned>(run) + 1);
    const int frogs = frogs_until(verdict, frog, players, random);
    if (frogs > 0) found.push_back(frogs);
  }
  std::ranges::sort(found);
  std::printf("%s: %zu of %d runs", what, found.size(), runs);
  const auto part = [&](std::size_t of, std::size_t whole) {
    const std::size_t at = static_cast<std::size_t>(runs) * of / whole;
    return at < found.size() ? found[at] : 0;
  };
  if (verdict != PAYS_AS_SET) {
    std::printf("; half of them by %d frogs, nine in ten by %d", part(1, 2), part(9, 10));
  }
  std::printf("\n");
  std::fflush(stdout);
}

void draw_runs(const std::vector<PayPlayer>& players, const PayPlayer& expert,
               const PayPlayer& still) {
  Sides best(expert), stopped(still), usual(players.front());
  for (const PayPlayer& player : players) {
    Sides sides(player);
    measure(
        player.name.c_str(), PAYS_AS_SET, 400,
        [&](int side, Random& random) { return sides.draws[side](random); }, players);
  }
  const auto one_in = [](Random& random, double chance) {
    return std::bernoulli_distribution(chance)(random);
  };
  constexpr int RUNS = 100;
  measure(
      "an expert plays a fifth", PAYS_ABOVE, RUNS,
      [&](int side, Random& random) {
        return (one_in(random, 0.2) ? best : usual).draws[side](random);
      },
      players);
  for (const double chance : {0.15, 0.3}) {
    const std::string what =
        std::to_string(static_cast<int>(100 * chance + 0.5)) + "% of the frogs are paid twice";
    measure(
        what.c_str(), PAYS_ABOVE, RUNS,
        [&](int side, Random& random) {
          const int won = usual.draws[side](random);
          return one_in(random, chance) ? 2 * won : won;
        },
        players);
    const std::string less =
        std::to_string(static_cast<int>(100 * chance + 0.5)) + "% of the frogs get only one ticket";
    measure(
        less.c_str(), PAYS_BELOW, RUNS,
        [&](int side, Random& random) {
          return one_in(random, chance) ? 1 : usual.draws[side](random);
        },
        players);
  }
  measure(
      "no jackpot is ever paid", PAYS_BELOW, RUNS,
      [&](int side, Random& random) {
        const int won = usual.draws[side](random);
        return won >= 250 ? 1 : won;
      },
      players);
  measure(
      "a lane of bugs stands still", PAYS_BELOW, RUNS,
      [&](int side, Random& random) { return stopped.draws[side](random); }, players);
}

void judge_lab_runs(const std::vector<PayPlayer>& players, const std::vector<PayPlayer>& runs) {
  int alarms = 0;
  for (const PayPlayer& run : runs) {
    PaySums sums;
    for (int side = 0; side < SIDE_COUNT; ++side) {
      for (const auto& [won, count] : run.frogs[side]) {
        sums.frogs[side] += count;
        sums.tickets[side] += won * count;
      }
    }
    if (pay_judge(sums, players).verdict != PAYS_AS_SET) ++alarms;
  }
  std::printf("runs of the lab: %d of %zu\n", alarms, runs.size());
}

}  // namespace

int main(int argc, char** argv) {
  const PayFile file = argc > 2 ? pay_read(argv[1]) : PayFile{};
  std::vector<PayPlayer> others;
  for (int i = 2; i < argc; ++i) {
    std::ifstream stream(argv[i]);
    const std::string json((std::istreambuf_iterator<char>(stream)), {});
    if (!pay_player_read(json, others.emplace_back())) return EXIT_FAILURE;
  }
  if (file.players.empty() || others.size() < 2) {
    std::fprintf(stderr, "bench_pay PAYCHECK EXPERT STILL, or bench_pay PAYCHECK LAB...\n");
    return EXIT_FAILURE;
  }
  if (others.size() == 2) {
    draw_runs(file.players, others[0], others[1]);
  } else {
    judge_lab_runs(file.players, others);
  }
  return EXIT_SUCCESS;
}
