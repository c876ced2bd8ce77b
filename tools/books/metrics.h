// What Prometheus gets of a cabinet: its text format, for the node exporter's textfile collector.
#pragma once

#include <cstdint>
#include <string>

#include "tools/books/drive.h"

// The drive is read with LAST_RUN. Events are counted from the last start of the game, as a
// program's counters are.
std::string metrics_text(const Drive& drive, std::int64_t now_ms);

// Puts the text in place of the file in one step: a reader sees the old one or the new one. Empty,
// or a line that says what is wrong.
std::string metrics_write(const std::string& path, const std::string& text);
