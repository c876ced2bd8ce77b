// The command line of the payout lab.
#pragma once

#include <string>

#include "lab/run.h"

enum LabCommand { COMMAND_HELP, COMMAND_RUN, COMMAND_SWEEP };

struct LabOptions {
  LabCommand command = COMMAND_HELP;
  RunPlan plan;
  int processes = 0;  // 0: one for each core
  bool json = false;
  bool quiet = false;  // no progress bar
  std::string html;    // file of the page; empty: none
  std::string state;   // sweep: folder that holds what is done
};

// Reads the command line; the settings that it names go into the table on the way, in their order.
// Empty, or a line that says what is wrong.
std::string options_read(int argc, char** argv, LabOptions& options);

std::string options_help();
