// A fixture for operator mode: presses buttons, runs ticks and reads the screen.
#pragma once

#include <string>
#include <vector>

#include "tests/fakes/jamma_fake.h"
#include "tests/fakes/jps_fake.h"
#include "tests/presentation/stage.h"

class Desk : public Stage {
 protected:
  Desk();
  ~Desk() override;

  // Operator mode anew: the main menu, at its top.
  static void enter();
  // Runs one tick with this button pressed and released. Only the input of the menu or screen runs.
  static void press(JammaPress button, int times = 1);
  static void tick();

  // Moves down to the row whose text starts like this. Fails the test if the menu has no such row.
  static void find(const std::string& row);
  // And accepts it.
  static void choose(const std::string& row);

  // The texts on the screen, in the order of drawing.
  static std::vector<std::string> screen();
  // The text of the selected row, or "".
  static std::string selected();
  // The text on the screen that starts with this label, without trailing spaces, or "".
  static std::string line(const std::string& label);
  static bool shows(const std::string& text);
};
