#include "tests/gl/docs_pictures.h"

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <map>
#include <string_view>

#include "books/prefs.h"
#include "frame/game_mode.h"
#include "frame/render_frame.h"
#include "gfx/frame.h"
#include "operator/boot_check.h"
#include "operator/main_menu.h"
#include "operator/menu.h"
#include "platform/display.h"
#include "platform/files.h"
#include "playfield/frog_queue.h"
#include "playfield/playfield.h"
#include "tests/fakes/jamma_fake.h"
#include "tests/gl/play.h"
#include "tests/temp_folder.h"

namespace {

const TempFolder& drive() {
  static const TempFolder folder;
  return folder;
}

// A frame as the main loop runs it, read back.
Shot frame_shot() {
  static Shot shot{LAYOUT_WIDTH, LAYOUT_HEIGHT, {}};
  gfx_frame_run([] {
    render_frame();
    shot.rgb.resize(std::size_t{LAYOUT_WIDTH} * LAYOUT_HEIGHT * 3);
    if (!display_read_frame(shot.rgb.data())) shot.rgb.clear();
  });
  return shot;
}

// A part of the next frame, at three fifths of its size.
Shot part_shot(int left, int top) {
  constexpr int WIDTH = 408;
  constexpr int HEIGHT = 366;
  const Shot scene = frame_shot();
  Shot part{WIDTH, HEIGHT, {}};
  for (int y = 0; y < HEIGHT; ++y) {
    for (int x = 0; x < WIDTH; ++x) {
      unsigned sum[3] = {};
      for (int i = 0; i < 25; ++i) {  // squares, a third of a pixel wide
        const std::uint32_t c = scene.at(left + (5 * x + i % 5) / 3, top + (5 * y + i / 5) / 3);
        sum[0] += c >> 16 & 0xFF;
        sum[1] += c >> 8 & 0xFF;
        sum[2] += c & 0xFF;
      }
      for (const unsigned channel : sum) part.rgb.push_back((channel + 12) / 25);
    }
  }
  return part;
}

// --- play ---------------------------------------------------------------------------------------

constexpr int FRAME_TICKS = 9;

struct Plan {  // ticks at which the players act
  std::uint64_t seed;
  int coins, start_left, start_right;
};

// Plays up to a tick and hands each of them over. Frames are drawn meanwhile, as they place what
// stands in the lanes.
void play_plan(const Plan& plan, int last_tick, const std::function<void(int tick)>& seen) {
  jamma_fake_reset();
  play_begin(plan.seed);
  for (int tick = 0; tick <= last_tick; ++tick) {
    if (tick == plan.coins) {
      jamma_fake.pending[PRESS_C1] = 2;
      jamma_fake.pending[PRESS_C2] = 3;
    }
    if (tick == plan.start_left) jamma_fake.pending[PRESS_P1S] = 1;
    if (tick == plan.start_right) jamma_fake.pending[PRESS_P2S] = 1;
    if (tick % FRAME_TICKS == 0) seen(tick);
    play_step();
  }
}

void play_draw(const PictureTaken& taken) {
  // The left frog is about to catch the butterfly, the right one has just ended in the water.
  constexpr Plan BOTH = {.seed = 3, .coins = 5, .start_left = 60, .start_right = 10};
  constexpr int BOTH_AT = 288;
  play_plan(BOTH, BOTH_AT, [&](int tick) {
    const Shot shot = frame_shot();
    if (tick == BOTH_AT) taken("play", shot);
  });
  // The left frog comes to the far bank by way of a gold turtle.
  constexpr Plan JACKPOT = {.seed = 25, .coins = 100, .start_left = 372, .start_right = 320};
  constexpr int HOP_FROM = 558;
  constexpr int HOP_TO = 918;
  play_plan(JACKPOT, HOP_TO, [&](int tick) {
    if (tick >= HOP_FROM) {
      taken("hop", part_shot(0, 0));
    } else {
      frame_shot();
    }
  });
}

// --- the operator's screens ---------------------------------------------------------------------

// What ten minutes of play leave in the books, both sides with a coin for each frog.
void books_fill() {
  constexpr int TEN_MINUTES = 600 * 1000 / 17;
  jamma_fake_reset();
  play_begin();
  for (int tick = 0; tick < TEN_MINUTES; ++tick) {
    for (int side = 0; side < SIDE_COUNT; ++side) {
      if (!frog_ready(side)) continue;
      jamma_fake.pending[side == SIDE_LEFT ? PRESS_C1 : PRESS_C2] = 1;
      jamma_fake.pending[side == SIDE_LEFT ? PRESS_P1S : PRESS_P2S] = 1;
    }
    play_step();
    for (int lane = LANE_MEADOW_FAR; lane <= LANE_MEADOW_NEAR; ++lane) {
      gfx_slots_place(&lanes[lane], lanes[lane].eaten);  // eaten bugs come back out of view
    }
  }
}

void hold(JammaCounter button, int ticks) {
  jamma_fake.inputs.counters[button] = 1;
  for (int tick = 0; tick < ticks; ++tick) play_step();
  jamma_fake.inputs.counters[button] = 2;
}

void press(JammaPress button, int times = 1) {
  for (; times > 0; --times) {
    jamma_fake.pending[button] = 1;
    play_step();
  }
}

// Chooses the row that begins with these words, wherever it stands in the open menu.
void choose(std::string_view row) {
  const Menu* menu = menu_current();
  for (std::uint32_t step = 0; step < menu->count; ++step) {
    const auto shown = menu->items[menu->selected].text.copy();
    if (std::string_view(shown.text).starts_with(row)) break;
    press(PRESS_P1S);
  }
  press(PRESS_P2S);
}

void switch_test(const PictureTaken& taken) {
  constexpr int TWO_SECONDS = 120;
  hold(COUNTER_P1S, 1);
  hold(COUNTER_VLU, 1);
  jamma_fake.inputs.counters[COUNTER_C1] = 1;
  play_step();
  taken("switch-test", frame_shot());
  jamma_fake.inputs.counters[COUNTER_C1] = 2;
  hold(COUNTER_SRV, TWO_SECONDS);
}

void menus_draw(const PictureTaken& taken) {
  const auto take = [&](const char* row, const char* name, JammaPress leave = PRESS_SRV,
                        int times = 1) {
    choose(row);
    taken(name, frame_shot());
    press(leave, times);
  };
  constexpr int THREE_SECONDS = 180;
  hold(COUNTER_TST, THREE_SECONDS);
  jamma_fake.pending[PRESS_TST] = 1;  // it is let go
  play_step();
  taken("main", frame_shot());

  take("Diagnostics", "diagnostics", PRESS_SRV, 0);
  choose("Switch Test");
  switch_test(taken);
  take("Dip Switch Test", "dip-test");
  take("Monitor Test", "monitor-test", PRESS_P2S, 6);
  take("Lamp Test", "lamp-test");
  take("LED Display Test", "led-test");
  take("Sound Test", "sound-test");
  take("Coin Meter Test", "coin-meter-test");
  take("Ticket Dispenser Test", "ticket-test");
  take("Watchdog Test", "watchdog-test", PRESS_P2S, 3);
  press(PRESS_SRV);

  take("Coin/Game Adjustments", "coin-game", PRESS_SRV, 0);
  take("Coins To Play", "coins-to-play", PRESS_SRV, 2);
  take("Payout Adjustments", "payout");
  choose("Audits");
  take("Payout Audits", "audits");
  take("Resets", "resets", PRESS_SRV, 0);
  take("Reset Adjustments", "reset-question", PRESS_SRV, 2);
  take("Volume", "volume", PRESS_SRV, 2);
}

void faults_draw(const PictureTaken& taken) {
  constexpr Plan NOBODY = {.seed = 3, .coins = -1, .start_left = -1, .start_right = -1};
  constexpr int SOME_TICKS = 200;
  play_plan(NOBODY, SOME_TICKS, [](int /*tick*/) { frame_shot(); });
  jamma_fake.flags = LEFT_TICKET_FAULT;
  jamma_fake.tickets_owed[SIDE_LEFT] = 5;
  play_step();
  taken("ticket-fault", part_shot(0, 120));
  jamma_fake.flags = 0;
  jamma_link_error = 1;
  taken("io-error", part_shot(340, 79));
  jamma_link_error = 0;
}

// An installation whose one file has another sum than its list says. The check never returns from
// it, so the first frame that shows the fault ends it.
void damaged_draw(const PictureTaken& taken) {
  struct Shown {};
  static int frames;
  const TempFolder program;
  std::filesystem::create_directory(program.file("images"));
  program.write("images/anim_beetle.tga", "not a picture");
  program.write("lhpcrc.txt", "images\\anim_beetle.tga 13 1\n");
  files_use_roots(drive().path(), program.path());
  prefs[PREF_CHECK_CRC].int_value = 1;
  frames = 0;
  try {
    boot_check_and_version([] {
      render_frame();
      if (++frames > 1) throw Shown();
    });
  } catch (const Shown&) {
    display_end_frame();
  }
  taken("file-damaged", frame_shot());
  game_mode = MODE_PLAY;
  files_use_roots(drive().path(), INSTALLATION);
}

}  // namespace

bool docs_pictures_open() {
  if (!screen_open() || !play_open(drive().path(), INSTALLATION)) return false;
  // The real ones would change the picture of the main menu with each build.
  build_stamp = {"Nov 25 2026", "12:00:00"};
  std::strcpy(version_record.version, "1.0.0");
  std::strcpy(version_record.os_version, "DEBIAN 12");
  return true;
}

bool docs_pictures_draw(const PictureTaken& taken) {
  if (screen_shot(LAYOUT_WIDTH, LAYOUT_HEIGHT, [] {}).rgb.empty()) return false;
  play_draw(taken);
  menus_build();
  books_fill();
  menus_draw(taken);
  menus_free();
  faults_draw(taken);
  damaged_draw(taken);
  return true;
}

int docs_pictures_write(const std::string& folder) {
  if (!screen_start() || !docs_pictures_open()) {
    std::fprintf(stderr, "no display, or no pictures in %s\n", INSTALLATION);
    return 1;
  }
  std::map<std::string, int> counts;
  bool good = true;
  const bool drawn = docs_pictures_draw([&](const std::string& name, const Shot& shot) {
    char number[8];
    std::snprintf(number, sizeof number, "-%02d", counts[name]++);
    std::ofstream file(folder + "/" + name + number + ".ppm", std::ios::binary);
    file << "P6\n" << shot.width << " " << shot.height << "\n255\n";
    file.write(reinterpret_cast<const char*>(shot.rgb.data()),
               static_cast<std::streamsize>(shot.rgb.size()));
    good = good && file.good() && !shot.rgb.empty();
  });
  screen_stop();
  return drawn && good ? 0 : 1;
}
