// Pictures to files, several at a time, only those that are out of date.
#pragma once

#include <cstdio>
#include <string>
#include <vector>

#include "art/catalogue.h"

namespace art {

// Renders the rows into OUTDIR/images. Beside it, in OUTDIR/.art, a stamp for each picture names
// the program that made it: a picture with this program's stamp is left alone, also if somebody has
// put another file in its place, unless `again` is set. Progress goes to `log` (null: silent).
// False if anything could not be written.
bool render_files(const std::string& outdir, const std::vector<const CatalogueRow*>& rows,
                  bool again, FILE* log);

}  // namespace art
