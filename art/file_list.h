// The list of sizes and checksums that the boot check proves an installation against.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace art {

// The boot check's sum: the reflected CRC-32 with its own start value and no final inversion.
int32_t file_crc(const std::vector<uint8_t>& bytes);

// Writes OUTDIR/lhpcrc.txt: a line for each file below images/ and sounds/ of OUTDIR, by name, as
// "images\name size sum". Returns the number of lines, or -1 if a file could not be read or
// written.
int file_list_write(const std::string& outdir);

}  // namespace art
