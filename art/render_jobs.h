// Brings rendered files up to date: in parallel, with progress, each only if its source changed.
#pragma once

#include <cstdio>
#include <functional>
#include <string>
#include <vector>

namespace art {

struct RenderJob {
  std::string file;  // below the installation's folder, e.g. "images/demo.tga"
  std::string key;   // of all that the file is made from: see source_key
  double cost;  // in any unit; what costs most is begun first, so that all threads end together
  std::function<bool(const std::string& path)> write;  // any thread; false if it failed
};

// Runs the jobs that are due, on all processors. Beside the files, in OUTDIR/.art, a stamp for each
// holds the key that it was made with: a file whose stamp is right is left alone, also if somebody
// has put another in its place, unless `again` is set. A file is written under another name and
// moved into place, so that what is there is whole. Progress goes to `log` (null: silent), as a bar
// on a terminal, and ends with a line that counts `what` ("pictures"). False if a file failed, or,
// after a line on standard error, if nothing can be written there.
bool render_jobs(const std::string& outdir, std::vector<RenderJob> jobs, bool again,
                 const char* what, FILE* log);

}  // namespace art
