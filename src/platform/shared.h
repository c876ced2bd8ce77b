// A word that several threads read and one thread writes.
#pragma once

#include <atomic>
#include <type_traits>

// `Shared<T>` has the size and layout of `T`. It is read and written like a plain `T`, but each
// access is relaxed atomic: a reader sees an old word or a new one, never half of each. No order
// between two words is promised. Only the one writer may use compound operators, because they are a
// read and a write. `Shared<T>` is trivially copyable, so a record of them is the same on disk and
// in memory. To assign one to another, use `get()`, because a plain copy would be a race.
template <typename T>
struct Shared {
  static_assert(std::is_trivially_copyable_v<T> && sizeof(T) <= 8);
  // Compilers call a library for less.
  static_assert(alignof(T) == sizeof(T));

  Shared() = default;
  constexpr Shared(T initial) noexcept : word(initial) {}  // NOLINT: reads like a plain T
  Shared(const Shared&) = default;
  Shared& operator=(const Shared&) = delete;

  [[nodiscard]] T get() const noexcept {
    return std::atomic_ref<T>(const_cast<T&>(word)).load(std::memory_order_relaxed);
  }
  operator T() const noexcept { return get(); }  // NOLINT: reads like a plain T

  Shared& operator=(T value) noexcept {
    std::atomic_ref<T>(word).store(value, std::memory_order_relaxed);
    return *this;
  }
  Shared& operator+=(T value) noexcept { return *this = static_cast<T>(get() + value); }
  Shared& operator-=(T value) noexcept { return *this = static_cast<T>(get() - value); }
  Shared& operator|=(T value) noexcept { return *this = static_cast<T>(get() | value); }
  Shared& operator&=(T value) noexcept { return *this = static_cast<T>(get() & value); }
  Shared& operator++() noexcept { return *this += T{1}; }

  alignas(sizeof(T)) T word;
};
