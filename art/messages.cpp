// Tickets, labels, prompts, speech and faults.
#include <cmath>

#include "art/catalogue.h"
#include "art/palette.h"

namespace art {

namespace {

const WordStyle kGreenWords{Face::kChunky, 58, {0.92, 1.0, 0.62}, {0.34, 0.84, 0.10}, kForest, 5};
const WordStyle kYellowWords{Face::kChunky,      58, {1, 1, 0.72}, {1.0, 0.70, 0.06},
                             {0.36, 0.14, 0.01}, 5};

// A paper ticket round (x, y): notches at both ends, a dashed line along the rim.
void paper_ticket(cairo_t* c, double x, double y, double w, double h, Colour paper, Colour print) {
  double notch = h * 0.17;
  Path shape = [=](cairo_t* k) {
    double l = x - w / 2, r = x + w / 2, t = y - h / 2, b = y + h / 2, corner = h * 0.10;
    cairo_new_path(k);
    cairo_arc(k, l + corner, t + corner, corner, kTau / 2, kTau * 0.75);
    cairo_arc(k, r - corner, t + corner, corner, -kTau / 4, 0);
    cairo_arc_negative(k, r, y, notch, -kTau / 4, kTau / 4);
    cairo_arc(k, r - corner, b - corner, corner, 0, kTau / 4);
    cairo_arc(k, l + corner, b - corner, corner, kTau / 4, kTau / 2);
    cairo_arc_negative(k, l, y, notch, kTau / 4, -kTau / 4);
    cairo_close_path(k);
  };
  stroke(c, shape, dim(print, 0.55), 4.5);
  fill_linear(c, shape, {x, y - h / 2}, mix(paper, kWhite, 0.45), {x, y + h / 2},
              mix(paper, dim(print, 0.9), 0.30));
  cairo_save(c);
  const double dash[] = {4, 3};
  cairo_set_dash(c, dash, 2, 0);
  stroke(c, round_rect(x - w / 2 + notch + 4, y - h / 2 + 5, w - 2 * notch - 8, h - 10, 4), print,
         1.5, 0.8);
  cairo_restore(c);
}

void draw_ticket(const Cell& cell) {
  // Red digits stand on it.
  soft_spot(cell.ctx, 66, 70, 56, 32, kBlack, 0.35);
  paper_ticket(cell.ctx, 64, 64, 98, 54, {1.0, 0.93, 0.62}, {0.85, 0.45, 0.08});
}

void draw_you_won(const Cell& cell) {
  cairo_t* c = cell.ctx;
  // A burst behind the ticket, which covers its middle.
  puff(c, star(64, 64, 58, 45, 16), {0.26, 0.62, 0.98}, 64, 64, 60, 2, 0.2);
  WordStyle style{Face::kChunky, 25, kWhite, {1.0, 0.96, 0.60}, {0.03, 0.10, 0.36}, 3};
  words(c, "YOU WON", style, 64, 26, 104);
  words(c, "TICKETS", style, 64, 106, 96);
}

void draw_pink_ticket(const Cell& cell) {
  soft_spot(cell.ctx, 65, 36, 46, 24, kBlack, 0.35);
  paper_ticket(cell.ctx, 64, 32, 84, 44, {0.95, 0.26, 0.56}, {0.66, 0.08, 0.34});
}

void draw_demo(const Cell& cell) {
  WordStyle style{Face::kChunky, 40, kWhite, {0.80, 0.94, 1.0}, {0.04, 0.12, 0.34}, 4};
  words(cell.ctx, "DEMO", style, 64, 32, 122);
}

void draw_lily_bonus(const Cell& cell) {
  WordStyle style{Face::kChunky, 22, kWhite, {1.0, 0.90, 0.40}, {0.28, 0.06, 0.16}, 2.5};
  words(cell.ctx, "BONUS", style, 32, 17, 60);
}

void draw_frogs_label(const Cell& cell) {
  // Its middle is that of the sign, 47 pixels from its left.
  WordStyle style{Face::kChunky, 22, kWhite, {1.0, 0.92, 0.60}, {0.28, 0.12, 0.02}, 2.5};
  words(cell.ctx, "FROGS", style, 47, 20, 90);
}

void draw_win_words(const Cell& cell, bool tickets) {
  WordStyle style{Face::kChunky, 132, {1, 1, 0.66}, {1.0, 0.56, 0.06}, {0.34, 0.08, 0.02}, 10};
  if (tickets) {
    style.size = 112;
    words(cell.ctx, "TICKETS!", style, 257, 64, 500);
  } else {
    words(cell.ctx, "WIN", style, 173, 64, 330);
  }
}

void draw_prompt(const Cell& cell, const char* text, bool yellow, double y) {
  WordStyle style = yellow ? kYellowWords : kGreenWords;
  style.size = 52;
  words(cell.ctx, text, style, 128, y, 248);
}

void draw_button(const Cell& cell, bool yellow, bool down) {
  cairo_t* c = cell.ctx;
  // A round push button lying on the ground; the countdown stands on its face.
  const double x = 91, travel = down ? 13 : 0;
  Colour base = yellow ? Colour{1.0, 0.78, 0.10} : Colour{0.30, 0.78, 0.14};
  soft_spot(c, x, 96, 88, 30, kBlack, 0.5);
  puff(c, ellipse(x, 88, 80, 32), {0.30, 0.31, 0.36}, x, 84, 80, 2.5, 0.25);
  puff(c, ellipse(x, 84, 68, 26), {0.16, 0.16, 0.20}, x, 84, 70, 1.5, 0);
  double top = 50 + travel;
  Path side = [=](cairo_t* k) {
    cairo_new_path(k);
    cairo_save(k);
    cairo_translate(k, x, 82);
    cairo_scale(k, 62, 23);
    cairo_arc(k, 0, 0, 1, 0, kTau / 2);
    cairo_restore(k);
    cairo_save(k);
    cairo_translate(k, x, top + 14);
    cairo_scale(k, 62, 26);
    cairo_arc(k, 0, 0, 1, kTau / 2, kTau);
    cairo_restore(k);
    cairo_close_path(k);
  };
  puff(c, side, dim(base, 0.72), x - 10, 74, 70, 2.5, 0);
  puff(c, ellipse(x, top + 14, 62, 26), base, x, top + 10, 62, 2, 0.5);
  stroke(c, ellipse(x, top + 15, 50, 19), mix(base, kWhite, 0.5), 2, 0.6);
  if (down) return;
  // A pointing arrow while it is up: push here.
  puff(c,
       polygon({{x - 12, 4},
                {x + 12, 4},
                {x + 12, 17},
                {x + 24, 17},
                {x, 36},
                {x - 24, 17},
                {x - 12, 17}}),
       kWhite, x, 20, 24, 2.5, 0);
}

void draw_insert_coin(const Cell& cell, bool yellow) {
  cairo_t* c = cell.ctx;
  WordStyle style = yellow ? kYellowWords : kGreenWords;
  style.size = 62;
  words(c, "INSERT", style, 128, 36, 244);
  words(c, "COIN", style, 128, 218, 200);
  soft_spot(c, 130, 134, 66, 62, kBlack, 0.45);
  puff(c, circle(128, 126, 54), kGold, 128, 126, 56, 3, 0.6);
  stroke(c, circle(128, 126, 43), kGoldDark, 3, 0.8);
  fill(c, star(128, 127, 33, 13, 5), kGoldDark);
  fill(c, star(127, 125, 32, 13, 5), kGoldLight);
}

void draw_swipe_card(const Cell& cell) {
  cairo_t* c = cell.ctx;
  WordStyle style = kGreenWords;
  style.size = 62;
  words(c, "SWIPE", style, 128, 36, 244);
  words(c, "CARD", style, 128, 218, 220);
  soft_spot(c, 132, 136, 90, 56, kBlack, 0.4);
  cairo_translate(c, 128, 126);
  cairo_rotate(c, -0.10);
  puff(c, round_rect(-72, -44, 144, 88, 12), {0.18, 0.46, 0.90}, 0, 0, 90, 3, 0.35);
  fill(c, polygon({{-72, -28}, {72, -28}, {72, -8}, {-72, -8}}), {0.06, 0.06, 0.10});
  puff(c, circle(-42, 20, 13), kFrogGreen, -42, 20, 14, 1.5, 0.4);
  for (double y : {12.0, 24.0}) fill(c, round_rect(-18, y, 70, 6, 3), kWhite, 0.85);
}

void draw_bubble(const Cell& cell, const char* upper, const char* lower) {
  cairo_t* c = cell.ctx;
  // The frog that speaks sits at its left.
  Path bubble = [](cairo_t* k) {
    cairo_new_path(k);
    cairo_save(k);
    cairo_translate(k, 138, 58);
    cairo_scale(k, 110, 52);
    cairo_arc(k, 0, 0, 1, kTau * 0.46, kTau * 0.46 + kTau * 0.93);
    cairo_restore(k);
    cairo_line_to(k, 6, 104);
    cairo_close_path(k);
  };
  soft_spot(c, 140, 66, 114, 56, kBlack, 0.3);
  stroke(c, bubble, kForest, 7);
  fill_linear(c, bubble, {0, 6}, kWhite, {0, 110}, {0.84, 0.95, 0.86});
  WordStyle style{Face::kChunky, 38, {0.26, 0.72, 0.10}, {0.06, 0.44, 0.08}, kWhite, 0};
  words(c, upper, style, 138, 40, 150);
  style.top = {1.0, 0.46, 0.08};
  style.bottom = {0.84, 0.12, 0.06};
  words(c, lower, style, 138, 78, 176);
}

void fault_board(cairo_t* c, double w, double h, Colour base) {
  puff(c, round_rect(10, 10, w - 20, h - 20, 34), base, w / 2, h / 2, w * 0.6, 5, 0.1);
  puff(c, round_rect(28, 28, w - 56, h - 56, 22), {0.14, 0.05, 0.07}, w / 2, h / 2, w * 0.7, 2, 0);
}

void draw_ticket_error(const Cell& cell) {
  cairo_t* c = cell.ctx;
  // Shown at half size, with a line of the smallest font at y 106 of that, 212 here.
  fault_board(c, 512, 512, kRed);
  WordStyle style{Face::kChunky, 92, kWhite, kYellow, {0.30, 0.02, 0.02}, 6};
  words(c, "TICKET JAM", style, 256, 102, 420);
  fill(c, round_rect(76, 182, 360, 74, 16), kBlack, 0.85);
  stroke(c, round_rect(76, 182, 360, 74, 16), kYellow, 4, 0.9);
  cairo_save(c);
  cairo_translate(c, 256, 330);
  cairo_rotate(c, -0.12);
  paper_ticket(c, 0, 0, 168, 84, {1.0, 0.93, 0.62}, {0.85, 0.45, 0.08});
  cairo_restore(c);
  for (double tilt : {0.6, -0.6})
    stroke(c,
           capsule({256 - 62 * std::cos(tilt), 330 - 62 * std::sin(tilt)}, 1,
                   {256 + 62 * std::cos(tilt), 330 + 62 * std::sin(tilt)}, 1),
           kRed, 14);
  style.size = 62;
  words(c, "CALL ATTENDANT", style, 256, 436, 420);
}

void draw_io_error(const Cell& cell) {
  cairo_t* c = cell.ctx;
  fault_board(c, 512, 256, kRed);
  WordStyle style{Face::kChunky, 84, kWhite, kYellow, {0.30, 0.02, 0.02}, 6};
  words(c, "I/O ERROR", style, 256, 92, 420);
  style.size = 60;
  words(c, "CALL ATTENDANT", style, 256, 172, 420);
}

constexpr CatalogueRow kRows[] = {
    still("demo.tga", 128, 64, draw_demo),
    still("ticket.tga", 128, 128, draw_ticket),
    still("pink_ticket.tga", 128, 64, draw_pink_ticket),
    still("you_won_tck.tga", 128, 128, draw_you_won),
    still("lily_bonus_txt.tga", 64, 32, draw_lily_bonus),
    still("num_frogs_txt.tga", 128, 32, draw_frogs_label),
    still("win.tga", 512, 128, [](const Cell& c) { draw_win_words(c, false); }),
    still("tickets.tga", 512, 128, [](const Cell& c) { draw_win_words(c, true); }),
    still("press_grn_txt.tga", 256, 128, [](const Cell& c) { draw_prompt(c, "PRESS", false, 30); }),
    still("button_grn_txt.tga", 256, 128,
          [](const Cell& c) { draw_prompt(c, "BUTTON", false, 40); }),
    still("press_to_grn_txt.tga", 256, 128,
          [](const Cell& c) { draw_prompt(c, "PRESS TO", false, 30); }),
    still("start_grn_txt.tga", 256, 128,
          [](const Cell& c) { draw_prompt(c, "START!", false, 28); }),
    still("press_ylw_txt.tga", 256, 128, [](const Cell& c) { draw_prompt(c, "PRESS", true, 30); }),
    still("button_ylw_txt.tga", 256, 128,
          [](const Cell& c) { draw_prompt(c, "BUTTON", true, 40); }),
    still("prsbtn_frog_up.tga", 256, 128, [](const Cell& c) { draw_button(c, false, false); }),
    still("prsbtn_frog_dn.tga", 256, 128, [](const Cell& c) { draw_button(c, false, true); }),
    still("prsbtn_ylw_up.tga", 256, 128, [](const Cell& c) { draw_button(c, true, false); }),
    still("prsbtn_ylw_dn.tga", 256, 128, [](const Cell& c) { draw_button(c, true, true); }),
    still("insertcoin_grn.tga", 256, 256, [](const Cell& c) { draw_insert_coin(c, false); }),
    still("insertcoin_ylw.tga", 256, 256, [](const Cell& c) { draw_insert_coin(c, true); }),
    still("swipe_crd.tga", 256, 256, draw_swipe_card),
    still("msg1_bubble.tga", 256, 128, [](const Cell& c) { draw_bubble(c, "WIN", "TICKETS!"); }),
    still("msg2_bubble.tga", 256, 128, [](const Cell& c) { draw_bubble(c, "PLAY", "AGAIN!"); }),
    still("msg3_bubble.tga", 256, 128, [](const Cell& c) { draw_bubble(c, "EAT", "BUGS!"); }),
    still("ticketerror.tga", 512, 512, draw_ticket_error),
    still("ioerror.tga", 512, 256, draw_io_error),
};

}  // namespace

const Family kMessagesFamily{"art/messages.cpp", kRows};

}  // namespace art
