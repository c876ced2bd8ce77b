#include "tests/gl/x_server.h"

#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>

XServer::XServer(DisplaySize size, const char* gl) {
  const std::string screen = std::to_string(size.width) + "x" + std::to_string(size.height) + "x24";
  int ends[2];
  if (pipe(ends) != 0) return;
  process = fork();
  if (process == 0) {
    prctl(PR_SET_PDEATHSIG, SIGTERM);  // ends with a test that crashes
    dup2(ends[1], 3);
    // Without -noreset added modes go with the last client.
    execlp("Xvfb", "Xvfb", "-displayfd", "3", "-screen", "0", screen.c_str(), "-noreset", gl, "GLX",
           "-nolisten", "tcp", nullptr);
    _exit(127);
  }
  close(ends[1]);
  std::string number;  // the server writes it when it is ready
  char c = 0;
  while (read(ends[0], &c, 1) == 1 && c != '\n') number += c;
  close(ends[0]);
  if (process > 0 && !number.empty()) display = ":" + number;
}

XServer::~XServer() {
  if (process <= 0) return;
  kill(process, SIGTERM);
  waitpid(process, nullptr, 0);
}
