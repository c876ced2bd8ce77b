// Whether a cabinet pays as it is set: what its frogs won since the last change of settings,
// against what the payout lab's players win with the same settings.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "frame/sides.h"
#include "tools/books/drive.h"

struct PayPlayer {
  std::string name;
  double half_width = 0;                          // of the 95% interval of the mean
  std::map<int, std::int64_t> frogs[SIDE_COUNT];  // by the tickets that they won
};

struct PaySums {
  std::int64_t since_ms = 0;  // 0: the journal doesn't say
  std::int64_t frogs[SIDE_COUNT]{}, tickets[SIDE_COUNT]{};
};

enum PayVerdict { PAYS_AS_SET, PAYS_ABOVE, PAYS_BELOW, PAY_VERDICTS };
constexpr const char* PAY_WORDS[PAY_VERDICTS] = {"inside", "above", "below"};

struct PayResult {
  PayVerdict verdict = PAYS_AS_SET;
  double p = 1;
  std::int64_t frogs = 0;
  std::int64_t utc_ms = 0;  // when it was found; 0: never
};

// One of two hundred cabinets that pay as they are set is ever called wrong, on each side, however
// often it is asked.
constexpr double PAY_ALARM_P = 1.0 / 200;

// The frogs since the last change of a setting, or since `since_ms`, if that is later.
PaySums pay_sums(const Journal& journal, std::int64_t since_ms);

PayResult pay_judge(const PaySums& sums, const std::vector<PayPlayer>& players);
std::string pay_sentence(const PaySums& sums, const std::vector<PayPlayer>& players,
                         const PayResult& result);

// What is kept of it in a file of its own: for which settings, the players, the last result.
struct PayFile {
  std::string settings;
  std::vector<PayPlayer> players;
  PayResult result;
};
std::string pay_settings(const Prefs& table);
PayFile pay_read(const std::string& path);
// Empty, or a line that says what is wrong.
std::string pay_write(const std::string& path, const PayFile& file);

// From the lab's JSON. False if it isn't one.
bool pay_player_read(const std::string& text, PayPlayer& player);
