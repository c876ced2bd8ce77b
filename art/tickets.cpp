// Paper tickets, on which the game writes numbers.
#include <cmath>
#include <initializer_list>

#include "art/catalogue.h"
#include "art/palette.h"
#include "art/relief.h"

namespace art {

namespace {

struct TicketStyle {
  Colour paper, print;
  Colour panel;  // behind the number, and the tint of the paper's rim
};
constexpr TicketStyle kPaidTicket{{1.0, 0.80, 0.28}, {0.78, 0.30, 0.04}, {1.0, 0.985, 0.90}};
constexpr TicketStyle kPinkTicket{{0.98, 0.40, 0.66}, {1.0, 0.86, 0.92}, {0.60, 0.03, 0.30}};
constexpr TicketStyle kMysteryTicket{{0.56, 0.30, 0.92}, {1.0, 0.84, 0.30}, {0.24, 0.06, 0.46}};

// Torn off a roll: perforation marks along both ends.
Path ticket_shape(double x, double y, double w, double h) {
  return [=](cairo_t* c) {
    const int bites = 4;
    const double l = x - w / 2, r = x + w / 2, t = y - h / 2, b = y + h / 2;
    const double step = h / bites, bite = step * 0.27, corner = step * 0.20;
    cairo_new_path(c);
    cairo_arc(c, l + corner, t + corner, corner, kTau / 2, kTau * 0.75);
    cairo_arc(c, r - corner, t + corner, corner, -kTau / 4, 0);
    for (int i = 0; i < bites; i++)
      cairo_arc_negative(c, r, t + (i + 0.5) * step, bite, -kTau / 4, kTau / 4);
    cairo_arc(c, r - corner, b - corner, corner, 0, kTau / 4);
    cairo_arc(c, l + corner, b - corner, corner, kTau / 4, kTau / 2);
    for (int i = bites - 1; i >= 0; i--)
      cairo_arc_negative(c, l, t + (i + 0.5) * step, bite, kTau / 4, -kTau / 4);
    cairo_close_path(c);
  };
}

// A ticket round (x, y), its ends printed with stars.
void draw_blank(cairo_t* c, double x, double y, double w, double h, const TicketStyle& style) {
  const Path shape = ticket_shape(x, y, w, h);
  stroke(c, shape, dim(mix(style.paper, style.panel, 0.3), 0.22), h * 0.10);
  raise(c, shape,
        [&](cairo_t* k) {
          ramp({0, y - h / 2}, mix(style.paper, kWhite, 0.25), {0, y + h / 2},
               dim(style.paper, 0.92))(k);
          stroke(k, round_rect(x - w * 0.425, y - h * 0.40, w * 0.85, h * 0.80, h * 0.10),
                 style.print, h * 0.045);
          for (double side : {-1.0, 1.0})
            fill(k, star(x + side * w * 0.352, y, h * 0.125, h * 0.058, 5), style.print);
        },
        {h * 0.075, 0.7, 0.5, 0});
}

// The same with a plain panel for the number.
void draw_paper(cairo_t* c, double x, double y, double w, double h, const TicketStyle& style) {
  draw_blank(c, x, y, w, h, style);
  const Path panel = round_rect(x - w * 0.265, y - h * 0.32, w * 0.53, h * 0.64, h * 0.13);
  stroke(c, panel, style.print, h * 0.07);
  fill_linear(c, panel, {x, y - h * 0.3}, dim(style.panel, 0.94), {x, y + h * 0.1}, style.panel);
}

// A frog's face round (64, 64) that is complete without a number. Up to three digits fit between
// its eyes and its mouth, on a brow pale enough for the game's red.
void draw_face(cairo_t* c) {
  const Colour ink{0.08, 0.34, 0.05}, brow{0.95, 1.0, 0.76}, jaw{0.54, 0.85, 0.24};
  const Path head = round_rect(32.5, 50.5, 63, 38.5, 19);
  const Path lids = joined({circle(45, 47, 10), circle(83, 47, 10)});
  stroke(c, joined({head, lids}), ink, 5);
  raise(c, lids, ramp({0, 38}, mix(jaw, brow, 0.5), {0, 58}, kFrogGreen), {4, 0.8, 0.3, 0});
  raise(c, head, ramp({0, 75}, brow, {0, 90}, jaw), {3, 0.6, 0.2, 0});
  for (double side : {-1.0, 1.0}) {
    const double x = 64 + side * 19;
    fill(c, circle(x, 46, 7.2), kWhite);
    fill(c, circle(x - side * 0.8, 46.7, 5), kInk);
    fill(c, circle(x - 2.2, 44.5, 1.9), kWhite);
    fill(c, ellipse(64 + side * 24.5, 80.5, 4.2, 2.8), {1.0, 0.56, 0.50}, 0.75);
  }
  cairo_set_line_cap(c, CAIRO_LINE_CAP_ROUND);
  stroke(
      c,
      [](cairo_t* k) {
        cairo_new_path(k);
        cairo_move_to(k, 46, 80.3);
        cairo_curve_to(k, 53, 86.8, 75, 86.8, 82, 80.3);
      },
      ink, 3);
}

void draw_ticket(const Cell& cell) {
  soft_spot(cell.ctx, 66, 70, 58, 32, kBlack, 0.35);
  draw_blank(cell.ctx, 64, 64, 104, 56, kPaidTicket);
  draw_face(cell.ctx);
}

void draw_pink_ticket(const Cell& cell) {
  soft_spot(cell.ctx, 65, 36, 50, 25, kBlack, 0.35);
  draw_paper(cell.ctx, 64, 32, 92, 48, kPinkTicket);
}

void draw_cycle_ticket(const Cell& cell) {
  // Turning about its vertical axis, slowest when it faces the viewer: the number stays in place.
  cairo_t* c = cell.ctx;
  const double a = kTau * cell.turn(), angle = a - 0.30 * std::sin(2 * a), k = std::cos(angle);
  // Never quite edge on, so that the game's number stays on the paper.
  const double width = 0.28 + 0.72 * std::fabs(k), shade = 0.62 + 0.38 * width;
  TicketStyle style = kMysteryTicket;
  for (Colour* part : {&style.paper, &style.print, &style.panel}) *part = dim(*part, shade);
  cairo_translate(c, 64, 32);
  cairo_scale(c, width, 1);
  cairo_translate(c, -64, -32);
  draw_paper(c, 64, 32, 96, 50, style);
  // A gleam crosses the paper as it comes round.
  const double gleam = std::sin(angle) * (k < 0 ? -1 : 1);
  cairo_save(c);
  ticket_shape(64, 32, 96, 50)(c);
  cairo_clip(c);
  const double x = 64 + 96 * gleam;
  fill(c, polygon({{x - 4, 4}, {x + 12, 4}, {x, 60}, {x - 16, 60}}), kWhite, 0.40 * width);
  cairo_restore(c);
}

void draw_you_won(const Cell& cell) {
  // Frogs and riders stand behind it and other plates above and below, so it is no more than a tab
  // on the upper edge of the ticket, whose middle is four pixels below the cell's.
  cairo_t* c = cell.ctx;
  constexpr double kX = 64, kY = 29, kWidth = 96;
  const Path tab = round_rect(kX - kWidth / 2, kY - 11.5, kWidth, 40, 12);
  stroke(c, tab, {0.28, 0.02, 0.05}, 6);
  raise(c, tab, ramp({0, kY - 12}, {0.96, 0.18, 0.20}, {0, kY + 12}, {0.74, 0.05, 0.12}),
        {4, 0.8, 0.5, 0});
  Block style = kCreamLetters;
  style.top = kWhite;
  style.bottom = {1.0, 0.90, 0.52};
  style.ink = style.side = {0.30, 0.02, 0.05};
  style.rim = 2;
  style.depth = 1;
  style.relief = {3, 0.6, 0.3, 0};
  block_words(c, "YOU WON", 24, style, kX, kY - 0.5, 90);
}

constexpr CatalogueRow kRows[] = {
    sheet(SHEET_CYCLETICKET, 128, 64, Play::kLoop, draw_cycle_ticket),
    still(PANEL_TICKET, 128, 128, draw_ticket),
    still(PANEL_PINK_TICKET, 128, 64, draw_pink_ticket),
    still(PANEL_YOU_WON_TCK, 128, 128, draw_you_won),
};

}  // namespace

const Family kTicketsFamily{"art/tickets.cpp", kRows};

}  // namespace art
