#include "platform/power.h"

#include <sys/reboot.h>
#include <systemd/sd-bus.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <fstream>
#include <iterator>
#include <memory>
#include <string>
#include <string_view>
#include <system_error>

#include "platform/clock.h"
#include "platform/environment.h"  // environment.power_reboot
#include "platform/files.h"        // files_program
#include "platform/thread.h"

namespace {

// The external watchdog has food for 255 s from the order on. The answer takes 115 s at most: the
// bus gives up on a connection after 90.
constexpr std::uint64_t ANSWER_US = 25'000'000;
constexpr std::int64_t LAST_RESORT_MS = 120'000;
constexpr int LOOK_MS = 50;

constinit std::atomic<bool> under_way{false}, refused{false}, restart{false};

struct BusClose {
  void operator()(sd_bus* bus) const { sd_bus_flush_close_unref(bus); }
};

enum Answer { ACCEPTED, REFUSED, NOBODY };

std::string text_of(int error) {
  return std::generic_category().message(error);
}

// Errors that mean that no login manager runs. Any other one is its refusal, or the bus's.
bool nobody_there(std::string_view error) {
  constexpr std::string_view NAMES[] = {"org.freedesktop.DBus.Error.ServiceUnknown",
                                        "org.freedesktop.DBus.Error.NameHasNoOwner",
                                        "org.freedesktop.DBus.Error.NoReply",
                                        "org.freedesktop.DBus.Error.Timeout",
                                        "org.freedesktop.DBus.Error.Disconnected",
                                        "System.Error.ETIMEDOUT",
                                        "System.Error.ECONNRESET",
                                        "System.Error.ENOTCONN"};
  return std::ranges::find(NAMES, error) != std::end(NAMES) ||
         error.starts_with("org.freedesktop.DBus.Error.Spawn.");
}

Answer ask_login_manager(std::string& reason) {
  sd_bus* opened = nullptr;
  int result = sd_bus_open_system(&opened);
  const std::unique_ptr<sd_bus, BusClose> bus(opened);
  if (result < 0) {
    reason = "no system bus: " + text_of(-result);
    return NOBODY;
  }
  sd_bus_set_method_call_timeout(opened, ANSWER_US);
  sd_bus_error error{};
  constexpr int ASK_NOBODY = 0;  // no question on the screen
  result = sd_bus_call_method(opened, "org.freedesktop.login1", "/org/freedesktop/login1",
                              "org.freedesktop.login1.Manager", "Reboot", &error, nullptr, "b",
                              ASK_NOBODY);
  if (result >= 0) return ACCEPTED;
  const std::string name = error.name == nullptr ? "" : error.name;
  reason = name + ": " + (error.message == nullptr ? text_of(-result) : error.message);
  sd_bus_error_free(&error);
  return nobody_there(name) ? NOBODY : REFUSED;
}

void refuse(const std::string& reason) {
  std::fprintf(stderr, "The reboot was refused: %s. Play goes on; it is tried again later.\n",
               reason.c_str());
  under_way = false;
  refused = true;
}

void reboot_without_services(const std::string& reason) {
  std::fprintf(stderr, "Reboot without ending the services: %s.\n", reason.c_str());
  sync();
  if (reboot(RB_AUTOBOOT) != 0) refuse(reason + "; the kernel: " + text_of(errno));
}

void power_body(const Thread& self, void* /*context*/) {
  const std::int64_t last_resort_ms = clock_ms() + LAST_RESORT_MS;
  std::string reason;
  switch (ask_login_manager(reason)) {
    case REFUSED:
      return refuse(reason);
    case NOBODY:
      return reboot_without_services(reason);
    case ACCEPTED:
      break;
  }
  // The machine ends this process while it goes down. If not, it hangs.
  while (clock_ms() < last_resort_ms && !thread_stop_requested(self)) clock_sleep_ms(LOOK_MS);
  reboot_without_services("the machine didn't go down");
}

}  // namespace

void power_reboot(const char* why) {
  if (under_way.exchange(true)) return;
  std::fprintf(stderr, "Reboot ordered: %s.%s\n", why,
               environment.power_reboot ? "" : " LILYHOP_POWER is off: only the game starts anew.");
  if (!environment.power_reboot) {
    restart = true;
  } else if (thread_start("power", THREAD_PRIORITY_NORMAL, power_body, nullptr) == nullptr) {
    refuse("the machine gives no thread");
  }
}

bool power_reboot_refused() {
  return refused.exchange(false);
}

bool power_restart_ordered() {
  return restart;
}

void power_restart(char** argv) {
  std::fflush(nullptr);
  thread_unpin();  // the new program may run where this one might
  close_range(STDERR_FILENO + 1, ~0U, CLOSE_RANGE_CLOEXEC);
  execv(files_program().c_str(), argv);
  std::fprintf(stderr, "The game can't start anew: %s\n", text_of(errno).c_str());
}

std::string power_boot_id() {
  std::string id;
  std::ifstream("/proc/sys/kernel/random/boot_id") >> id;
  return id;
}
