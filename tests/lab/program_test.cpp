// The command line, the settings, the sweep's state and the pages.
#include <gtest/gtest.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "books/book_file.h"
#include "lab/html.h"
#include "lab/options.h"
#include "lab/settings.h"
#include "lab/sweep.h"
#include "lab/text.h"
#include "platform/files.h"
#include "tests/plain_user.h"
#include "tests/temp_folder.h"

namespace {

std::string read_options(std::vector<std::string> words, LabOptions& options) {
  words.insert(words.begin(), "payout-lab");
  std::vector<char*> argv;
  for (std::string& word : words) argv.push_back(word.data());
  return options_read(static_cast<int>(argv.size()), argv.data(), options);
}

Results run(std::int64_t frogs, Sums& sums) {
  const RunPlan plan{frogs, 1, {}};
  EXPECT_TRUE(run_play(plan, 1, sums, {}));
  return results_of(plan, sums);
}

TEST(LabOptions, SetSettingsByName) {
  LabOptions options;
  ASSERT_EQ(read_options({"run", "--set", "Coins To Play=3", "--set", "coin lockout=on", "--set",
                          "Fixed Tickets Per Frog=7", "--set", "Payout Percent=25%", "--player",
                          "watcher", "--reaction", "300"},
                         options),
            "");
  EXPECT_EQ((std::array{pref_int(PREF_COINS_TO_PLAY), pref_int(PREF_LOCKOUT_COILS),
                        pref_int(PREF_FIXED_TICKETS_PER_GAME), options.plan.player.kind}),
            (std::array{3, 1, 7, player_find("watcher")}));
  EXPECT_EQ((std::array{pref_float(PREF_PAYOUT_PERCENT), options.plan.player.reaction_ms}),
            (std::array{0.25F, 300.0F}));
  // 18.75 tickets a frog: row 32 with its jackpot, as the menus would have set it.
  EXPECT_EQ(std::pair(paytable_row.get(), pref_int(PREF_BONUS_VALUE)), std::pair(32, 450));
  for (int row = 0; row < PAYTABLE_ROWS; ++row) {
    ASSERT_EQ(
        read_options({"run", "--set", "Frogs Per Game=3", "--row", std::to_string(row)}, options),
        "");
    EXPECT_EQ(std::pair(paytable_row.get(), pref_int(PREF_BONUS_VALUE)),
              std::pair(row, paytable[row].jackpot));
  }
}

TEST(LabOptions, ExplainWhatIsWrong) {
  const std::pair<std::vector<std::string>, const char*> cases[] = {
      {{"jump"}, "\"jump\" is no command; there are run, sweep and help"},
      {{"run", "--frogs", "0"}, "--frogs can't be \"0\""},
      {{"run", "--frogs", "many"}, "--frogs can't be \"many\""},
      {{"run", "--frogs"}, "\"--frogs\" is no option, or lacks its value"},
      {{"run", "--colour", "red"}, "\"--colour\" is no option"},
      {{"run", "--player", "cheat"}, "there are: random, eager, watcher, expert"},
      {{"run", "--set", "Price=3"}, "there is no setting \"Price\"; there are: Freeplay, Coins To"},
      {{"run", "--set", "Coins To Play"}, "write \"NAME=VALUE\""},
      {{"run", "--set", "Coins To Play=1.5"}, "it takes a whole number, On or Off"},
      {{"run", "--set", "Coins To Play=0"}, "must be 1 or more: nothing could be bought"},
      {{"run", "--row", "45"}, "the paytable has rows 0 to 44"},
      {{"run", "--html", ""}, "--html can't be \"\""},
      {{"sweep", "--state", ""}, "--state can't be \"\""},
      {{"run", "--state", "x"}, "\"--state\" is for sweep"},
      {{"run", "--prefs", ""}, "--prefs can't be \"\""},
      {{"run", "--prefs", "/no/such/place"}, "there is no such file or folder"}};
  for (const auto& [words, text] : cases) {
    LabOptions options;
    const std::string error = read_options(words, options);
    EXPECT_NE(error.find(text), std::string::npos) << error;
  }
}

TEST(LabOptions, ReadCabinetDriveWithoutChangingIt) {
  const TempFolder drive;
  files_use_roots(drive.path(), {});
  prefs_reset();
  prefs[PREF_COINS_TO_PLAY].int_value = 4;
  prefs_save();
  prefs[PREF_COINS_TO_PLAY].int_value = 5;
  ASSERT_TRUE(book_store(R"(d:\prefbak)", "030P", prefs, sizeof prefs));
  files_use_roots({}, {});
  const std::string backup = drive.read("prefbak");

  for (const std::string& path : {drive.path(), drive.file("prefs")}) {
    settings_reset();
    EXPECT_EQ(settings_load(path), "");
    EXPECT_EQ(pref_int(PREF_COINS_TO_PLAY), 4);
  }
  EXPECT_EQ(drive.read("prefbak"), backup) << "the game would have mended it";
  drive.write("prefs", "else");
  EXPECT_EQ(settings_load(drive.path()), "");
  EXPECT_EQ(pref_int(PREF_COINS_TO_PLAY), 5) << "the backup stands in, as in the cabinet";
  EXPECT_NE(settings_load(drive.file("prefs")).find("isn't a file of settings"), std::string::npos);

  run(20, *std::make_unique<Sums>());
  EXPECT_FALSE(drive.has("audits")) << "a run stores nothing";
}

TEST(LabPaths, ReportUnusablePathsBeforePlay) {
  const TempFolder folder;
  folder.write("secret", "030P");
  std::filesystem::create_directory(folder.file("shut"));
  for (const char* name : {"secret", "shut"}) chmod(folder.file(name).c_str(), 0);
  const PlainUser user(folder.path());
  ASSERT_TRUE(user.changed());
  for (const char* name : {"secret", "shut", "shut/prefs"}) {
    EXPECT_EQ(settings_load(folder.file(name)), folder.file(name) + ": Permission denied");
    EXPECT_EQ(text_try_file(folder.file(name)),
              folder.file(name) + ": can't be written: " +
                  (std::string(name) == "shut" ? "Is a directory" : "Permission denied"));
  }
  folder.write("page.html", "old");
  EXPECT_EQ(text_try_file(folder.file("page.html")), "");
  EXPECT_EQ(folder.read("page.html"), "old");
}

void expect_stands_alone(const std::string& page) {
  EXPECT_NE(page.find("<svg"), std::string::npos);
  for (const char* other : {"http", "src=", "<link", "<script", "url("}) {
    EXPECT_EQ(page.find(other), std::string::npos) << other;
  }
  for (const char* raw : {"nan", "inf", "0.000%", "<pre"}) {
    EXPECT_EQ(page.find(raw), std::string::npos) << raw;
  }
}

void expect_says(const std::string& page, const std::string& text) {
  EXPECT_NE(page.find(text), std::string::npos) << text << "\nisn't in\n" << page.substr(0, 4000);
}

TEST(LabPages, RunOpensWithAnswerAndItsCertainty) {
  settings_reset();
  const auto sums = std::make_unique<Sums>();
  Results r = run(20, *sums);
  r.tickets = {11.957, 0.113};
  r.percent_paid = 47.83;
  r.percent_half_width = 0.45;
  const std::pair<double, const char*> asked[] = {{40.0, ", <b>more</b> than what is asked for."},
                                                  {47.5, "; what is asked for lies between them."},
                                                  {50.0, ", <b>less</b> than what is asked for."}};
  for (const auto& [percent, verdict] : asked) {
    r.percent_asked = percent;
    const std::string page = run_page(r, *sums);
    expect_stands_alone(page);
    expect_says(page,
                text_of("A frog pays <b>11.96 tickets</b> on average, and <b>47.8%%</b> of the "
                        "money comes back; the settings ask for %g%%.",
                        percent));
    expect_says(page, std::string("is between 47.4% and 48.3%") + verdict);
    expect_says(page, "a player who presses at a random moment once the frog is ready.");
    expect_says(page, "Jackpots that fell: 0. With so few");
  }
}

TEST(LabPages, RunTellsWhatDecidesWithoutPaytableOrInterval) {
  const struct {
    int frogs;
    std::vector<const char*> settings;
    const char* text;
  } rows[] = {{1, {}, "Too few frogs were played to say how sure this is."},
              {20, {"Ticket Use=Off"}, "\"Ticket Use\" is off: no frog pays."},
              {20,
               {"Fixed Ticket=On", "Fixed Tickets Per Game=5"},
               "A frog pays <b>5.00 tickets</b>, and <b>20.0%</b> of the money comes back. \"Fixed "
               "Ticket\" sets that"},
              {20, {"Freeplay=On"}, " on average; its row of the paytable stands for 10.0."}};
  for (const auto& row : rows) {
    settings_reset();
    for (const char* each : row.settings) ASSERT_EQ(settings_set(each), "");
    const auto sums = std::make_unique<Sums>();
    const Results results = run(row.frogs, *sums);
    const std::string page = run_page(results, *sums);
    expect_stands_alone(page);
    expect_says(page, row.text);
  }
}

// Every row off its average by so much percent, known to `half_width`.
template <class Gap>
std::vector<SweepResult> made_sweep(double half_width, Gap gap) {
  std::vector<SweepResult> all;
  for (int number = 0; number < sweep_places(); ++number) {
    const SweepPlace place = sweep_place(number);
    Results r{};
    r.row_average = static_cast<double>(paytable_average(place.row));
    r.tickets = {r.row_average * (1.0 + gap(place) / 100.0), r.row_average * half_width / 100.0};
    all.push_back({place, r});
  }
  return all;
}

TEST(LabPages, SweepNamesWhatFiguresShow) {
  settings_reset();
  const int watcher = player_find("watcher");
  const std::string more = sweep_page(made_sweep(1.0, [&](const SweepPlace& place) {
    return (place.row < 10 ? 10.0 : 20.0) + (place.player == watcher ? 15.0 : 0.0) +
           (place.boost ? 5.0 : 0.0);
  }));
  expect_stands_alone(more);
  expect_says(more, "pays <b>18% more than it says</b> to a player who presses at a random moment");
  expect_says(more, "about <b>47%</b> of the money comes back");
  expect_says(more, "between 117% and 119% of what the rows say");
  expect_says(more,
              "<b>Timing pays.</b> A player who waits for a good first log, with a hand's delay "
              "and error gets 33% more than the rows say.");
  expect_says(more,
              "<b>The low rows come nearer to what they say.</b> Rows 0 to 9 pay 10% more than "
              "they say, the rows above them 20% more.");
  expect_says(more,
              "<b>Other settings matter too.</b> \"Boost Bonus\" adds 5% of what the rows say; "
              "\"Two Point Tickets\" changes nothing clear.");

  const std::string less = sweep_page(made_sweep(1.0, [](const SweepPlace&) { return -25.0; }));
  expect_says(less, "pays <b>25% less than it says</b>");
  expect_says(less, "about <b>30%</b> of the money comes back");
}

TEST(LabPages, SweepClaimsNothingThatIntervalsDoNotShow) {
  settings_reset();
  const std::string page = sweep_page(made_sweep(
      30.0, [](const SweepPlace& place) { return place.row < 10 ? 10.0 : 20.0 + place.player; }));
  expect_says(page, "the paytable pays what it says to within 48%.");
  expect_says(page, "What timing gains stays open");
  expect_says(page, "Whether low or high rows come nearer to what they say stays open.");
  expect_says(page, "change stays open");
}

// One frog a side in each of the places: ended and begun again, it comes to the same.
TEST(LabSweep, ContinuesAfterItWasInterrupted) {
  settings_reset();
  const TempFolder state;
  LabOptions options;
  options.plan.frogs_per_side = 1;
  options.quiet = true;
  options.processes = 2;
  options.state = state.path();
  std::string error;
  std::vector<SweepResult> first;
  ASSERT_TRUE(sweep_play(options, first, error)) << error;
  ASSERT_EQ(first.size(), static_cast<std::size_t>(sweep_places()));
  for (int number = 0; number < sweep_places(); ++number) {
    EXPECT_EQ(sweep_number(sweep_place(number)), number);
    const Results& r = first[static_cast<std::size_t>(number)].results;
    EXPECT_EQ(r.row, sweep_place(number).row);
    EXPECT_EQ(r.frogs, 2);
    EXPECT_NEAR(r.menu_jackpots, sweep_place(number).boost ? 0.00394875 : 0.0078975, 1e-7);
  }

  std::filesystem::remove(state.file("place-000"));
  std::filesystem::remove(state.file("place-" + std::to_string(sweep_places() - 1)));
  std::filesystem::resize_file(state.file("place-300"), 1000);  // the power went
  settings_reset();
  std::vector<SweepResult> second;
  ASSERT_TRUE(sweep_play(options, second, error)) << error;
  EXPECT_EQ(sweep_json(first), sweep_json(second));
  expect_stands_alone(sweep_page(second));

  options.plan.seed = 2;
  settings_reset();
  std::vector<SweepResult> third;
  EXPECT_FALSE(sweep_play(options, third, error));
  EXPECT_NE(error.find("name another --state"), std::string::npos) << error;
}

}  // namespace
