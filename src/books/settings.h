// All settings of the operator, one row each, with everything that other code needs to know about
// it: the stored table and its built-in values, the adjustment menus with their lists and help, the
// virtual cabinet's new books and the payout lab's names come from here. The number of a row is its
// position in the files.
#pragma once

#include <cstddef>
#include <cstdint>
#include <iterator>

enum PrefIndex {
  PREF_FREEPLAY,
  PREF_COINS_TO_PLAY,
  PREF_FROGS_PER_GAME,
  PREF_COIN_VALUE,
  PREF_TICKET_VALUE,
  PREF_COINS_PER_SWIPE,
  PREF_COINS_PER_SWIPE_PULSE,
  PREF_CURRENCY_UNIT,
  PREF_TIMEOUT_SECONDS,
  PREF_FIXED_TICKET,
  PREF_FIXED_TICKETS_PER_GAME,
  PREF_TICKET_USE,
  PREF_MINIMUM_TICKETS,
  PREF_MAXIMUM_TICKETS,
  PREF_PAYOUT_PERCENT,
  PREF_BONUS_VALUE,
  PREF_BOOST_BONUS,
  PREF_TWO_POINT_TICKETS,
  PREF_LOCKOUT_COILS,
  PREF_TICKETS_PER_GAME,
  PREF_VOLUME,
  PREF_ATTRACT_VOLUME,
  PREF_BUILD_DATE,
  PREF_BUILD_TIME,
  PREF_CHECK_CRC,
  PREF_COUNT,
};

// The type of a value, and how a menu shows it.
enum SettingView : std::uint8_t {
  VIEW_WHOLE,
  VIEW_ON_OFF,
  VIEW_CURRENCY,      // a CurrencyUnit by its name
  VIEW_TIMEOUT,       // -1 is "Off"
  VIEW_REAL,          // this and the next three are floats; this one is in no menu
  VIEW_MONEY,         // three decimals
  VIEW_PERCENT,       // a fraction of 1, shown as a percentage
  VIEW_TICKET_VALUE,  // five decimals
  VIEW_TEXT,          // in no menu
};

enum SettingMenu : std::uint8_t { NO_MENU, COIN_GAME_MENU, PAYOUT_MENU };

// When the row can be chosen.
enum SettingNeed : std::uint8_t {
  NEEDS_NOTHING,
  NEEDS_TICKETS,           // "Ticket Use" is on
  NEEDS_FIXED_TICKETS,     // "Fixed Ticket" is on, too
  NEEDS_TICKETS_BY_CATCH,  // "Ticket Use" is on and "Fixed Ticket" off
};

// What happens after a choice, in the order of these bits.
enum SettingEffect : std::uint8_t {
  EFFECT_PAYTABLE = 1,       // chooses a row of the paytable, with its own bonus
  EFFECT_FIELD = 2,          // steps the paytable, keeps the bonus, and updates the LED board
  EFFECT_CLEAR_CREDITS = 4,  // they were paid at the old price
};

struct Setting {
  PrefIndex pref;
  const char* name;  // in the files
  SettingView view;
  double built_in = 0;  // texts have none

  SettingMenu menu = NO_MENU;
  std::uint8_t action = 0;  // its position in the menu; a position without a setting stays blank
  const char* label = nullptr;  // in the menu, if it differs from the name
  const char* question = "";    // title of its list
  // What each row of the list shows; "A..B" or "A..B/STEP" are whole numbers.
  const char* offers = "";
  const char* fallback = "";  // selected when the value isn't in the list
  SettingNeed needs = NEEDS_NOTHING;
  std::uint8_t effects = 0;  // SettingEffect
  const char* help = "";     // lines of the menu's page
};

// clang-format off
inline constexpr Setting SETTINGS[] = {
  {.pref = PREF_FREEPLAY, .name = "Freeplay", .view = VIEW_ON_OFF, .built_in = 0,
   .menu = COIN_GAME_MENU, .action = 0, .question = "Freeplay?", .offers = "On Off", .fallback = "Off",
   .help = "Freeplay: No cost per frog"},
  {.pref = PREF_COINS_TO_PLAY, .name = "Coins To Play", .view = VIEW_WHOLE, .built_in = 1,
   .menu = COIN_GAME_MENU, .action = 4, .question = "Coins To Play?", .offers = "1..10", .fallback = "1",
   .effects = EFFECT_PAYTABLE | EFFECT_CLEAR_CREDITS,
   .help = "Coins To Play: Cost to start a game"},
  {.pref = PREF_FROGS_PER_GAME, .name = "Frogs Per Game", .view = VIEW_WHOLE, .built_in = 1,
   .menu = COIN_GAME_MENU, .action = 5, .question = "Frogs Per Game?", .offers = "1..10", .fallback = "1",
   .effects = EFFECT_PAYTABLE,
   .help = "Frogs Per Game: Frogs per play"},
  {.pref = PREF_COIN_VALUE, .name = "Coin Value", .view = VIEW_MONEY, .built_in = 0.25,
   .menu = COIN_GAME_MENU, .action = 3, .question = "Coin Value?",
   .offers = "0.050 0.100 0.125 0.200 0.250 0.300 0.350 0.375 0.400 0.450 0.500 0.600 0.700 0.800 "
             "0.900 1.000 1.100 1.200 1.300 1.400 1.500 1.600 1.700 1.800 1.900 2.000",
   .fallback = "0.250", .effects = EFFECT_PAYTABLE,
   .help = "Coin Value: In dollars, euros, etc."},
  {.pref = PREF_TICKET_VALUE, .name = "Ticket Value", .view = VIEW_TICKET_VALUE, .built_in = 0.01,
   .menu = PAYOUT_MENU, .action = 4, .question = "Ticket Value?",
   .offers = "0.00250 0.00375 0.00500 0.00625 0.00750 0.01000 0.01500 0.02000 0.02500 0.05000 0.10000",
   .fallback = "0.01000", .needs = NEEDS_TICKETS_BY_CATCH, .effects = EFFECT_PAYTABLE,
   .help = "Ticket Value: Value of each ticket for use in paytable calculations"},
  {.pref = PREF_COINS_PER_SWIPE, .name = "Coins Per Swipe", .view = VIEW_WHOLE, .built_in = 2,
   .menu = COIN_GAME_MENU, .action = 6, .question = "Coins Per Swipe?", .offers = "1..10", .fallback = "1",
   .help = "Coins Per Swipe: Number of coins added per card swipe"},
  {.pref = PREF_COINS_PER_SWIPE_PULSE, .name = "Coins Per Swipe Pulse", .view = VIEW_WHOLE, .built_in = 1},
  {.pref = PREF_CURRENCY_UNIT, .name = "Currency Unit", .view = VIEW_CURRENCY, .built_in = 0,
   .menu = COIN_GAME_MENU, .action = 2, .label = "Currency Type", .question = "Currency Type?",
   .offers = "Coins Dollars Euro Swipes", .fallback = "Coins",
   .help = "Currency Type: Display cost information in number of coins,\n"
           "  plays per card swip, or in currency denominations"},
  {.pref = PREF_TIMEOUT_SECONDS, .name = "Timeout (Seconds)", .view = VIEW_TIMEOUT, .built_in = -1,
   .menu = COIN_GAME_MENU, .action = 8, .question = "Timeout Time (Seconds)?",
   .offers = "Off 0 15..120/15", .fallback = "Off",
   .help = "Timeout (Seconds): Number of seconds game will wait before\n"
           "  automatically launching frog after inserting credit"},
  {.pref = PREF_FIXED_TICKET, .name = "Fixed Ticket", .view = VIEW_ON_OFF, .built_in = 0,
   .menu = PAYOUT_MENU, .action = 1, .question = "Fixed Ticket?", .offers = "On Off", .fallback = "Off",
   .needs = NEEDS_TICKETS,
   .help = "Fixed Ticket: Force identical payout for each play"},
  {.pref = PREF_FIXED_TICKETS_PER_GAME, .name = "Fixed Tickets Per Game", .view = VIEW_WHOLE, .built_in = 10,
   .menu = PAYOUT_MENU, .action = 2, .label = "Fixed Tickets Per Frog", .question = "Fixed Tickets Per Frog?",
   .offers = "1..25", .fallback = "10", .needs = NEEDS_FIXED_TICKETS,
   .help = "Fixed Tickets Per Frog: Number of tickets to pay out per play\n"
           "  when Fixed Ticket mode is active"},
  {.pref = PREF_TICKET_USE, .name = "Ticket Use", .view = VIEW_ON_OFF, .built_in = 1,
   .menu = PAYOUT_MENU, .action = 0, .question = "Ticket Use?", .offers = "On Off", .fallback = "Off",
   .help = "Ticket Use: Disable to remove payouts and ticket advertisement"},
  {.pref = PREF_MINIMUM_TICKETS, .name = "Minimum Tickets", .view = VIEW_WHOLE, .built_in = 1,
   .menu = PAYOUT_MENU, .action = 5, .question = "Minimum Tickets?", .offers = "1..10", .fallback = "1",
   .needs = NEEDS_TICKETS_BY_CATCH,
   .help = "Minimum Tickets: Minimum number of tickets to pay out each game"},
  {.pref = PREF_MAXIMUM_TICKETS, .name = "Maximum Tickets", .view = VIEW_WHOLE, .built_in = 2500,
   .menu = PAYOUT_MENU, .action = 6, .question = "Maximum Tickets?",
   .offers = "10 20 50 100 250 500 1000 2500", .fallback = "2500", .needs = NEEDS_TICKETS_BY_CATCH,
   .help = "Maximum Tickets: Ticket cap per game"},
  {.pref = PREF_PAYOUT_PERCENT, .name = "Payout Percent", .view = VIEW_PERCENT, .built_in = 0.4,
   .menu = PAYOUT_MENU, .action = 3, .question = "Payout Percent?", .offers = "5..95/5", .fallback = "40%%",
   .needs = NEEDS_TICKETS_BY_CATCH, .effects = EFFECT_PAYTABLE,
   .help = "Payout Percent: Target payout in normal operation"},
  {.pref = PREF_BONUS_VALUE, .name = "Bonus Value", .view = VIEW_WHOLE, .built_in = 250,
   .menu = PAYOUT_MENU, .action = 7, .question = "Bonus Value?", .offers = "50..600/25", .fallback = "250",
   .needs = NEEDS_TICKETS_BY_CATCH,
   .help = "Bonus Value: Base jackpot value (before boost or two point adjustment)"},
  {.pref = PREF_BOOST_BONUS, .name = "Boost Bonus", .view = VIEW_ON_OFF, .built_in = 0,
   .menu = PAYOUT_MENU, .action = 8, .question = "Boost Bonus?", .offers = "On Off", .fallback = "Off",
   .needs = NEEDS_TICKETS_BY_CATCH, .effects = EFFECT_FIELD,
   .help = "Boost Bonus: Double the jackpot value and double the number\n"
           "  of games to bonus"},
  {.pref = PREF_TWO_POINT_TICKETS, .name = "Two Point Tickets", .view = VIEW_ON_OFF, .built_in = 0,
   .menu = PAYOUT_MENU, .action = 9, .question = "Two Point Tickets?", .offers = "On Off", .fallback = "Off",
   .needs = NEEDS_TICKETS_BY_CATCH, .effects = EFFECT_FIELD,
   .help = "Two Point Tickets: Tickets are double value"},
  {.pref = PREF_LOCKOUT_COILS, .name = "Lockout Coils", .view = VIEW_ON_OFF, .built_in = 0,
   .menu = COIN_GAME_MENU, .action = 1, .label = "Coin Lockout", .question = "Coin Lockout?",
   .offers = "On Off", .fallback = "Off",
   .help = "Coin Lockout: Block additional coins beyond cost to play"},
  {.pref = PREF_TICKETS_PER_GAME, .name = "Tickets Per Game", .view = VIEW_REAL, .built_in = 40},
  {.pref = PREF_VOLUME, .name = "Volume", .view = VIEW_WHOLE, .built_in = 16},
  {.pref = PREF_ATTRACT_VOLUME, .name = "Attract Volume", .view = VIEW_WHOLE, .built_in = 8},
  {.pref = PREF_BUILD_DATE, .name = "Build Date", .view = VIEW_TEXT},
  {.pref = PREF_BUILD_TIME, .name = "Build Time", .view = VIEW_TEXT},
  {.pref = PREF_CHECK_CRC, .name = "Check CRC", .view = VIEW_WHOLE, .built_in = 1},
};
// clang-format on

constexpr bool setting_is_real(const Setting& setting) {
  return setting.view >= VIEW_REAL && setting.view <= VIEW_TICKET_VALUE;
}
constexpr const char* setting_label(const Setting& setting) {
  return setting.label != nullptr ? setting.label : setting.name;
}

// The setting at a position of a menu, or null.
constexpr const Setting* setting_at(SettingMenu menu, std::size_t action) {
  for (const Setting& setting : SETTINGS) {
    if (setting.menu == menu && setting.action == action) return &setting;
  }
  return nullptr;
}
// How many positions a menu has, including blank ones.
constexpr std::size_t setting_places(SettingMenu menu) {
  std::size_t places = 0;
  for (const Setting& setting : SETTINGS) {
    if (setting.menu == menu && setting.action >= places) places = setting.action + 1U;
  }
  return places;
}

constexpr bool settings_are_in_place() {
  for (std::size_t i = 0; i < std::size(SETTINGS); ++i) {
    const Setting& setting = SETTINGS[i];
    if (setting.pref != static_cast<PrefIndex>(i)) return false;
    if (setting.menu != NO_MENU && setting_at(setting.menu, setting.action) != &setting)
      return false;
  }
  return std::size(SETTINGS) == PREF_COUNT;
}
static_assert(settings_are_in_place(),
              "row n is PrefIndex n, and no place of a menu is taken twice");
