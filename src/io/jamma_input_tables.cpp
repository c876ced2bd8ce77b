#include "io/jamma_input_tables.h"

#include <cstddef>

namespace {

// Guns first, trackball last: each table is a part of this one.
constexpr InputRow ROWS[] = {
    {2, 4, 0x0F, false, COUNTER_G1A, 0x1},   {2, 0, 0x0F, false, COUNTER_G2A, 0x2},
    {3, 4, 0x0F, false, COUNTER_G1B, 0x4},   {3, 0, 0x0F, false, COUNTER_G2B, 0x8},
    {4, 4, 0x0F, false, COUNTER_P1S, 0x10},  {4, 0, 0x0F, false, COUNTER_P2S, 0x20},
    {5, 4, 0x0F, false, COUNTER_C1, 0x40},   {5, 0, 0x0F, false, COUNTER_C2, 0x80},
    {6, 4, 0x0F, false, COUNTER_VLU, 0x800}, {6, 0, 0x0F, false, COUNTER_VLD, 0x1000},
    {7, 4, 0x0F, false, COUNTER_TST, 0x400}, {7, 0, 0x0F, false, COUNTER_SRV, 0x200},
    {8, 0, 0x0F, false, COUNTER_BIL, 0x100}, {8, 4, 0x0F, false, COUNTER_TLT, 0x10000},
    {2, 0, 0xFF, true, COUNTER_TBX, 0x4000}, {3, 0, 0xFF, true, COUNTER_TBY, 0x8000},
};
constexpr std::size_t GUN_ROWS = 4, TRACKBALL_ROWS = 2;

}  // namespace

std::span<const InputRow> jamma_input_table(std::uint32_t table) {
  const std::span<const InputRow> rows = ROWS;
  return table == 0 ? rows.first(rows.size() - TRACKBALL_ROWS) : rows.subspan(GUN_ROWS);
}
