// The journal: what happened on the cabinet, a line an event, on drive d:. It is for people and
// their tools; nothing in the game reads it but for how the last run ended, and nothing depends on
// it. A disk that fails costs events and nothing else.
#pragma once

#include <cstdint>
#include <initializer_list>

#include "books/journal_list.h"

// It grows in the first file. At half of JOURNAL_BYTES_MOST that becomes the second one, in place
// of the older half.
constexpr const char* JOURNAL_FILE = R"(d:\journal)";
constexpr const char* JOURNAL_OLD_FILE = R"(d:\journal.old)";
constexpr std::uint64_t JOURNAL_BYTES_MOST = std::uint64_t{8} << 20U;

// Begins the run of this boot with its start line. Before that, and after `journal_close`, events
// are dropped: tests and the payout lab have no journal. Start-up.
void journal_open(const char* version, std::int32_t boot);

// Starts the thread that writes; what it finds is on the disk within a second. Start-up.
void journal_start();

// Notes an event with the values of its fields. Takes no lock and allocates nothing. If nobody
// writes for long, later events are lost, and their number is noted. Any thread.
void journal_put(JournalKind kind, std::initializer_list<std::int32_t> values = {});

// Brings all events noted so far to the disk and returns when they are there. The books call it
// before they are stored, so that the disk has an event before the books count it. Any thread but
// those of time-critical priority.
void journal_flush();

// Ends the thread and writes the rest.
void journal_close();
