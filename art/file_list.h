// The list of sizes and checksums that the boot check proves an installation against.
#pragma once

#include <string>

namespace art {

// Writes OUTDIR/lhpcrc.txt: a line for each program that lies in OUTDIR and each file below its
// images/ and sounds/, by name, as "images\name size sum". The sum is the boot check's, the
// reflected CRC-32 with its own start value and no final inversion. Returns the number of lines, or
// -1 if a file could not be read or written.
int file_list_write(const std::string& outdir);

}  // namespace art
