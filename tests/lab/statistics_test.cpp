// What the counts are taken to mean.
#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <cstdint>
#include <memory>
#include <numeric>
#include <random>
#include <string>
#include <utility>

#include "lab/results.h"
#include "lab/run.h"
#include "lab/settings.h"

namespace {

// Quantiles as printed tables have them.
TEST(LabStatistics, StudentFactorsMatchPrintedTables) {
  EXPECT_TRUE(std::isinf(student_95(0)));
  const std::pair<int, double> rows[] = {{1, 12.706}, {2, 4.303},  {3, 3.182},   {4, 2.776},
                                         {5, 2.571},  {10, 2.228}, {19, 2.093},  {30, 2.042},
                                         {6, 2.447},  {60, 2.000}, {120, 1.980}, {1000000, 1.960}};
  for (const auto& [degrees, factor] : rows) {
    EXPECT_NEAR(student_95(degrees), factor, 0.002) << degrees;
  }
}

// A dispenser that pays 0 to 9 at even odds, so 4.5 on the average, in boots of unequal length
// whose luck hangs together. Of many such runs about 95 in 100 must have 4.5 in their interval.
TEST(LabStatistics, IntervalHoldsTrueMeanNineteenTimesInTwenty) {
  std::mt19937_64 chance(2);
  constexpr int RUNS = 4000;
  constexpr int BOOTS = 12;
  int held = 0;
  for (int run = 0; run < RUNS; ++run) {
    std::int64_t sum = 0, squared = 0, product = 0, frogs = 0, frogs_squared = 0;
    for (int boot = 0; boot < BOOTS; ++boot) {
      const std::int64_t size = 20 + static_cast<std::int64_t>(chance() % 5);
      const std::int64_t luck = static_cast<std::int64_t>(chance() % 3) - 1;  // shared by the boot
      std::int64_t tickets = 0;
      for (std::int64_t frog = 0; frog < size; ++frog) {
        tickets += static_cast<std::int64_t>(chance() % 10) + luck;
      }
      sum += tickets;
      squared += tickets * tickets;
      product += tickets * size;
      frogs += size;
      frogs_squared += size * size;
    }
    const Estimate e = estimate(sum, squared, product, frogs, frogs_squared, BOOTS);
    held += std::fabs(e.mean - 4.5) <= e.half_width ? 1 : 0;
  }
  EXPECT_NEAR(held / static_cast<double>(RUNS), 0.95, 0.015);
  EXPECT_EQ(estimate(100, 5000, 1000, 20, 200, 2).half_width, 0.0) << "two boots alike";
}

// With each frog paid the same, all figures are known beforehand.
TEST(LabStatistics, FixedTicketsGiveExactFigures) {
  settings_reset();
  for (const char* each : {"Fixed Ticket=On", "Fixed Tickets Per Game=5", "Coins To Play=2",
                           "Coin Value=0.5", "Ticket Value=0.02"}) {
    ASSERT_EQ(settings_set(each), "");
  }
  const auto sums = std::make_unique<Sums>();
  const RunPlan plan{200, 3, {}};
  ASSERT_TRUE(run_play(plan, 1, *sums, {}));
  const Results r = results_of(plan, *sums);
  EXPECT_EQ(r.frogs, 400);
  EXPECT_EQ((std::array{r.tickets.mean, r.tickets.half_width, r.paper}),
            (std::array{5.0, 0.0, 5.0}));
  EXPECT_NEAR(r.percent_paid, 10.0, 1e-5) << "five tickets of 2 cents for a dollar";
  EXPECT_NEAR(1.0 / r.menu_jackpots, 126.62, 0.005);
  EXPECT_NEAR(std::reduce(std::begin(r.ended_on), std::end(r.ended_on)), 1.0, 1e-9);
  EXPECT_GT(r.lanes_climbed, 7.0);
  EXPECT_LE(r.lanes_climbed, 12.0);
}

// None in 40 frogs: 0.95 to the power of 1/40 of them would have missed at 7.2% a frog.
TEST(LabStatistics, NoJackpotGivesUpperBound) {
  settings_reset();
  const auto sums = std::make_unique<Sums>();
  const RunPlan plan{20, 1, {}};
  ASSERT_TRUE(run_play(plan, 1, *sums, {}));
  ASSERT_EQ(sums_jackpots(*sums), 0);
  const Results r = results_of(plan, *sums);
  EXPECT_NEAR(std::pow(1.0 - r.jackpots_at_most, 40), 0.05, 1e-9);
  EXPECT_NE(results_table(r, *sums).find(
                "games to bonus    no jackpot fell: 13.86 or more (at most 0.07216 a frog, "
                "95%); the menu says 126.62 ("),
            std::string::npos)
      << results_table(r, *sums);
  const std::string json = results_json(r, *sums);
  EXPECT_NE(json.find("\"jackpots_per_frog\": {\"mean\": 0, \"half_width_95\": null}"),
            std::string::npos);
  EXPECT_NE(json.find("\"jackpots_per_frog_at_most_95\": 0.0721"), std::string::npos);

  sums->awards.of_kind[SIDE_LEFT][AWARD_JACKPOT] = 1;
  EXPECT_EQ(results_table(results_of(plan, *sums), *sums).find("no jackpot"), std::string::npos);
}

}  // namespace
