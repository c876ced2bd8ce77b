// The cabinet's books: 58 counters, in memory as on disk, and the payout histogram.
#pragma once

#include <cstdint>

#include "books/audit_list.h"  // AuditIndex
#include "frame/sides.h"
#include "platform/shared.h"  // Shared

struct AuditRow {  // 56 bytes, little-endian on disk
  std::uint32_t index;
  std::uint32_t flags;  // AUDIT_IS_...
  char name[32];        // display name, zero-terminated
  Shared<std::int32_t> count;
  Shared<float> float_value;
  Shared<std::int64_t> time_ms;
};
static_assert(sizeof(AuditRow) == 56);

enum AuditFlags : std::uint32_t { AUDIT_IS_FLOAT = 0x10, AUDIT_IS_TIME = 0x20 };

constexpr int HISTOGRAM_CELLS = 1400;

using Audits = AuditRow[AUDIT_COUNT];
using Histogram = Shared<std::uint32_t>[SIDE_COUNT][HISTOGRAM_CELLS];

extern Audits audits;          // one writer: first start-up, then the game thread
extern Audits audit_defaults;  // the built-in rows, valid after audits_load
extern Histogram histogram;    // how many frogs of each side paid how many tickets

// Loads "d:\audits", or else "d:\audbak", and "d:\histo". Counts the boot, clears the rows since
// boot, sets negative credits and coins to 0, and stores all three files. Start-up.
void audits_load();

// Brings the journal's events to the disk, then stores "d:\audits", "d:\audbak", "d:\histo".
// Returns when the books are on the disk. Skips a file that can't be written.
void audits_save();

// Notes what the books hold in the journal: what its events count from.
void audits_note();

// Restores the built-in rows and clears the histogram, in memory, without storing.
void audits_reset();

// Adds to the count of a row. A row outside the table changes nothing, and a count stays within its
// 32 bits.
void audit_add(int row, std::int32_t delta);

inline std::int32_t audit_count(int row) {
  return audits[row].count;
}
inline void audit_add(AuditIndex left_row, int side, std::int32_t delta) {
  audit_add(static_cast<int>(left_row) + side, delta);
}
inline std::int32_t audit_count(AuditIndex left_row, int side) {
  return audits[static_cast<int>(left_row) + side].count;
}

// Counts one frog that paid `tickets` on `side`; numbers outside 0 to 1399 aren't counted.
void histogram_count(int side, std::int32_t tickets);

// What the time accounting needs from a tick.
struct AuditsTick {
  std::int64_t now_ms;
  bool idle[SIDE_COUNT];            // no frog of the side is in play
  int live_frogs[SIDE_COUNT];       // frogs of the side in flight or fading, without demo frogs
  std::uint32_t checksum_failures;  // running count of the I/O link
};

// Adds the tick's time to the time rows, and new checksum failures to their row. Stores the books
// every ten minutes while both sides are idle. Game thread, once per tick, in every mode.
void audits_tick(const AuditsTick& tick);

// Clears the running times of `audits_tick`, as at process start.
void audits_tick_reset();
