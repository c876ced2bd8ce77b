// The list of sizes and checksums that the boot check compares with an installation.
#pragma once

#include <string>

namespace art {

// Writes OUTDIR/lhpcrc.txt: a line for each program in OUTDIR and each file below its images/ and
// sounds/, sorted by name, as "images\name size sum". The sum is the boot check's: the reflected
// CRC-32 with another start value and no final inversion. Returns the number of lines, or -1 if a
// file could not be read or written.
int file_list_write(const std::string& outdir);

}  // namespace art
