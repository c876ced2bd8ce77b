// The sounds of a bank.
#pragma once

#include <string>
#include <string_view>

struct JpsBank;
struct JpsSound;

enum StreamMode { STREAM_NEVER, STREAM_ALWAYS, STREAM_BY_SIZE };

// longer data streams if the mode lets the size decide
constexpr unsigned JPS_WHOLE_SOUND_MAX = 0x400000;

// The sound with this file name, relative to `folder`, in any case of letters. Loads it, unless the
// bank has it already; then its first use has decided whether it streams. Null if there is no such
// file, or, after a message, if it can't be played or the bank has no room for it. A file that is
// shorter than its header says is played as far as it goes, after a message.
JpsSound* jps_parse_addsound(const std::string& folder, std::string_view name, JpsBank& bank,
                             StreamMode mode);
