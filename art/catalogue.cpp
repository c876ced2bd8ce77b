#include "art/catalogue.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "art/draw.h"

namespace art {

namespace {

// A sheet whose grid fills it.
constexpr CatalogueRow sheet(const char* name, int width, int height, int columns, int rows,
                             int frames, Play play, Draw draw, Twin twin = Twin::kNone,
                             unsigned touch = kTouchNone) {
  return {name,          width, height, columns, rows, frames, width / columns,
          height / rows, play,  twin,   touch,   draw};
}

constexpr CatalogueRow still(const char* name, int width, int height, Draw draw,
                             unsigned touch = kTouchNone) {
  return {name, width, height, 1, 1, 1, width, height, Play::kStill, Twin::kNone, touch, draw};
}

// Sixteen glyphs to a row from the top left corner of a picture that may be larger.
constexpr CatalogueRow font(const char* name, int width, int height, int glyph_width,
                            int glyph_height, Draw draw) {
  return {name,        width,        height,        16,          6,          95,
          glyph_width, glyph_height, Play::kGlyphs, Twin::kNone, kTouchNone, draw};
}

using C = const Cell&;

const CatalogueRow kRows[] = {
    // The first rows take longest, so that two threads end at about the same time.
    sheet("anim_frog_attract.png", 4096, 4096, 8, 8, 63, Play::kOnce, draw_attract_frog),
    sheet("anim_gfrog_win.tga", 4096, 2048, 16, 8, 88, Play::kOnce, draw_frog_win),
    sheet("anim_gfrog_idle2.tga", 4096, 1024, 16, 4, 60, Play::kOnce, draw_frog_look_round),
    sheet("anim_gfrog_idle3.tga", 4096, 1024, 16, 4, 60, Play::kOnce, draw_frog_yawn),
    sheet("anim_gfrog_idle1.tga", 4096, 1024, 16, 4, 60, Play::kLoop, draw_frog_breathe,
          Twin::kThereBack),
    sheet("anim_thumbs_up.png", 4096, 4096, 8, 8, 58, Play::kOnce, draw_thumb_up),
    sheet("anim_thumbs_idle.png", 4096, 2048, 8, 4, 28, Play::kLoop, draw_thumb_idle, Twin::kSwing),
    sheet("anim_3turtles.tga", 2048, 2048, 4, 16, 50, Play::kLoop, draw_three_turtles),
    sheet("anim_wave.tga", 1024, 1024, 8, 8, 64, Play::kLoop, draw_rider_wave),
    sheet("anim_kiss.tga", 1024, 1024, 8, 8, 42, Play::kOnce, draw_rider_kiss),
    sheet("anim_grn_rings.png", 4096, 2048, 8, 4, 30, Play::kLoop, draw_rings),
    sheet("anim_1turtle.tga", 1024, 1024, 8, 8, 50, Play::kLoop,
          [](C c) { draw_turtle(c, false); }),
    sheet("anim_1turtlegold.tga", 1024, 1024, 8, 8, 50, Play::kLoop,
          [](C c) { draw_turtle(c, true); }),
    sheet("anim_gfrog.tga", 2048, 512, 8, 2, 15, Play::kOnce, draw_frog_hop),

    sheet("anim_gfrog_splash.tga", 4096, 1024, 8, 4, 20, Play::kOnce, draw_water_crown),
    sheet("anim_splash.tga", 256, 256, 4, 4, 16, Play::kOnce, draw_small_splash),
    sheet("anim_spark.tga", 512, 512, 4, 4, 16, Play::kOnce, draw_spark),
    sheet("anim_hearts.tga", 512, 256, 8, 4, 30, Play::kOnce, draw_hearts),

    // Foliage hangs in from the screen's edges and is cut there.
    sheet(
        "plants1.tga", 2048, 1024, 8, 4, 31, Play::kLoop, [](C c) { draw_plant(c, 1); },
        Twin::kNone, kTouchLeft | kTouchTop),
    sheet(
        "plants2.tga", 2048, 1024, 8, 4, 31, Play::kLoop, [](C c) { draw_plant(c, 2); },
        Twin::kNone, kTouchLeft),
    sheet(
        "plants3.tga", 2048, 2048, 4, 8, 31, Play::kLoop, [](C c) { draw_plant(c, 3); },
        Twin::kNone, kTouchLeft | kTouchBottom),
    sheet(
        "plants4.tga", 2048, 1024, 8, 4, 31, Play::kLoop, [](C c) { draw_plant(c, 4); },
        Twin::kNone, kTouchRight),
    sheet(
        "plants5.tga", 2048, 1024, 8, 4, 31, Play::kLoop, [](C c) { draw_plant(c, 5); },
        Twin::kNone, kTouchRight | kTouchTop),
    sheet(
        "plants6.tga", 2048, 2048, 4, 8, 31, Play::kLoop, [](C c) { draw_plant(c, 6); },
        Twin::kNone, kTouchRight | kTouchBottom),
    sheet("anim_finish.tga", 4096, 2048, 8, 8, 40, Play::kLoop, draw_finish),
    sheet("anim_lilypad3.tga", 1024, 1024, 8, 8, 40, Play::kLoop, draw_lily_pad),
    sheet("anim_ctail1.tga", 1024, 1024, 8, 8, 40, Play::kLoop, [](C c) { draw_cattail(c, 1); }),
    sheet("anim_ctail2.tga", 1024, 1024, 8, 8, 40, Play::kLoop, [](C c) { draw_cattail(c, 2); }),
    sheet("anim_wdsign.tga", 2048, 1024, 8, 8, 40, Play::kLoop, [](C c) { draw_sign(c, false); }),
    sheet("anim_lngsign.tga", 2048, 1024, 8, 8, 41, Play::kLoop, [](C c) { draw_sign(c, true); }),

    sheet("anim_lightningbug.tga", 256, 256, 4, 4, 16, Play::kLoop, draw_lightningbug),
    sheet("anim_ladybug.tga", 256, 256, 4, 4, 16, Play::kLoop, draw_ladybug),
    sheet("anim_caterpillar.tga", 512, 512, 4, 4, 16, Play::kLoop, draw_caterpillar),
    sheet("anim_beetle.tga", 512, 512, 4, 4, 16, Play::kLoop, draw_beetle),
    sheet("anim_grasshopper.tga", 512, 512, 4, 4, 16, Play::kLoop, draw_grasshopper),
    sheet("anim_butterfly.tga", 2048, 1024, 8, 4, 32, Play::kLoop, draw_butterfly),
    sheet("anim_cycleticket.tga", 512, 512, 4, 8, 18, Play::kLoop, draw_cycle_ticket),

    // A log fills its cell of the lane from edge to edge: two neighbours meet without a gap.
    sheet(
        "anim_log1.tga", 1024, 512, 2, 8, 15, Play::kLoop, [](C c) { draw_log(c, 386, false); },
        Twin::kNone, kTouchLeft),
    sheet(
        "anim_log3.tga", 1024, 512, 2, 8, 15, Play::kLoop, [](C c) { draw_log(c, 302, false); },
        Twin::kNone, kTouchLeft),
    sheet(
        "anim_log4.tga", 512, 512, 2, 8, 15, Play::kLoop, [](C c) { draw_log(c, 166, false); },
        Twin::kNone, kTouchLeft),
    sheet(
        "anim_log4gold.tga", 512, 512, 2, 8, 15, Play::kLoop, [](C c) { draw_log(c, 166, true); },
        Twin::kNone, kTouchLeft),

    still(
        "bkdrop_lft.bmp", 680, 768, [](C c) { draw_backdrop(c, false); }, kTouchAll),
    still(
        "bkdrop_rt.bmp", 680, 768, [](C c) { draw_backdrop(c, true); }, kTouchAll),
    still(
        "grass_lft.tga", 1024, 128, [](C c) { draw_grass(c, false); }, kTouchLeft | kTouchBottom),
    still(
        "grass_rt.tga", 1024, 128, [](C c) { draw_grass(c, true); }, kTouchLeft | kTouchBottom),
    still("shadow.tga", 256, 1024, draw_shadow, kTouchLeft | kTouchTop),
    still("dpatch.tga", 256, 128, [](C c) { draw_patch(c, 1); }),
    still("dpatch2.tga", 256, 128, [](C c) { draw_patch(c, 2); }),
    still(
        "riverfoam_1.tga", 512, 512, [](C c) { draw_foam(c, 1); }, kTouchLeft),
    still(
        "riverfoam_2.tga", 512, 512, [](C c) { draw_foam(c, 2); }, kTouchLeft),

    still("demo.tga", 128, 64, draw_demo),
    still("ticket.tga", 128, 128, draw_ticket),
    still("pink_ticket.tga", 128, 64, draw_pink_ticket),
    still("you_won_tck.tga", 128, 128, draw_you_won),
    still("lily_bonus_txt.tga", 64, 32, draw_lily_bonus),
    still("lilyhoplogo.tga", 1024, 512, draw_logo),
    still("slymarvels.tga", 512, 512, draw_mark_slymarvels),
    still("tovali.tga", 512, 512, draw_mark_tovali),
    still("orblogo.tga", 512, 512, draw_mark_orb),
    still("playtowin.tga", 512, 512, draw_mark_play_to_win),
    still("eat_bugs_tck.tga", 1024, 512, draw_eat_bugs_board),
    still("lrg_lilypad.tga", 1024, 512, draw_big_lily_pad),
    // 52 pixels from one to the next; the middle one stands under a line of words.
    still("frogicon.tga", 64, 64, [](C c) { draw_frog_icon(c, 11.2, 42); }),
    still("frogiconmed.tga", 128, 128, [](C c) { draw_frog_icon(c, 19.5, 88); }),
    still("frogiconlrg.tga", 128, 128, [](C c) { draw_frog_icon(c, 23, 79); }),
    still("num_frogs_txt.tga", 128, 32, draw_frogs_label),
    still("win.tga", 512, 128, [](C c) { draw_win_words(c, false); }),
    still("tickets.tga", 512, 128, [](C c) { draw_win_words(c, true); }),
    still("jack_0.tga", 256, 256, [](C c) { draw_jackpot_digit(c, 0); }),
    still("jack_1.tga", 256, 256, [](C c) { draw_jackpot_digit(c, 1); }),
    still("jack_2.tga", 256, 256, [](C c) { draw_jackpot_digit(c, 2); }),
    still("jack_3.tga", 256, 256, [](C c) { draw_jackpot_digit(c, 3); }),
    still("jack_4.tga", 256, 256, [](C c) { draw_jackpot_digit(c, 4); }),
    still("jack_5.tga", 256, 256, [](C c) { draw_jackpot_digit(c, 5); }),
    still("jack_6.tga", 256, 256, [](C c) { draw_jackpot_digit(c, 6); }),
    still("jack_7.tga", 256, 256, [](C c) { draw_jackpot_digit(c, 7); }),
    still("jack_8.tga", 256, 256, [](C c) { draw_jackpot_digit(c, 8); }),
    still("jack_9.tga", 256, 256, [](C c) { draw_jackpot_digit(c, 9); }),

    still("press_grn_txt.tga", 256, 128, [](C c) { draw_prompt(c, "PRESS", false, 30); }),
    still("button_grn_txt.tga", 256, 128, [](C c) { draw_prompt(c, "BUTTON", false, 40); }),
    still("press_to_grn_txt.tga", 256, 128, [](C c) { draw_prompt(c, "PRESS TO", false, 30); }),
    still("start_grn_txt.tga", 256, 128, [](C c) { draw_prompt(c, "START!", false, 28); }),
    still("press_ylw_txt.tga", 256, 128, [](C c) { draw_prompt(c, "PRESS", true, 30); }),
    still("button_ylw_txt.tga", 256, 128, [](C c) { draw_prompt(c, "BUTTON", true, 40); }),
    still("prsbtn_frog_up.tga", 256, 128, [](C c) { draw_button(c, false, false); }),
    still("prsbtn_frog_dn.tga", 256, 128, [](C c) { draw_button(c, false, true); }),
    still("prsbtn_ylw_up.tga", 256, 128, [](C c) { draw_button(c, true, false); }),
    still("prsbtn_ylw_dn.tga", 256, 128, [](C c) { draw_button(c, true, true); }),
    still("insertcoin_grn.tga", 256, 256, [](C c) { draw_insert_coin(c, false); }),
    still("insertcoin_ylw.tga", 256, 256, [](C c) { draw_insert_coin(c, true); }),
    still("swipe_crd.tga", 256, 256, draw_swipe_card),
    still("msg1_bubble.tga", 256, 128, [](C c) { draw_bubble(c, "WIN", "TICKETS!"); }),
    still("msg2_bubble.tga", 256, 128, [](C c) { draw_bubble(c, "PLAY", "AGAIN!"); }),
    still("msg3_bubble.tga", 256, 128, [](C c) { draw_bubble(c, "EAT", "BUGS!"); }),
    still("ticketerror.tga", 512, 512, draw_ticket_error),
    still("ioerror.tga", 512, 256, draw_io_error),

    font("fonts/font8x12.bmp", 128, 72, 8, 12, draw_glyph_8x12),
    font("fonts/zoinks11x17.tga", 256, 128, 11, 17, draw_glyph_chunky),
    font("fonts/zoinks14x22.tga", 256, 256, 14, 22, draw_glyph_chunky),
    font("fonts/zoinks29x43.tga", 512, 512, 29, 43, draw_glyph_chunky),
    font("fonts/zoinks58x90.tga", 1024, 1024, 58, 90, draw_glyph_chunky),
    font("fonts/zoinks78x120.tga", 2048, 1024, 78, 120, draw_glyph_chunky),
    {"fonts/numbers_credits.bmp", 80, 12, 10, 1, 10, 8, 12, Play::kGlyphs, Twin::kNone, kTouchNone,
     draw_credit_digit},
};

}  // namespace

std::span<const CatalogueRow> catalogue() {
  return kRows;
}

const CatalogueRow* catalogue_find(std::string_view name) {
  for (const CatalogueRow& row : kRows) {
    std::string_view full = row.name;
    std::string_view file = full.substr(full.rfind('/') == full.npos ? 0 : full.rfind('/') + 1);
    if (name == full || name == file || name == file.substr(0, file.rfind('.'))) return &row;
  }
  return nullptr;
}

int catalogue_twin(const CatalogueRow& row, int frame) {
  int other = row.twin == Twin::kSwing       ? (row.frames - frame) % row.frames
              : row.twin == Twin::kThereBack ? row.frames - 1 - frame
                                             : frame;
  return other < frame ? other : frame;
}

Picture catalogue_render(const CatalogueRow& row) {
  Picture picture(row.width, row.height);
  Canvas canvas(row.cell_width, row.cell_height);
  const bool keyed = std::strstr(row.name, ".bmp") != nullptr;
  if (keyed) {
    // What no cell covers is the colour that the loader makes transparent.
    for (size_t i = 0; i < picture.rgba.size(); i += 4)
      picture.rgba[i] = picture.rgba[i + 2] = picture.rgba[i + 3] = 255;
  }
  for (int frame = 0; frame < row.frames; frame++) {
    int x = frame % row.columns * row.cell_width, y = frame / row.columns * row.cell_height;
    int twin = catalogue_twin(row, frame);
    if (twin != frame) {
      int from_x = twin % row.columns * row.cell_width;
      int from_y = twin / row.columns * row.cell_height;
      for (int line = 0; line < row.cell_height; line++)
        std::memcpy(picture.at(x, y + line), picture.at(from_x, from_y + line),
                    static_cast<size_t>(row.cell_width) * 4);
      continue;
    }
    canvas.clear();
    if (keyed) {
      cairo_set_source_rgb(canvas.ctx, 1, 0, 1);
      cairo_paint(canvas.ctx);
    }
    cairo_save(canvas.ctx);
    row.draw({canvas.ctx, row.cell_width, row.cell_height, frame, row.frames});
    cairo_restore(canvas.ctx);
    // A context in error draws nothing more and says nothing: all later frames would repeat this
    // one.
    if (cairo_status(canvas.ctx) != CAIRO_STATUS_SUCCESS) {
      std::fprintf(stderr, "%s frame %d: %s\n", row.name, frame,
                   cairo_status_to_string(cairo_status(canvas.ctx)));
      std::abort();
    }
    picture_take(picture, canvas, x, y);
  }
  return picture;
}

}  // namespace art
