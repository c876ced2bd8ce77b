// Renders pictures into the folder of an installation.
#pragma once

#include <cstdio>
#include <string>
#include <vector>

#include "art/catalogue.h"

namespace art {

// Brings pictures below OUTDIR/images up to date (see render_jobs): each is drawn if the sources of
// its family have changed since, or always if `again` is set. False if anything could not be
// written.
bool render_files(const std::string& outdir, const std::vector<CatalogueEntry>& pictures,
                  bool again, FILE* log);

}  // namespace art
