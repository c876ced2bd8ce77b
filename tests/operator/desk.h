// The operator's desk: presses that the board reports, ticks, and what stands on the screen.
#pragma once

#include <string>
#include <vector>

#include "tests/fakes/jamma_fake.h"
#include "tests/fakes/jps_fake.h"
#include "tests/presentation/stage.h"
#include "tests/temp_folder.h"

class Desk : public Stage {
 protected:
  Desk();
  ~Desk() override;

  // One tick with this button pressed and let go. The screen's or menu's input alone runs.
  static void press(JammaPress button, int times = 1);
  static void tick();

  // Moves down to the row with this text (its beginning is enough) and accepts it. Fails the test
  // if a whole round doesn't meet it.
  static void choose(const std::string& row);

  // What stands on the screen, line by line, in the order of drawing.
  static std::vector<std::string> screen();
  // The row that is highlighted; "" if none.
  static std::string selected();
  // The pane's line that begins with this label, without trailing blanks; "" if there is none.
  static std::string line(const std::string& label);
  static bool shows(const std::string& text);

  TempFolder drive;
};
