// What Prometheus gets of a cabinet: its text format, for the node exporter's textfile collector.
#pragma once

#include <cstdint>
#include <string>

#include "tools/books/drive.h"
#include "tools/books/pay.h"

// The drive is read with LAST_RUN. Events are counted from the last start of the game, as a
// program's counters are.
std::string metrics_text(const Drive& drive, const PayResult& pay, std::int64_t now_ms);
