// A small I/O board on a pseudo-terminal: answers v, s and S from a thread of its own.
#pragma once

#include <atomic>
#include <mutex>
#include <string>
#include <thread>

#include "tests/fakes/pty.h"

class Board {
 public:
  Board() : thread_([this] { run(); }) {}
  ~Board() {
    stop_ = true;
    thread_.join();
  }

  [[nodiscard]] const std::string& path() const { return pty_.path(); }

  // All bytes that the host has sent so far.
  [[nodiscard]] std::string heard() const {
    const std::lock_guard lock(mutex_);
    return heard_;
  }

  void set_silent(bool silent) { silent_ = silent; }
  // An edge of the left coin switch.
  void coin_edge() {
    ++coin_;
    send_counters();
  }
  void send(const std::string& bytes) const { pty_.send(bytes); }

 private:
  void run() {
    while (!stop_) {
      const std::string bytes = pty_.receive(5);
      if (bytes.empty()) continue;
      {
        const std::lock_guard lock(mutex_);
        heard_ += bytes;
      }
      for (const char byte : bytes) take(byte);
    }
  }
  void take(char byte) {
    if (byte == '\n') {
      frame_.clear();
    } else if (byte == '\r') {
      if (!silent_) answer();
    } else {
      frame_ += byte;
    }
  }
  void answer() const {
    if (frame_ == "v") send("\nv3052\r");
    if (frame_ == "s") send("\ns003fffffff\r");
    if (frame_ == "S") send_counters();
  }
  void send_counters() const {
    const char digit = "0123456789abcdef"[coin_ & 15];
    send(std::string("\nS80000000") + digit + "0000000\r");
  }

  Pty pty_;
  std::atomic<bool> stop_{false}, silent_{false};
  std::atomic<int> coin_{9};
  mutable std::mutex mutex_;
  std::string heard_, frame_;
  std::thread thread_;  // last: it uses all the others
};
