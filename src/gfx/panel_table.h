// The game's pictures and sprite sheets by name. The tables are data: gfx/panel_table.cpp.
#pragma once

#include "gfx/panel.h"

enum PanelIndex {
  PANEL_BKDROP_LFT,
  PANEL_BKDROP_RT,
  PANEL_GRASS_LFT,
  PANEL_GRASS_RT,
  PANEL_SHADOW,
  PANEL_DPATCH,
  PANEL_DPATCH2,
  PANEL_DEMO,
  PANEL_TICKET,
  PANEL_PINK_TICKET,
  PANEL_YOU_WON_TCK,
  PANEL_LILY_BONUS_TXT,
  PANEL_RIVERFOAM_1,
  PANEL_RIVERFOAM_2,
  PANEL_LILYHOPLOGO,
  PANEL_SLYMARVELS,
  PANEL_TOVALI,
  PANEL_ORBLOGO,
  PANEL_PLAYTOWIN,
  PANEL_EAT_BUGS_TCK,
  PANEL_FROGICON,
  PANEL_FROGICONMED,
  PANEL_FROGICONLRG,
  PANEL_NUM_FROGS_TXT,
  PANEL_LRG_LILYPAD,
  PANEL_WIN,
  PANEL_TICKETS,
  PANEL_JACK_0,
  PANEL_JACK_1,
  PANEL_JACK_2,
  PANEL_JACK_3,
  PANEL_JACK_4,
  PANEL_JACK_5,
  PANEL_JACK_6,
  PANEL_JACK_7,
  PANEL_JACK_8,
  PANEL_JACK_9,
  PANEL_PRESS_GRN_TXT,
  PANEL_BUTTON_GRN_TXT,
  PANEL_PRSBTN_FROG_UP,
  PANEL_PRSBTN_FROG_DN,
  PANEL_PRESS_YLW_TXT,
  PANEL_BUTTON_YLW_TXT,
  PANEL_PRSBTN_YLW_UP,
  PANEL_PRSBTN_YLW_DN,
  PANEL_PRESS_TO_GRN_TXT,
  PANEL_START_GRN_TXT,
  PANEL_INSERTCOIN_GRN,
  PANEL_INSERTCOIN_YLW,
  PANEL_SWIPE_CRD,
  PANEL_MSG1_BUBBLE,
  PANEL_MSG2_BUBBLE,
  PANEL_MSG3_BUBBLE,
  PANEL_TICKETERROR,
  PANEL_IOERROR,
  PANEL_FIRST_SHEET,  // the Panels of the sheets follow, in the order of SheetIndex
};

enum SheetIndex {
  SHEET_GFROG = 0,
  SHEET_GFROG_IDLE1 = 1,
  SHEET_GFROG_IDLE2 = 2,
  SHEET_GFROG_IDLE3 = 3,
  SHEET_GFROG_WIN = 4,
  SHEET_GFROG_SPLASH = 5,
  SHEET_GRN_RINGS = 6,
  SHEET_WAVE = 7,
  SHEET_KISS = 8,
  SHEET_SPLASH = 9,
  SHEET_SPARK = 10,
  SHEET_HEARTS = 11,
  SHEET_PLANTS1 = 12,
  SHEET_PLANTS2 = 13,
  SHEET_PLANTS3 = 14,
  SHEET_PLANTS4 = 15,
  SHEET_PLANTS5 = 16,
  SHEET_PLANTS6 = 17,
  SHEET_FINISH = 18,
  SHEET_LILYPAD3 = 19,
  SHEET_CTAIL1 = 20,
  SHEET_CTAIL2 = 21,
  SHEET_WDSIGN = 22,
  SHEET_LNGSIGN = 23,
  SHEET_THUMBS_UP = 24,
  SHEET_THUMBS_IDLE = 25,
  SHEET_FROG_ATTRACT = 26,
  SHEET_LIGHTNINGBUG = 27,
  SHEET_LADYBUG = 28,
  SHEET_CATERPILLAR = 29,
  SHEET_BEETLE = 30,
  SHEET_GRASSHOPPER = 31,
  SHEET_LOG1 = 32,
  SHEET_LOG3 = 33,
  SHEET_3TURTLES = 34,
  SHEET_1TURTLE = 35,
  SHEET_1TURTLEGOLD = 36,
  SHEET_LOG4 = 37,
  SHEET_LOG4GOLD = 38,
  SHEET_BUTTERFLY = 39,
  SHEET_CYCLETICKET = 40,
  SHEET_COUNT,
};

constexpr int PANEL_COUNT = int{PANEL_FIRST_SHEET} + SHEET_COUNT;

extern Panel panels[PANEL_COUNT];
extern SpriteSheet sheets[SHEET_COUNT];
extern NumberFont number_font;

// Loads the number font and the game's Panels from images\ and puts the fields that the sheets need
// in order. Main thread, once.
void panel_table_load();
void panel_table_free();

// Fills `sheets` and the flags, scale factors and first source rectangle of the sheets' Panels. A
// Panel's source size is its cell's from here on, so the rules can ask for it before the first
// frame is drawn.
void sheet_table_fill();

// Half the width and height of a sheet's cell, as the rules measure a thing's middle.
float sheet_half_width(const SpriteSheet& sheet);
float sheet_half_height(const SpriteSheet& sheet);
