// Passes the latest value from one thread to another without either waiting.
#pragma once

#include <array>
#include <atomic>
#include <cstdint>

// One thread puts, one takes. A value that was not taken before the next put is never seen. Writer
// and reader each own one of three copies; they swap it for the third.
template <typename T>
class Mailbox {
 public:
  void put(const T& value) {
    copies_[back_] = value;
    back_ = middle_.exchange(back_ | FRESH, std::memory_order_acq_rel) & INDEX;
  }

  // True if there was a new value, which is then in `value`.
  bool take(T& value) {
    if ((middle_.load(std::memory_order_relaxed) & FRESH) == 0) return false;
    front_ = middle_.exchange(front_, std::memory_order_acq_rel) & INDEX;
    value = copies_[front_];
    return true;
  }

 private:
  static constexpr std::uint32_t INDEX = 3, FRESH = 4;

  std::array<T, 3> copies_{};
  std::uint32_t back_ = 0, front_ = 1;
  std::atomic<std::uint32_t> middle_{2};
};
