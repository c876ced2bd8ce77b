// While it lives, files are reached with the rights of a user that isn't root.
#pragma once

#include <sys/stat.h>
#include <unistd.h>

#include <string>

class PlainUser {
 public:
  // `folder` is one of the test's own, which that user may then use.
  explicit PlainUser(const std::string& folder) : id_(geteuid()) {
    if (chmod(folder.c_str(), 0777) != 0 || (id_ == 0 && seteuid(65534) != 0)) id_ = NOT_CHANGED;
  }
  ~PlainUser() {
    if (id_ == 0) [[maybe_unused]]
      const int back = seteuid(0);
  }
  PlainUser(const PlainUser&) = delete;
  PlainUser& operator=(const PlainUser&) = delete;

  [[nodiscard]] bool changed() const { return id_ != NOT_CHANGED; }

 private:
  static constexpr uid_t NOT_CHANGED = static_cast<uid_t>(-1);
  uid_t id_;
};
