// Labels, prompts, speech and faults.
#include <cmath>
#include <initializer_list>

#include "art/catalogue.h"
#include "art/palette.h"
#include "art/relief.h"

namespace art {

namespace {

// --- Labels

void draw_demo(const Cell& cell) {
  // Pale letters on a dark badge: the frog behind it and the grass round it are both bright green.
  // The frog's ticket covers everything to the right of x 88.
  cairo_t* c = cell.ctx;
  constexpr double kX = 46, kY = 40;
  const Path badge = round_rect(kX - 40, kY - 17, 80, 34, 15);
  stroke(c, badge, {0.02, 0.04, 0.16}, 8);
  stroke(c, badge, kWhite, 4);
  fill_linear(c, badge, {0, kY - 17}, {0.16, 0.24, 0.62}, {0, kY + 17}, {0.05, 0.08, 0.32});
  Block style = kCreamLetters;
  style.ink = style.side = {0.02, 0.04, 0.20};
  style.top = kWhite;
  style.bottom = {1.0, 0.92, 0.50};
  style.rim = 2;
  style.depth = 1.5;
  style.relief = {3, 0.6, 0.3, 0};
  block_words(c, "DEMO", 36, style, kX, kY, 74);
}

Block small_letters() {
  Block style = kGoldLetters;
  style.top = {1.0, 0.98, 0.66};
  style.bottom = {1.0, 0.80, 0.20};
  style.rim = 2.6;
  style.depth = 1.5;
  style.relief = {2.4, 0.6, 0.3, 0};
  return style;
}

void draw_lily_bonus(const Cell& cell) {
  block_words(cell.ctx, "BONUS", 23, small_letters(), 32, 15, 60);
}

void draw_frogs_label(const Cell& cell) {
  // Its middle is the middle of the sign, 47 pixels from its left.
  block_words(cell.ctx, "FROGS", 23, small_letters(), 47, 18, 90);
}

void draw_win_words(const Cell& cell, bool tickets) {
  Block style = kCreamLetters;
  style.top = {1.0, 0.98, 0.80};
  style.bottom = {1.0, 0.80, 0.34};
  style.side = {0.86, 0.16, 0.10};
  style.ink = {0.30, 0.03, 0.04};
  style.rim = 9;
  style.depth = 8;
  style.relief.bevel = 14;
  if (tickets)
    block_words(cell.ctx, "TICKETS!", 112, style, 257, 64, 500);
  else
    block_words(cell.ctx, "WIN", 130, style, 173, 64, 330);
}

// --- Prompts

// The players' letters lie on a green meadow: they are lighter than others of their colour.
Block players_letters() {
  Block style = kGreenLetters;
  style.top = {1.0, 1.0, 0.82};
  style.bottom = {0.56, 1.0, 0.16};
  style.side = {0.06, 0.42, 0.10};
  style.ink = {0.0, 0.12, 0.05};
  style.rim = 6.5;
  return style;
}

void draw_prompt(const Cell& cell, const char* text) {
  block_words(cell.ctx, text, 52, players_letters(), 128, 30, 248);
}

void draw_arrow_down(cairo_t* c, double x, double tip) {
  const Path arrow = polygon({{x - 11, tip - 33},
                              {x + 11, tip - 33},
                              {x + 11, tip - 19},
                              {x + 25, tip - 19},
                              {x, tip},
                              {x - 25, tip - 19},
                              {x - 11, tip - 19}});
  stroke(c, arrow, kInk, 6);
  raise(c, arrow, ramp({0, tip - 34}, kWhite, {0, tip}, {1.0, 0.86, 0.40}), {5, 0.7, 0.4, 0});
}

void draw_button(const Cell& cell, bool down) {
  cairo_t* c = cell.ctx;
  // A round push button on the ground, lit while it is pressed; the countdown is on it.
  const double x = 91, top = down ? 87 : 76;
  const Colour own{0.22, 0.74, 0.10}, hot{0.66, 1.0, 0.30};
  soft_spot(c, x, 100, 87, 25, kBlack, 0.5);
  const Path foot = ellipse(x, 93, 82, 30);
  stroke(c, foot, kInk, 5);
  raise(c, foot, ramp({0, 62}, {0.86, 0.88, 0.92}, {0, 124}, {0.46, 0.48, 0.56}),
        {12, 0.8, 0.7, 0.6});
  fill(c, ellipse(x, 92, 67, 25.5), {0.08, 0.09, 0.13});
  const Path side = [=](cairo_t* k) {
    cairo_new_path(k);
    cairo_save(k);
    cairo_translate(k, x, 91);
    cairo_scale(k, 61, 25);
    cairo_arc(k, 0, 0, 1, 0, kTau / 2);
    cairo_restore(k);
    cairo_save(k);
    cairo_translate(k, x, top);
    cairo_scale(k, 61, 27);
    cairo_arc(k, 0, 0, 1, kTau / 2, kTau);
    cairo_restore(k);
    cairo_close_path(k);
  };
  stroke(c, side, dim(own, 0.22), 3);
  fill_linear(c, side, {x - 61, 0}, dim(own, 0.72), {x + 61, 0}, dim(own, 0.40));
  const Path face = ellipse(x, top, 61, 27);
  raise(c, face, ramp({0, top - 27}, down ? hot : mix(own, kWhite, 0.20), {0, top + 27}, own),
        {15, 0.55, 0.9, 0});
  draw_arrow_down(c, x, down ? 56 : 42);
}

void draw_coin(cairo_t* c, double x, double y, double r) {
  stroke(c, circle(x, y, r), {0.30, 0.13, 0.01}, 6);
  raise(c, circle(x, y, r), ramp({0, y - r}, {1.0, 0.90, 0.34}, {0, y + r}, {0.98, 0.66, 0.08}),
        {r * 0.20, 0.9, 0.9, 0.8});
  const Path field = circle(x, y, r * 0.76);
  stroke(c, field, {0.66, 0.36, 0.02}, 2.5);
  raise(c, field, ramp({0, y - r}, {0.92, 0.66, 0.10}, {0, y + r}, {1.0, 0.80, 0.22}),
        {r * 0.10, -0.6, 0.3, 0.4});
  const Path mark = star(x, y + 1, r * 0.60, r * 0.29, 5);
  stroke(c, mark, {0.62, 0.32, 0.02}, 2.5);
  raise(c, mark, plain({1.0, 0.88, 0.32}), {r * 0.16, 0.8, 0.7, 0.5});
}

// The slot for a coin or a card: a plate with a light.
void draw_slot(cairo_t* c, double x, double y, double w, double h) {
  const Path plate = round_rect(x - w / 2, y - h / 2, w, h, 13);
  stroke(c, plate, kInk, 6);
  raise(c, plate, ramp({0, y - h / 2}, {0.80, 0.83, 0.90}, {0, y + h / 2}, {0.42, 0.45, 0.55}),
        {7, 0.8, 0.6, 0.5});
  fill(c, round_rect(x - 9, y - h * 0.36, 18, h * 0.72, 9), {0.10, 0.02, 0.03});
  fill(c, round_rect(x - 4, y - h * 0.30, 8, h * 0.60, 4), {1.0, 0.30, 0.14});
}

void draw_arrow_right(cairo_t* c, double x, double y, const Block& style) {
  const Path arrow = polygon({{x - 16, y - 8},
                              {x, y - 8},
                              {x, y - 19},
                              {x + 19, y},
                              {x, y + 19},
                              {x, y + 8},
                              {x - 16, y + 8}});
  stroke(c, arrow, style.ink, 6);
  raise(c, arrow, ramp({0, y - 19}, style.top, {0, y + 19}, style.bottom), {5, 0.7, 0.5, 0});
}

void draw_insert_coin(const Cell& cell) {
  cairo_t* c = cell.ctx;
  const Block style = players_letters();
  block_words(c, "INSERT", 68, style, 128, 36, 248);
  soft_spot(c, 128, 140, 116, 56, kBlack, 0.35);
  draw_slot(c, 209, 128, 52, 104);
  draw_coin(c, 80, 128, 50);
  draw_arrow_right(c, 155, 128, style);
  block_words(c, "COIN", 68, style, 128, 219, 248);
}

void draw_swipe_card(const Cell& cell) {
  cairo_t* c = cell.ctx;
  block_words(c, "SWIPE", 68, players_letters(), 128, 36, 248);
  soft_spot(c, 128, 140, 116, 56, kBlack, 0.35);
  draw_slot(c, 215, 128, 46, 108);
  cairo_save(c);
  cairo_translate(c, 74, 128);
  cairo_rotate(c, -0.07);
  const Path card = round_rect(-62, -43, 124, 86, 12);
  stroke(c, card, kInk, 6);
  raise(c, card,
        [](cairo_t* k) {
          ramp({0, -43}, {0.36, 0.66, 1.0}, {0, 43}, {0.10, 0.34, 0.82})(k);
          fill(k, polygon({{-66, -27}, {66, -27}, {66, -7}, {-66, -7}}), {0.07, 0.07, 0.12});
          fill(k, heart(-40, 18, 12), {1.0, 0.90, 0.40});
          for (double y : {10.0, 22.0}) fill(k, round_rect(-14, y, 64, 6, 3), kWhite);
        },
        {5, 0.7, 0.5, 0});
  cairo_restore(c);
  draw_arrow_right(c, 163, 128, players_letters());
  block_words(c, "CARD", 68, players_letters(), 128, 219, 248);
}

// --- Speech

void draw_bubble(const Cell& cell, const char* upper, const char* lower) {
  cairo_t* c = cell.ctx;
  // The speaking frog sits at its left.
  const Path bubble = [](cairo_t* k) {
    cairo_new_path(k);
    cairo_move_to(k, 8, 96);
    cairo_curve_to(k, 26, 92, 32, 84, 33, 72);
    cairo_curve_to(k, 28, 26, 62, 8, 142, 8);
    cairo_curve_to(k, 220, 8, 249, 26, 249, 57);
    cairo_curve_to(k, 249, 90, 218, 107, 142, 107);
    cairo_curve_to(k, 104, 107, 78, 103, 60, 94);
    cairo_curve_to(k, 44, 100, 26, 102, 8, 96);
    cairo_close_path(k);
  };
  soft_spot(c, 144, 72, 108, 52, kBlack, 0.30);
  stroke(c, bubble, {0.03, 0.16, 0.07}, 8);
  raise(c, bubble, ramp({0, 8}, kWhite, {0, 108}, {0.86, 0.96, 0.90}), {12, 0.45, 0, 0});
  Block style = kGreenLetters;
  style.top = {0.40, 0.86, 0.14};
  style.bottom = {0.10, 0.60, 0.10};
  style.rim = 2.5;
  style.depth = 1.5;
  style.relief = {4, 0.7, 0.5, 0};
  block_words(c, upper, 42, style, 141, 37, 150);
  style.top = {1.0, 0.64, 0.10};
  style.bottom = {0.94, 0.24, 0.06};
  style.ink = {0.36, 0.04, 0.01};
  style.side = {0.62, 0.10, 0.02};
  block_words(c, lower, 48, style, 141, 77, 184);
}

// --- Faults

// A board of signal red with a dark field, the same for each fault.
void draw_fault_board(cairo_t* c, double w, double h) {
  const Path board = round_rect(9, 9, w - 18, h - 18, 36);
  stroke(c, board, {0.22, 0.01, 0.01}, 9);
  raise(c, board, ramp({0, 0}, {1.0, 0.26, 0.18}, {0, h}, {0.78, 0.06, 0.06}), {15, 0.8, 0.5, 0});
  const Path field = round_rect(30, 30, w - 60, h - 60, 20);
  stroke(c, field, {0.30, 0.01, 0.01}, 4);
  raise(c, field, ramp({0, 0}, {0.20, 0.09, 0.12}, {0, h}, {0.10, 0.04, 0.07}), {8, -0.5, 0, 0});
}

Block fault_letters(bool loud) {
  Block style = loud ? kYellowLetters : kCreamLetters;
  style.ink = {0.05, 0.01, 0.02};
  style.rim = 5;
  style.depth = 4;
  style.relief = {8, 0.6, 0.3, 0};
  return style;
}

void draw_warning(cairo_t* c, double x, double y, double size) {
  const double h = size * 0.86;
  const Path triangle =
      polygon({{x, y - h / 2}, {x + size / 2, y + h / 2}, {x - size / 2, y + h / 2}});
  stroke(c, triangle, kInk, size * 0.34);
  stroke(c, triangle, kYellow, size * 0.20);
  raise(c, triangle, plain(kYellow), {size * 0.08, 0.5, 0.2, 0});
  fill(c, capsule({x, y - h * 0.22}, size * 0.075, {x, y + h * 0.12}, size * 0.05), kInk);
  fill(c, circle(x, y + h * 0.34, size * 0.075), kInk);
}

// A dispenser's mouth with a ticket that is jammed and folded.
void draw_stuck_ticket(cairo_t* c, double x, double y) {
  const Path plate = round_rect(x - 108, y - 52, 216, 58, 16);
  stroke(c, plate, {0.02, 0.02, 0.03}, 6);
  raise(c, plate, ramp({0, y - 52}, {0.78, 0.80, 0.86}, {0, y + 6}, {0.40, 0.42, 0.50}),
        {9, 0.8, 0.5, 0.5});
  fill(c, round_rect(x - 84, y - 32, 168, 20, 10), {0.04, 0.03, 0.05});
  const Colour paper{1.0, 0.82, 0.30}, dark{0.80, 0.50, 0.10}, print{0.78, 0.30, 0.04};
  const Point fold[4][2] = {{{x - 70, y - 22}, {x + 70, y - 22}},
                            {{x - 62, y + 14}, {x + 78, y + 20}},
                            {{x - 82, y + 30}, {x + 58, y + 44}},
                            {{x - 66, y + 62}, {x + 70, y + 70}}};
  for (int i = 0; i < 3; i++) {
    const Path leaf = polygon({fold[i][0], fold[i][1], fold[i + 1][1], fold[i + 1][0]});
    stroke(c, leaf, {0.28, 0.12, 0.01}, 6);
    fill_linear(c, leaf, fold[i][0], i == 1 ? dark : paper, fold[i + 1][0],
                i == 1 ? dim(dark, 0.8) : mix(paper, dark, 0.25));
  }
  // Print on the part that hangs out, and the holes along its foot.
  fill(c, star(x - 8, y + 47, 11, 5, 5), print);
  for (double side : {-42.0, 26.0})
    stroke(c, capsule({x + side, y + 44}, 1, {x + side + 16, y + 46}, 1), print, 3);
  for (int i = 0; i < 6; i++)
    fill(c, circle(x - 58 + i * 24, y + 63 + i * 1.4, 4), {0.12, 0.05, 0.07});
}

void draw_ticket_error(const Cell& cell) {
  cairo_t* c = cell.ctx;
  // Shown at half size; there a line of the smallest font is at y 106, which is 212 here.
  draw_fault_board(c, 512, 512);
  draw_warning(c, 94, 104, 74);
  Block style = fault_letters(true);
  block_words(c, "TICKET", 80, style, 302, 78, 300);
  block_words(c, "FAULT", 80, style, 302, 142, 300);
  const Path window = round_rect(72, 190, 368, 66, 18);
  fill(c, window, kBlack);
  stroke(c, window, {0.95, 0.80, 0.30}, 5);
  draw_stuck_ticket(c, 256, 324);
  block_words(c, "CALL ATTENDANT", 66, fault_letters(false), 256, 440, 430);
}

// Two halves of an unplugged connector.
void draw_parted_plug(cairo_t* c, double x, double y) {
  for (double side : {-1.0, 1.0}) {
    cairo_save(c);
    cairo_translate(c, x, y);
    cairo_scale(c, side, 1);
    const Path cable = [](cairo_t* k) {
      cairo_new_path(k);
      cairo_move_to(k, 60, 0);
      cairo_curve_to(k, 90, 0, 84, 26, 120, 22);
    };
    stroke(c, cable, kInk, 19);
    stroke(c, cable, {0.62, 0.64, 0.72}, 11);
    const Path body = round_rect(22, -25, 46, 50, 11);
    stroke(c, body, kInk, 6);
    raise(c, body, ramp({0, -26}, {0.98, 0.82, 0.30}, {0, 26}, {0.92, 0.56, 0.10}),
          {8, 0.8, 0.5, 0});
    if (side < 0)
      for (double pin : {-11.0, 11.0}) {
        stroke(c, round_rect(4, pin - 4, 18, 8, 3), kInk, 4);
        fill(c, round_rect(4, pin - 4, 18, 8, 3), {0.86, 0.88, 0.94});
      }
    cairo_restore(c);
  }
}

void draw_io_error(const Cell& cell) {
  cairo_t* c = cell.ctx;
  draw_fault_board(c, 512, 256);
  draw_warning(c, 92, 78, 64);
  block_words(c, "I/O ERROR", 74, fault_letters(true), 300, 76, 320);
  draw_parted_plug(c, 256, 136);
  block_words(c, "CALL ATTENDANT", 62, fault_letters(false), 256, 196, 430);
}

constexpr CatalogueRow kRows[] = {
    still(PANEL_DEMO, 128, 64, draw_demo),
    still(PANEL_LILY_BONUS_TXT, 64, 32, draw_lily_bonus),
    still(PANEL_NUM_FROGS_TXT, 128, 32, draw_frogs_label),
    still(PANEL_WIN, 512, 128, [](const Cell& c) { draw_win_words(c, false); }),
    still(PANEL_TICKETS, 512, 128, [](const Cell& c) { draw_win_words(c, true); }),
    still(PANEL_PRESS_TO_GRN_TXT, 256, 128, [](const Cell& c) { draw_prompt(c, "PRESS TO"); }),
    still(PANEL_START_GRN_TXT, 256, 128, [](const Cell& c) { draw_prompt(c, "START!"); }),
    still(PANEL_PRSBTN_FROG_UP, 256, 128, [](const Cell& c) { draw_button(c, false); }),
    still(PANEL_PRSBTN_FROG_DN, 256, 128, [](const Cell& c) { draw_button(c, true); }),
    still(PANEL_INSERTCOIN_GRN, 256, 256, draw_insert_coin),
    still(PANEL_SWIPE_CRD, 256, 256, draw_swipe_card),
    still(PANEL_MSG1_BUBBLE, 256, 128, [](const Cell& c) { draw_bubble(c, "WIN", "TICKETS!"); }),
    still(PANEL_MSG2_BUBBLE, 256, 128, [](const Cell& c) { draw_bubble(c, "PLAY", "AGAIN!"); }),
    still(PANEL_MSG3_BUBBLE, 256, 128, [](const Cell& c) { draw_bubble(c, "EAT", "BUGS!"); }),
    still(PANEL_TICKETERROR, 512, 512, draw_ticket_error),
    still(PANEL_IOERROR, 512, 256, draw_io_error),
};

}  // namespace

const Family kMessagesFamily{"art/messages.cpp", kRows};

}  // namespace art
