// Pages of numbers over the scene, for technicians. Main thread.
#pragma once

#include <cstdint>

#include "platform/shared.h"  // Shared

enum DebugPage : std::int32_t {
  DEBUG_NONE = 0,
  DEBUG_STATISTICS = 1,
  DEBUG_AUDITS_1 = 2,
  DEBUG_AUDITS_2 = 3,
  DEBUG_PREFS = 4,
  DEBUG_HISTOGRAM_1 = 5,  // to 11, seven pages
  DEBUG_HISTOGRAM_7 = 11,
};

// The page shown. No switch of the cabinet changes it; a debugger or a test may.
inline constinit Shared<std::int32_t> debug_page{DEBUG_NONE};

void debug_page_draw();

void audits_dump(int page);  // 0 or 1
void statistics_dump();
void prefs_dump();
void histogram_dump(int side, int page);  // 0 to 6
