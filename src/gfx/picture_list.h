// The game's pictures: a row each, with everything that is known of it before it is drawn. The
// names in the code, the files that the game loads, the grids of the sheets, and what `art/` draws
// come from here. The order is that of the tables in memory.
#pragma once

#include <cstdint>
#include <iterator>

// The screen that all places and pictures are made for, in pixels.
constexpr int LAYOUT_WIDTH = 1360;
constexpr int LAYOUT_HEIGHT = 768;

// X(symbol, file)
// clang-format off
#define PICTURE_LIST(X) \
  X(PANEL_BKDROP_LFT,       "bkdrop_lft.bmp") \
  X(PANEL_BKDROP_RT,        "bkdrop_rt.bmp") \
  X(PANEL_GRASS_LFT,        "grass_lft.tga") \
  X(PANEL_GRASS_RT,         "grass_rt.tga") \
  X(PANEL_SHADOW,           "shadow.tga") \
  X(PANEL_DPATCH,           "dpatch.tga") \
  X(PANEL_DPATCH2,          "dpatch2.tga") \
  X(PANEL_DEMO,             "demo.tga") \
  X(PANEL_TICKET,           "ticket.tga") \
  X(PANEL_PINK_TICKET,      "pink_ticket.tga") \
  X(PANEL_YOU_WON_TCK,      "you_won_tck.tga") \
  X(PANEL_LILY_BONUS_TXT,   "lily_bonus_txt.tga") \
  X(PANEL_RIVERFOAM_1,      "riverfoam_1.tga") \
  X(PANEL_RIVERFOAM_2,      "riverfoam_2.tga") \
  X(PANEL_LILYHOPLOGO,      "lilyhoplogo.tga") \
  X(PANEL_SLYMARVELS,       "slymarvels.tga") \
  X(PANEL_TOVALI,           "tovali.tga") \
  X(PANEL_ORBLOGO,          "orblogo.tga") \
  X(PANEL_PLAYTOWIN,        "playtowin.tga") \
  X(PANEL_EAT_BUGS_TCK,     "eat_bugs_tck.tga") \
  X(PANEL_FROGICON,         "frogicon.tga") \
  X(PANEL_FROGICONMED,      "frogiconmed.tga") \
  X(PANEL_FROGICONLRG,      "frogiconlrg.tga") \
  X(PANEL_NUM_FROGS_TXT,    "num_frogs_txt.tga") \
  X(PANEL_LRG_LILYPAD,      "lrg_lilypad.tga") \
  X(PANEL_WIN,              "win.tga") \
  X(PANEL_TICKETS,          "tickets.tga") \
  X(PANEL_JACK_0,           "jack_0.tga") \
  X(PANEL_JACK_1,           "jack_1.tga") \
  X(PANEL_JACK_2,           "jack_2.tga") \
  X(PANEL_JACK_3,           "jack_3.tga") \
  X(PANEL_JACK_4,           "jack_4.tga") \
  X(PANEL_JACK_5,           "jack_5.tga") \
  X(PANEL_JACK_6,           "jack_6.tga") \
  X(PANEL_JACK_7,           "jack_7.tga") \
  X(PANEL_JACK_8,           "jack_8.tga") \
  X(PANEL_JACK_9,           "jack_9.tga") \
  X(PANEL_PRESS_GRN_TXT,    "press_grn_txt.tga") \
  X(PANEL_BUTTON_GRN_TXT,   "button_grn_txt.tga") \
  X(PANEL_PRSBTN_FROG_UP,   "prsbtn_frog_up.tga") \
  X(PANEL_PRSBTN_FROG_DN,   "prsbtn_frog_dn.tga") \
  X(PANEL_PRESS_YLW_TXT,    "press_ylw_txt.tga") \
  X(PANEL_BUTTON_YLW_TXT,   "button_ylw_txt.tga") \
  X(PANEL_PRSBTN_YLW_UP,    "prsbtn_ylw_up.tga") \
  X(PANEL_PRSBTN_YLW_DN,    "prsbtn_ylw_dn.tga") \
  X(PANEL_PRESS_TO_GRN_TXT, "press_to_grn_txt.tga") \
  X(PANEL_START_GRN_TXT,    "start_grn_txt.tga") \
  X(PANEL_INSERTCOIN_GRN,   "insertcoin_grn.tga") \
  X(PANEL_INSERTCOIN_YLW,   "insertcoin_ylw.tga") \
  X(PANEL_SWIPE_CRD,        "swipe_crd.tga") \
  X(PANEL_MSG1_BUBBLE,      "msg1_bubble.tga") \
  X(PANEL_MSG2_BUBBLE,      "msg2_bubble.tga") \
  X(PANEL_MSG3_BUBBLE,      "msg3_bubble.tga") \
  X(PANEL_TICKETERROR,      "ticketerror.tga") \
  X(PANEL_IOERROR,          "ioerror.tga")

// X(symbol, file, columns, rows, frames, whether it is drawn larger and smaller than it is)
#define SHEET_LIST(X) \
  X(SHEET_GFROG,         "anim_gfrog.tga",          8,  2, 15, true) \
  X(SHEET_GFROG_IDLE1,   "anim_gfrog_idle1.tga",   16,  4, 60, true) \
  X(SHEET_GFROG_IDLE2,   "anim_gfrog_idle2.tga",   16,  4, 60, true) \
  X(SHEET_GFROG_IDLE3,   "anim_gfrog_idle3.tga",   16,  4, 60, true) \
  X(SHEET_GFROG_WIN,     "anim_gfrog_win.tga",     16,  8, 88, true) \
  X(SHEET_GFROG_SPLASH,  "anim_gfrog_splash.tga",   8,  4, 20, true) \
  X(SHEET_GRN_RINGS,     "anim_grn_rings.png",      8,  4, 30, true) \
  X(SHEET_WAVE,          "anim_wave.tga",           8,  8, 64, false) \
  X(SHEET_KISS,          "anim_kiss.tga",           8,  8, 42, false) \
  X(SHEET_SPLASH,        "anim_splash.tga",         4,  4, 16, false) \
  X(SHEET_SPARK,         "anim_spark.tga",          4,  4, 16, false) \
  X(SHEET_HEARTS,        "anim_hearts.tga",         8,  4, 30, false) \
  X(SHEET_PLANTS1,       "plants1.tga",             8,  4, 31, false) \
  X(SHEET_PLANTS2,       "plants2.tga",             8,  4, 31, false) \
  X(SHEET_PLANTS3,       "plants3.tga",             4,  8, 31, false) \
  X(SHEET_PLANTS4,       "plants4.tga",             8,  4, 31, false) \
  X(SHEET_PLANTS5,       "plants5.tga",             8,  4, 31, false) \
  X(SHEET_PLANTS6,       "plants6.tga",             4,  8, 31, false) \
  X(SHEET_FINISH,        "anim_finish.tga",         8,  8, 40, false) \
  X(SHEET_LILYPAD3,      "anim_lilypad3.tga",       8,  8, 40, true) \
  X(SHEET_CTAIL1,        "anim_ctail1.tga",         8,  8, 40, false) \
  X(SHEET_CTAIL2,        "anim_ctail2.tga",         8,  8, 40, false) \
  X(SHEET_WDSIGN,        "anim_wdsign.tga",         8,  8, 40, false) \
  X(SHEET_LNGSIGN,       "anim_lngsign.tga",        8,  8, 41, false) \
  X(SHEET_THUMBS_UP,     "anim_thumbs_up.png",      8,  8, 58, false) \
  X(SHEET_THUMBS_IDLE,   "anim_thumbs_idle.png",    8,  4, 28, false) \
  X(SHEET_FROG_ATTRACT,  "anim_frog_attract.png",   8,  8, 63, false) \
  X(SHEET_LIGHTNINGBUG,  "anim_lightningbug.tga",   4,  4, 16, false) \
  X(SHEET_LADYBUG,       "anim_ladybug.tga",        4,  4, 16, false) \
  X(SHEET_CATERPILLAR,   "anim_caterpillar.tga",    4,  4, 16, false) \
  X(SHEET_BEETLE,        "anim_beetle.tga",         4,  4, 16, false) \
  X(SHEET_GRASSHOPPER,   "anim_grasshopper.tga",    4,  4, 16, false) \
  X(SHEET_LOG1,          "anim_log1.tga",           2,  8, 15, false) \
  X(SHEET_LOG3,          "anim_log3.tga",           2,  8, 15, false) \
  X(SHEET_3TURTLES,      "anim_3turtles.tga",       4, 16, 50, false) \
  X(SHEET_1TURTLE,       "anim_1turtle.tga",        8,  8, 50, false) \
  X(SHEET_1TURTLEGOLD,   "anim_1turtlegold.tga",    8,  8, 50, false) \
  X(SHEET_LOG4,          "anim_log4.tga",           2,  8, 15, false) \
  X(SHEET_LOG4GOLD,      "anim_log4gold.tga",       2,  8, 15, false) \
  X(SHEET_BUTTERFLY,     "anim_butterfly.tga",      8,  4, 32, false) \
  X(SHEET_CYCLETICKET,   "anim_cycleticket.tga",    4,  8, 18, false)

// X(symbol, file, width and height of a glyph)
#define FONT_LIST(X) \
  X(FONT_8X12,   "font8x12.bmp",      8,  12) \
  X(FONT_11X17,  "zoinks11x17.tga",  11,  17) \
  X(FONT_14X22,  "zoinks14x22.tga",  14,  22) \
  X(FONT_29X43,  "zoinks29x43.tga",  29,  43) \
  X(FONT_58X90,  "zoinks58x90.tga",  58,  90) \
  X(FONT_78X120, "zoinks78x120.tga", 78, 120)
// clang-format on

#define NUMBER_FONT_FILE "numbers_credits.bmp"

// The glyphs of a font in their order, 16 to a row of its picture; the last is the blank.
constexpr int GLYPH_COLUMNS = 16;
constexpr int GLYPH_ROWS = 6;
constexpr char GLYPH_ORDER[] =
    "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ1234567890"
    "!@#$%^&*()`~-_=+[{]}\\|;:'\",<.>/? ";
constexpr int GLYPH_COUNT = static_cast<int>(std::size(GLYPH_ORDER)) - 1;
constexpr int GLYPH_BLANK = GLYPH_COUNT - 1;

#define SYMBOL_ONLY(symbol, ...) symbol,
#define FILE_ONLY(symbol, file) file,
#define WITHOUT_SYMBOL(symbol, ...) {__VA_ARGS__},

enum PanelIndex { PICTURE_LIST(SYMBOL_ONLY) PANEL_FIRST_SHEET };  // the sheets' follow
enum SheetIndex { SHEET_LIST(SYMBOL_ONLY) SHEET_COUNT };
enum Font { FONT_LIST(SYMBOL_ONLY) FONT_COUNT };

constexpr int PANEL_COUNT = int{PANEL_FIRST_SHEET} + SHEET_COUNT;

struct SheetRow {
  const char* file;
  std::int32_t columns, rows, frames;
  bool scaled;
};

struct FontRow {
  const char* file;
  int glyph_width, glyph_height;
};

inline constexpr const char* PICTURES[] = {PICTURE_LIST(FILE_ONLY)};
inline constexpr SheetRow SHEETS[] = {SHEET_LIST(WITHOUT_SYMBOL)};
inline constexpr FontRow FONTS[] = {FONT_LIST(WITHOUT_SYMBOL)};

#undef SYMBOL_ONLY
#undef FILE_ONLY
#undef WITHOUT_SYMBOL
