// Every screen of operator mode, of the boot check and of a wrong monitor, whole:
// tests/operator/screens.txt has all that is drawn, in its order. A row is a run of things of one
// kind that stand in even steps: the first one's place, the step, how many they are, their size and
// colours, by how much the colour grows, and their texts. Most menus are one line.
#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <fstream>
#include <functional>
#include <iterator>
#include <string>
#include <utility>
#include <vector>

#include "books/audits.h"
#include "books/prefs.h"
#include "frame/app_window.h"
#include "frame/game_mode.h"
#include "frame/monitor_note.h"
#include "frame/render_frame.h"
#include "io/jamma.h"
#include "operator/boot_check.h"
#include "operator/info_pane.h"
#include "operator/menu.h"
#include "platform/files.h"
#include "presentation/debug_pages.h"
#include "tests/operator/desk.h"

namespace {

constexpr const char* BOOK = "tests/operator/screens.txt";

struct Place {
  int x, y;
  std::uint32_t colour, last_colour;
  bool operator==(const Place&) const = default;
};
Place operator-(const Place& a, const Place& b) {
  return {a.x - b.x, a.y - b.y, a.colour - b.colour, a.last_colour - b.last_colour};
}

struct Run {
  int width, height;
  std::vector<Place> places;
  std::string texts;
};

std::vector<Run> runs_of(const std::vector<Drawn>& drawn) {
  std::vector<Run> runs;
  for (const Drawn& d : drawn) {
    const std::string text = d.what == "rectangle" ? "" : d.what + "|";
    const Place place{d.x, d.y, d.colour, d.last_colour};
    Run* last = runs.empty() ? nullptr : &runs.back();
    if (last != nullptr && last->width == d.width && last->height == d.height &&
        last->texts.empty() == text.empty() &&
        (text.empty() || place.colour == last->places[0].colour)) {
      const std::size_t n = last->places.size();
      if (n == 1 || place - last->places[n - 1] == last->places[1] - last->places[0]) {
        last->places.push_back(place);
        last->texts += text;
        continue;
      }
    }
    runs.push_back({d.width, d.height, {place}, text});
  }
  return runs;
}

std::string written(const std::vector<Drawn>& drawn) {
  std::string page;
  const auto put = [&page](const char* format, auto... values) {
    char text[96];
    std::snprintf(text, sizeof text, format, values...);
    page += text;
  };
  for (const Run& run : runs_of(drawn)) {
    const Place& first = run.places[0];
    const bool several = run.places.size() > 1;
    const Place step = several ? run.places[1] - first : Place{};
    put("%d,%d", first.x, first.y);
    if (several) put(" %+d,%+d *%zu", step.x, step.y, run.places.size());
    put(" %dx%d %08X", run.width, run.height, first.colour);
    if (first.last_colour != first.colour) put("-%08X", first.last_colour);
    if (step.colour != 0) put(" +%08X", step.colour);
    page += (run.texts.empty() ? "" : " |" + run.texts) + "\n";
  }
  return page;
}

class Screens : public Desk {
 protected:
  Screens() {
    version_record = {"LILY 1.23", "LINUX 12"};
    build_stamp = {"May 17 2012", "10:20:53"};
    fill_audits();
    for (JammaCounter counter : {COUNTER_P2S, COUNTER_C1, COUNTER_VLD})
      jamma_fake.inputs.counters[counter] = 1;
    jamma_fake.inputs.dips = 0x85;
  }

  static void fill_audits() {
    for (int row = 0; row < AUDIT_COUNT; ++row) {
      audits[row].count = row * 100;
      audits[row].time_ms = row * 3600000LL + 61500;
    }
  }

  void take(const std::string& name, const std::vector<Drawn>& drawn) {
    book += "== " + name + "\n" + written(drawn);
  }
  // The screen that these rows lead to, and then that after each press of Test.
  void visit(const std::vector<std::string>& way, int presses = 0, void (*draw)() = render_frame) {
    enter();
    std::string name = "Main Menu";
    for (const std::string& row : way) {
      choose(row);
      name += ", " + row;
    }
    tick();
    for (int press_number = 0; press_number <= presses; ++press_number) {
      take(name + (press_number == 0 ? "" : ", Test " + std::to_string(press_number)), seen(draw));
      press(PRESS_TST);
    }
  }
  // A menu that these rows lead to, as one line: the heading of the page beside it ("..." if there
  // is more on it), its box, its title and rows, ">" before the selected one, "~" before a faint
  // one, nothing for a blank one.
  void visit_list(const std::vector<std::string>& way) {
    enter();
    for (const std::string& row : way) choose(row);
    const std::vector<Drawn> page = seen(pane_draw_all), drawn = seen(menu_draw);
    book += way.back() + ": " + page[1].what + (page.size() > 2 ? " ..., " : ", ") +
            std::to_string(drawn[0].width) + "x" + std::to_string(drawn[0].height) + " |";
    std::string mark;
    int y = drawn[1].y;
    for (std::size_t i = 1; i < drawn.size(); ++i) {
      if (drawn[i].what == "rectangle") {
        mark = ">";
        continue;
      }
      if (drawn[i].y > y + 16) book += "|";
      book += mark + (drawn[i].colour == 0x40FFFFFF ? "~" : "") + drawn[i].what + "|";
      mark.clear();
      y = drawn[i].y;
    }
    book += "\n";
  }
  void visit_lists(const std::string& menu, const std::vector<std::string>& rows) {
    for (const std::string& row : rows) visit_list({menu, row});
  }

  // The boot check's screen as it is drawn last with these files installed.
  void visit_boot_check(const std::string& name, const std::function<void()>& install) {
    static std::vector<Drawn> last;
    static int frames = 0;
    frames = 0;
    TempFolder program;
    files_use_roots(drive.path(), program.path());
    folder = program.path();
    install();
    prefs[PREF_CHECK_CRC].int_value = 1;
    struct Enough {};
    try {
      boot_check_and_version([] {
        last = seen(crc_check_draw);
        if (++frames == 3) throw Enough();  // a bad installation shows it for ever
      });
    } catch (const Enough&) {
    }
    take(name, last);
    game_mode = MODE_OPERATOR;
  }

  std::string book, folder;
};

TEST_F(Screens, AreAsTheBookShowsThem) {
  visit({});
  visit_list({"Diagnostics"});
  for (const char* test : {"Lamp", "LED", "Sound", "Ticket"}) visit_list({"Diagnostics", test});
  for (const char* test : {"Switch", "Dip", "Coin"}) visit({"Diagnostics", test});
  visit({"Diagnostics", "Monitor"}, 5);
  visit({"Diagnostics", "Watchdog"}, 2);
  visit({"Coin/Game"});
  visit_lists("Coin/Game", {"Freeplay", "Coin Lockout", "Currency Type", "Coin Value",
                            "Coins To Play", "Frogs Per Game", "Coins Per Swipe", "Timeout"});
  visit({"Payout"});
  visit_lists("Payout", {"Ticket Use", "Fixed Ticket ", "Payout Percent", "Ticket Value", "Minimum",
                         "Maximum", "Bonus Value", "Boost Bonus", "Two Point"});
  for (const auto& [tickets, fixed] : {std::pair{1, 1}, {0, 1}, {0, 0}}) {
    prefs[PREF_TICKET_USE].int_value = tickets;
    prefs[PREF_FIXED_TICKET].int_value = fixed;
    visit_list({"Payout"});
  }
  visit_list({"Audits"});
  for (const char* page : {"System", "Coin", "Payout", "Game"}) {
    visit({"Audits", page}, 0, pane_draw_all);
  }
  visit_list({"Resets"});
  visit_lists("Resets", {"Clear Coins", "Clear Tickets", "Reset Audits", "Reset Adjustments",
                         "Factory Restore", "CRC Check"});
  visit({"Volume"});
  visit({"Attract Volume"});
  visit_boot_check("Boot check, no list", [] {});
  visit_boot_check("Boot check, no file",
                   [this] { std::ofstream(folder + "/lhpcrc.txt") << "a.bin 1 1\n"; });
  visit_boot_check("Boot check, damaged file", [this] {
    std::ofstream(folder + "/lhpcrc.txt") << "a.bin 1 1\n";
    std::ofstream(folder + "/a.bin") << "x";
  });

  app_window = {1920, 1080, 1, false, 1360, 768};
  take("Monitor note", seen(monitor_note_draw));

  fill_audits();
  for (std::int32_t page = DEBUG_STATISTICS; page <= DEBUG_HISTOGRAM_1; ++page) {
    debug_page = page;
    take("Debug page " + std::to_string(page), seen(debug_page_draw));
  }
  debug_page = DEBUG_NONE;

  std::ifstream file(BOOK, std::ios::binary);
  const std::string known{std::istreambuf_iterator<char>(file), {}};
  if (book == known) return;
  const std::string now = testing::TempDir() + "screens.txt";
  std::ofstream(now, std::ios::binary) << book;
  std::size_t at = 0;
  while (at < book.size() && at < known.size() && book[at] == known[at]) ++at;
  const std::size_t section = book.rfind("== ", at);
  FAIL() << "another screen than in " << BOOK << "; all of them as they are now: " << now << "\n"
         << book.substr(section, book.find("\n== ", at) - section);
}

}  // namespace
