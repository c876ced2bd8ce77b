// The latest of something, handed from one thread to another, neither of which ever waits.
#pragma once

#include <array>
#include <atomic>
#include <cstdint>

// One thread puts and one takes. What was put and not yet taken when the next is put is never seen.
// Writer and reader each own one of three copies; the third lies between them and is swapped.
template <typename T>
class Mailbox {
 public:
  void put(const T& value) {
    copies_[back_] = value;
    back_ = middle_.exchange(back_ | FRESH, std::memory_order_acq_rel) & INDEX;
  }

  // True if there was something new, which is then in `value`.
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
