// Pictures that the game loads and never shows: as small as a file can be, with nothing in them.
#include "art/catalogue.h"

namespace art {

namespace {

void draw_nothing(const Cell&) {}

constexpr CatalogueRow blank(PanelIndex index) {
  return still(index, 1, 1, draw_nothing);
}

constexpr CatalogueRow kRows[] = {
    blank(PANEL_TOVALI),         blank(PANEL_PLAYTOWIN),
    blank(PANEL_PRESS_GRN_TXT),  blank(PANEL_BUTTON_GRN_TXT),
    blank(PANEL_PRESS_YLW_TXT),  blank(PANEL_BUTTON_YLW_TXT),
    blank(PANEL_PRSBTN_YLW_UP),  blank(PANEL_PRSBTN_YLW_DN),
    blank(PANEL_INSERTCOIN_YLW), sheet(SHEET_SPLASH, 1, 1, Play::kStill, draw_nothing),
};

}  // namespace

const Family kBlankFamily{"art/blank.cpp", kRows};

}  // namespace art
