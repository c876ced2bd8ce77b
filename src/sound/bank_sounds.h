// The sounds of a bank.
#pragma once

#include <string>
#include <string_view>

struct JpsBank;
struct JpsSound;

enum StreamMode { STREAM_NEVER, STREAM_ALWAYS, STREAM_BY_SIZE };

// Data above this streams if the mode leaves it to the size.
constexpr unsigned JPS_WHOLE_SOUND_MAX = 0x400000;

// The sound of this file name, which is relative to `folder`, its letters in any case; loaded now
// unless the bank has it already, in which case its first use has decided whether it streams. Null
// if there is no such file, after a message for a file that is no playable sound or that the bank
// has no room for. One that is shorter than it says is played as far as it goes, after a message.
JpsSound* jps_parse_addsound(const std::string& folder, std::string_view name, JpsBank& bank,
                             StreamMode mode);
