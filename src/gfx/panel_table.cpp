#include "gfx/panel_table.h"

#include <cstdint>

#include "platform/memory.h"  // memory_keep_freed

namespace {

constexpr PanelName panel_names[PANEL_COUNT] = {
    R"(images\bkdrop_lft.bmp)",
    R"(images\bkdrop_rt.bmp)",
    R"(images\grass_lft.tga)",
    R"(images\grass_rt.tga)",
    R"(images\shadow.tga)",
    R"(images\dpatch.tga)",
    R"(images\dpatch2.tga)",
    R"(images\demo.tga)",
    R"(images\ticket.tga)",
    R"(images\pink_ticket.tga)",
    R"(images\you_won_tck.tga)",
    R"(images\lily_bonus_txt.tga)",
    R"(images\riverfoam_1.tga)",
    R"(images\riverfoam_2.tga)",
    R"(images\lilyhoplogo.tga)",
    R"(images\slymarvels.tga)",
    R"(images\tovali.tga)",
    R"(images\orblogo.tga)",
    R"(images\playtowin.tga)",
    R"(images\eat_bugs_tck.tga)",
    R"(images\frogicon.tga)",
    R"(images\frogiconmed.tga)",
    R"(images\frogiconlrg.tga)",
    R"(images\num_frogs_txt.tga)",
    R"(images\lrg_lilypad.tga)",
    R"(images\win.tga)",
    R"(images\tickets.tga)",
    R"(images\jack_0.tga)",
    R"(images\jack_1.tga)",
    R"(images\jack_2.tga)",
    R"(images\jack_3.tga)",
    R"(images\jack_4.tga)",
    R"(images\jack_5.tga)",
    R"(images\jack_6.tga)",
    R"(images\jack_7.tga)",
    R"(images\jack_8.tga)",
    R"(images\jack_9.tga)",
    R"(images\press_grn_txt.tga)",
    R"(images\button_grn_txt.tga)",
    R"(images\prsbtn_frog_up.tga)",
    R"(images\prsbtn_frog_dn.tga)",
    R"(images\press_ylw_txt.tga)",
    R"(images\button_ylw_txt.tga)",
    R"(images\prsbtn_ylw_up.tga)",
    R"(images\prsbtn_ylw_dn.tga)",
    R"(images\press_to_grn_txt.tga)",
    R"(images\start_grn_txt.tga)",
    R"(images\insertcoin_grn.tga)",
    R"(images\insertcoin_ylw.tga)",
    R"(images\swipe_crd.tga)",
    R"(images\msg1_bubble.tga)",
    R"(images\msg2_bubble.tga)",
    R"(images\msg3_bubble.tga)",
    R"(images\ticketerror.tga)",
    R"(images\ioerror.tga)",
    R"(images\anim_gfrog.tga)",
    R"(images\anim_gfrog_idle1.tga)",
    R"(images\anim_gfrog_idle2.tga)",
    R"(images\anim_gfrog_idle3.tga)",
    R"(images\anim_gfrog_win.tga)",
    R"(images\anim_gfrog_splash.tga)",
    R"(images\anim_grn_rings.png)",
    R"(images\anim_wave.tga)",
    R"(images\anim_kiss.tga)",
    R"(images\anim_splash.tga)",
    R"(images\anim_spark.tga)",
    R"(images\anim_hearts.tga)",
    R"(images\plants1.tga)",
    R"(images\plants2.tga)",
    R"(images\plants3.tga)",
    R"(images\plants4.tga)",
    R"(images\plants5.tga)",
    R"(images\plants6.tga)",
    R"(images\anim_finish.tga)",
    R"(images\anim_lilypad3.tga)",
    R"(images\anim_ctail1.tga)",
    R"(images\anim_ctail2.tga)",
    R"(images\anim_wdsign.tga)",
    R"(images\anim_lngsign.tga)",
    R"(images\anim_thumbs_up.png)",
    R"(images\anim_thumbs_idle.png)",
    R"(images\anim_frog_attract.png)",
    R"(images\anim_lightningbug.tga)",
    R"(images\anim_ladybug.tga)",
    R"(images\anim_caterpillar.tga)",
    R"(images\anim_beetle.tga)",
    R"(images\anim_grasshopper.tga)",
    R"(images\anim_log1.tga)",
    R"(images\anim_log3.tga)",
    R"(images\anim_3turtles.tga)",
    R"(images\anim_1turtle.tga)",
    R"(images\anim_1turtlegold.tga)",
    R"(images\anim_log4.tga)",
    R"(images\anim_log4gold.tga)",
    R"(images\anim_butterfly.tga)",
    R"(images\anim_cycleticket.tga)",
};

constexpr PanelName number_font_names[1] = {R"(images\fonts\numbers_credits.bmp)"};

struct SheetRow {
  SheetIndex index;
  std::int32_t columns, rows, frames;
  bool scaled;  // grown and shrunk by its drawers
};

constexpr SheetRow sheet_rows[SHEET_COUNT] = {
    {SHEET_GFROG, 8, 2, 15, true},         {SHEET_GFROG_IDLE1, 16, 4, 60, true},
    {SHEET_GFROG_IDLE2, 16, 4, 60, true},  {SHEET_GFROG_IDLE3, 16, 4, 60, true},
    {SHEET_GFROG_WIN, 16, 8, 88, true},    {SHEET_GFROG_SPLASH, 8, 4, 20, true},
    {SHEET_GRN_RINGS, 8, 4, 30, true},     {SHEET_WAVE, 8, 8, 64, false},
    {SHEET_KISS, 8, 8, 42, false},         {SHEET_SPLASH, 4, 4, 16, false},
    {SHEET_SPARK, 4, 4, 16, false},        {SHEET_HEARTS, 8, 4, 30, false},
    {SHEET_PLANTS1, 8, 4, 31, false},      {SHEET_PLANTS2, 8, 4, 31, false},
    {SHEET_PLANTS3, 4, 8, 31, false},      {SHEET_PLANTS4, 8, 4, 31, false},
    {SHEET_PLANTS5, 8, 4, 31, false},      {SHEET_PLANTS6, 4, 8, 31, false},
    {SHEET_FINISH, 8, 8, 40, false},       {SHEET_LILYPAD3, 8, 8, 40, true},
    {SHEET_CTAIL1, 8, 8, 40, false},       {SHEET_CTAIL2, 8, 8, 40, false},
    {SHEET_WDSIGN, 8, 8, 40, false},       {SHEET_LNGSIGN, 8, 8, 41, false},
    {SHEET_THUMBS_UP, 8, 8, 58, false},    {SHEET_THUMBS_IDLE, 8, 4, 28, false},
    {SHEET_FROG_ATTRACT, 8, 8, 63, false}, {SHEET_LIGHTNINGBUG, 4, 4, 16, false},
    {SHEET_LADYBUG, 4, 4, 16, false},      {SHEET_CATERPILLAR, 4, 4, 16, false},
    {SHEET_BEETLE, 4, 4, 16, false},       {SHEET_GRASSHOPPER, 4, 4, 16, false},
    {SHEET_LOG1, 2, 8, 15, false},         {SHEET_LOG3, 2, 8, 15, false},
    {SHEET_3TURTLES, 4, 16, 50, false},    {SHEET_1TURTLE, 8, 8, 50, false},
    {SHEET_1TURTLEGOLD, 8, 8, 50, false},  {SHEET_LOG4, 2, 8, 15, false},
    {SHEET_LOG4GOLD, 2, 8, 15, false},     {SHEET_BUTTERFLY, 8, 4, 32, false},
    {SHEET_CYCLETICKET, 4, 8, 18, false},
};

constexpr bool rows_in_order() {
  for (int i = 0; i < SHEET_COUNT; ++i) {
    if (sheet_rows[i].index != i) return false;
  }
  return true;
}
static_assert(rows_in_order());

}  // namespace

Panel panels[PANEL_COUNT];
SpriteSheet sheets[SHEET_COUNT];
NumberFont number_font;

void panel_table_load() {
  gfx_numbers_load(&number_font, 1, number_font_names);
  memory_keep_freed(true);
  gfx_panels_load(panels, PANEL_COUNT, panel_names);
  memory_keep_freed(false);
}

void panel_table_free() {
  gfx_panels_free(panels, PANEL_COUNT);
  gfx_numbers_free(&number_font, 1);
}

void sheet_table_fill() {
  for (const SheetRow& row : sheet_rows) {
    Panel& panel = panels[int{PANEL_FIRST_SHEET} + row.index];
    sheets[row.index] = {&panel, row.columns, row.rows, row.frames};
    panel.flags |= PANEL_SOURCE_RECT;
    panel.src_w = panel.width / row.columns;
    panel.src_h = panel.height / row.rows;
    if (row.scaled) {
      panel.flags |= PANEL_SCALED;
      panel.scale_x = panel.scale_y = 1.0F;
    }
  }
}

float sheet_half_width(const SpriteSheet& sheet) {
  const std::int32_t cell = sheet.panel->width / sheet.columns;  // whole pixels, as a cell is drawn
  return static_cast<float>(cell) * 0.5F;
}

float sheet_half_height(const SpriteSheet& sheet) {
  const std::int32_t cell = sheet.panel->height / sheet.rows;  // whole pixels, as a cell is drawn
  return static_cast<float>(cell) * 0.5F;
}
