// Brings rendered files up to date, in parallel and with progress: each only if its source changed.
#pragma once

#include <cstdio>
#include <functional>
#include <string>
#include <vector>

namespace art {

struct RenderJob {
  std::string file;  // below the installation's folder, e.g. "images/demo.tga"
  std::string key;   // of everything that the file is made from: see source_key
  double cost;       // in any unit; expensive jobs start first, so that all threads end together
  std::function<bool(const std::string& path)> write;  // any thread; false if it failed
};

// Runs the jobs that are due, on all processors. For each file, a stamp in OUTDIR/.art has the key
// that it was made with. If the stamp is right, the file is left alone, even if somebody has
// replaced it, unless `again` is set. A file is written under another name and moved into place, so
// no incomplete file is ever there. Progress goes to `log` (null: silent), as a bar on a terminal,
// and ends with a line that counts `what` ("pictures"). False if a file failed, or, after a line on
// standard error, if nothing can be written there.
bool render_jobs(const std::string& outdir, std::vector<RenderJob> jobs, bool again,
                 const char* what, FILE* log);

}  // namespace art
