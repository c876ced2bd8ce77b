// A progress bar on standard error, if that is a terminal; a line now and then if it isn't.
#pragma once

#include <chrono>
#include <string>

class Progress {
 public:
  // `quiet`: nothing is shown.
  Progress(std::string what, bool quiet);
  ~Progress();
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;

  // `done`: 0 to 1. The first call gives the part that an earlier process did.
  void show(double done);

 private:
  using Clock = std::chrono::steady_clock;
  std::string what_;
  bool quiet_, terminal_;
  double begun_ = -1.0;
  Clock::time_point start_, next_;
};
