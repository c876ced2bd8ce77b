#include "tests/operator/desk.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>

#include "frame/game_clock.h"
#include "frame/game_mode.h"
#include "frame/render_frame.h"
#include "operator/info_pane.h"
#include "operator/main_menu.h"
#include "operator/menu.h"
#include "operator/test_screen.h"
#include "presentation/win_show.h"

Desk::Desk() {
  win_show_reset();
  enter();
}

Desk::~Desk() {
  menus_free();
  pane_reset();
  game_mode = MODE_PLAY;
  sound_enabled = 1;
}

void Desk::enter() {
  menus_free();
  pane_reset();
  test_screen = 0;
  game_mode = MODE_OPERATOR;
  sound_enabled = 0;
  menus_build();
  menu_enter();
  press(PRESS_TST);  // releasing the held Test switch only activates the menu
  menu_open(menu_current());
  jps_fake_reset();
}

void Desk::tick() {
  game_clock.now_ms = now_ms() + 17;
  if (menu_is_open()) {
    menu_input();
  } else if (game_mode == MODE_OPERATOR) {
    test_screen_input();
  }
  for (std::uint32_t& pending : jamma_fake.pending) pending = 0;
}

void Desk::press(JammaPress button, int times) {
  for (int i = 0; i < times; ++i) {
    jamma_fake.pending[button] = 1;
    tick();
  }
}

void Desk::choose(const std::string& row) {
  find(row);
  press(PRESS_TST);
}

void Desk::find(const std::string& row) {
  for (int i = 0; i < 40 && !selected().starts_with(row); ++i) press(PRESS_P1S);
  ASSERT_TRUE(selected().starts_with(row))
      << "no row \"" << row << "\" in " << testing::PrintToString(screen());
}

std::vector<std::string> Desk::screen() {
  std::vector<std::string> lines;
  for (const Drawn& d : seen(render_frame)) {
    if (d.what != "rectangle") lines.push_back(d.what);
  }
  return lines;
}

std::string Desk::selected() {
  const std::vector<Drawn> drawn = seen(render_frame);
  for (std::size_t i = 0; i + 1 < drawn.size(); ++i) {
    if (drawn[i].what == "rectangle" && drawn[i].colour == 0xFF00C000) return drawn[i + 1].what;
  }
  return "";
}

std::string Desk::line(const std::string& label) {
  for (std::string text : screen()) {
    if (!text.starts_with(label)) continue;
    text.erase(text.find_last_not_of(' ') + 1);
    return text;
  }
  return "";
}

bool Desk::shows(const std::string& text) {
  return std::ranges::any_of(screen(), [&](const auto& l) { return l.find(text) != l.npos; });
}
