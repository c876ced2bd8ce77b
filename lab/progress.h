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

  // `done` from `begun`, the part that was done before this process came, to 1.
  void show(double done);

 private:
  using Clock = std::chrono::steady_clock;
  std::string what_;
  bool quiet_, terminal_;
  double begun_ = -1.0;
  Clock::time_point start_, next_;
};
