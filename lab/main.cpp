// payout-lab: see options_help.
#include <cstdio>
#include <memory>
#include <string>
#include <vector>

#include "lab/audit_check.h"
#include "lab/html.h"
#include "lab/options.h"
#include "lab/pool.h"
#include "lab/progress.h"
#include "lab/results.h"
#include "lab/sweep.h"
#include "lab/text.h"

namespace {

constexpr int EXIT_WRONG_USE = 2;
constexpr int EXIT_BOOKS_DISAGREE = 3;

int complain(const std::string& text, int code) {
  std::fprintf(stderr, "payout-lab: %s\n", text.c_str());
  return code;
}

// Empty, or what is wrong.
std::string page_write(const LabOptions& options, const std::string& page) {
  return options.html.empty() ? std::string{} : text_write_file(options.html, page);
}

int run(const LabOptions& options) {
  const auto sums = std::make_unique<Sums>();
  {
    Progress progress("run", options.quiet);
    if (!run_play(options.plan, options.processes, *sums,
                  [&](double done) { progress.show(done); })) {
      return 1;
    }
  }
  const Results results = results_of(options.plan, *sums);
  const std::string text =
      options.json ? results_json(results, *sums) : results_table(results, *sums);
  std::fputs(text.c_str(), stdout);
  const std::string error = page_write(options, run_page(results, *sums));
  if (!error.empty()) return complain(error, 1);
  const std::string wrong = audit_check(*sums);
  if (!wrong.empty()) return complain("the books disagree:\n" + wrong, EXIT_BOOKS_DISAGREE);
  if (!options.json) std::puts("\nbooks, purses and board agree to the ticket");
  return 0;
}

int sweep(const LabOptions& options) {
  std::vector<SweepResult> all;
  std::string error;
  if (!sweep_play(options, all, error)) return complain(error, 1);
  std::fputs((options.json ? sweep_json(all) : sweep_table(all)).c_str(), stdout);
  error = page_write(options, sweep_page(all));
  return error.empty() ? 0 : complain(error, 1);
}

}  // namespace

int main(int argc, char** argv) {
  LabOptions options;
  const std::string error = options_read(argc, argv, options);
  if (!error.empty()) return complain(error + "; see payout-lab help", EXIT_WRONG_USE);
  if (options.command != COMMAND_HELP && !options.html.empty()) {
    const std::string wrong = text_try_file(options.html);
    if (!wrong.empty()) return complain(wrong, 1);
  }
  if (options.processes == 0) options.processes = pool_cores();
  switch (options.command) {
    case COMMAND_RUN:
      return run(options);
    case COMMAND_SWEEP:
      return sweep(options);
    default:
      std::fputs(options_help().c_str(), stdout);
      return argc < 2 ? EXIT_WRONG_USE : 0;
  }
}
