// Moments in milliseconds since 1970, as text.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

// The machine's own: the tool is linked with a clock that is set by hand.
std::int64_t moment_now();

// "2026-11-25T19:13:09.123Z", as in the journal. False if it isn't one.
bool moment_from_journal(std::string_view text, std::int64_t& utc_ms);
std::string moment_for_files(std::int64_t utc_ms);

// "2026-11-25", "2026-11-25 19:13" or with seconds, in the local time zone, or as in the journal.
bool moment_from_words(const std::string& text, std::int64_t& utc_ms);
// "2026-11-25 19:13:09", in the local time zone.
std::string moment_for_people(std::int64_t utc_ms);
