// The tables of the field, a second copy.
#pragma once

#include "gfx/panel_table.h"
#include "playfield/playfield.h"

struct LaneFacts {
  int y, height;
  float speed;
  int cell_size, sprite_w;
  SheetIndex sheet;
  int frames;
  float cycle_s;
  const char* cells;
};
constexpr const char* NO_CELLS = "0000000000000000000000000000000000000000";
constexpr const char* FEW_LOGS = "3000000000030000000000000000003000000000";  // "Boost Bonus"
constexpr LaneFacts LANES[LANE_COUNT] = {
    {26, 76, 0.0F, 1, 1, SHEET_GFROG, 15, 60.0F, NO_CELLS},
    {64, 56, 3.32F, 302, 1, SHEET_LOG3, 15, 3.0F, "3000000000030000030000300000003000000300"},
    {96, 56, -6.55F, 158, 1, SHEET_1TURTLE, 50, 2.5F, "5000530003005000050000300050300050303000"},
    {178, 56, 5.48F, 166, 1, SHEET_LOG4, 15, 2.5F, "4030300004033000403004033040303040330300"},
    {208, 56, -4.54F, 382, 1, SHEET_3TURTLES, 50, 2.5F, "3030330030033330330333033330303303003030"},
    {290, 56, 2.3F, 386, 1, SHEET_LOG1, 15, 3.5F, "3303303003330303330333000333303033333003"},
    {356, 56, 0.0F, 1, 1, SHEET_GFROG, 15, 60.0F, NO_CELLS},
    {392, 56, -1.51F, 248, 96, SHEET_CATERPILLAR, 16, 0.89F, NO_CELLS},
    {468, 56, -2.47F, 126, 54, SHEET_LADYBUG, 16, 1.23F, NO_CELLS},
    {522, 56, 2.03F, 128, 72, SHEET_BEETLE, 16, 1.03F, NO_CELLS},
    {566, 56, -1.97F, 148, 64, SHEET_LIGHTNINGBUG, 16, 1.01F, NO_CELLS},
    {612, 56, 1.77F, 140, 100, SHEET_GRASSHOPPER, 16, 0.96F, NO_CELLS},
    {692, 76, 0.0F, 1, 1, SHEET_GFROG, 15, 60.0F, NO_CELLS},
};

// The columns of the paytable: a value of each row from 0 on.
constexpr int ROWS = 45;
constexpr int BUGS_PER_LANE[ROWS] = {9,  10, 12, 12, 14, 15, 17, 17, 19, 20, 22, 24, 26, 26, 28,
                                     14, 16, 17, 18, 18, 19, 20, 20, 21, 22, 23, 23, 24, 25, 25,
                                     26, 27, 28, 28, 19, 20, 20, 20, 21, 22, 23, 23, 24, 25, 25};
constexpr int BUTTERFLY[ROWS] = {7,  10, 12, 15, 17, 17, 20, 22, 25, 27, 30, 30, 32, 35, 35,
                                 37, 40, 40, 40, 45, 47, 47, 50, 52, 55, 55, 57, 60, 62, 65,
                                 67, 67, 70, 72, 72, 75, 77, 80, 80, 82, 85, 87, 87, 90, 92};
constexpr int TIER1[ROWS] = {5,  5,  10, 10, 10, 10, 15, 15, 20, 20, 20, 20, 20, 25, 25,
                             25, 25, 25, 25, 30, 30, 30, 35, 35, 35, 35, 40, 40, 40, 45,
                             45, 45, 45, 50, 50, 50, 50, 55, 55, 55, 55, 60, 60, 60, 60};
constexpr int TIER2[ROWS] = {10, 15, 15, 20, 25, 25,  25,  30,  30,  35,  40,  40,  45,  45,  45,
                             50, 55, 55, 55, 60, 65,  65,  65,  70,  75,  75,  75,  80,  85,  85,
                             90, 90, 95, 95, 95, 100, 105, 105, 105, 110, 115, 115, 115, 120, 125};
constexpr int JACKPOT[ROWS] = {50,  75,  75,  100, 100, 125, 125, 150, 150, 175, 175, 200,
                               200, 225, 250, 250, 250, 275, 300, 300, 300, 325, 350, 350,
                               350, 375, 400, 400, 400, 425, 450, 450, 450, 475, 500, 500,
                               500, 525, 550, 550, 550, 575, 600, 600, 600};
constexpr int bug_of(int row) {
  return row < 15 ? 1 : row < 34 ? 2 : 3;
}
constexpr int even(int points) {  // the value of a column with "Two Point Tickets"
  return points + points % 2;
}

constexpr int Y[LANE_COUNT] = {-202, -152, -96, -40, 16, 72, 128, 184, 240, 296, 352, 408, 464};
constexpr float PLACES[SIDE_COUNT][QUEUE_PLACES] = {{212, 84, -44, -172, -300},
                                                    {892, 1020, 1148, 1276, 1404}};

constexpr int SCENERY_COUNT = PLANT_COUNT + FAR_BANK_COUNT + CATTAIL_COUNT + SIGN_COUNT;
struct SceneryFacts {
  SheetIndex sheet;
  int frames, x, y;
  double period_ms;
};
constexpr SceneryFacts SCENERY[SCENERY_COUNT] = {
    {SHEET_PLANTS1, 31, 0, 0, 2950},      {SHEET_PLANTS2, 31, 0, 170, 2730},
    {SHEET_PLANTS3, 31, 0, 480, 2510},    {SHEET_PLANTS4, 31, 1104, 120, 2820},
    {SHEET_PLANTS5, 31, 1104, 0, 3110},   {SHEET_PLANTS6, 31, 848, 512, 2610},
    {SHEET_FINISH, 40, 84, -44, 3270},    {SHEET_FINISH, 40, 764, -44, 3370},
    {SHEET_LILYPAD3, 40, 276, -16, 3410}, {SHEET_LILYPAD3, 40, 956, -16, 3490},
    {SHEET_CTAIL1, 40, 154, 634, 3030},   {SHEET_CTAIL2, 40, 390, 658, 3370},
    {SHEET_CTAIL1, 40, 834, 634, 2930},   {SHEET_CTAIL2, 40, 1070, 658, 3110},
    {SHEET_WDSIGN, 40, 13, 654, 2930},    {SHEET_LNGSIGN, 41, 552, 654, 3070},
    {SHEET_WDSIGN, 40, 1091, 654, 3130},
};
