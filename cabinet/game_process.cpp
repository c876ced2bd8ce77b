#include "cabinet/game_process.h"

#include <fcntl.h>
#include <sched.h>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <cstring>

namespace {

constexpr std::int64_t QUIT_MS = 20000;  // it stores its books, maybe on a busy disk

[[noreturn]] void become_game(const GameProcess& game) {
  // The game has its own process group: Ctrl-C in the terminal reaches only the cabinet, which
  // passes it on once. If the cabinet dies, the game dies too.
  setpgid(0, 0);
  prctl(PR_SET_PDEATHSIG, SIGTERM);
  sigset_t none;
  sigemptyset(&none);
  sigprocmask(SIG_SETMASK, &none, nullptr);
  for (const int signal : {SIGINT, SIGTERM, SIGPIPE, SIGTTIN, SIGTTOU}) {
    std::signal(signal, SIG_DFL);
  }
  // The game must not inherit the page's connections.
  close_range(STDERR_FILENO + 1, ~0U, 0);
  const int null = open("/dev/null", O_RDONLY | O_CLOEXEC);
  if (null >= 0) dup2(null, STDIN_FILENO);
  if (!game.log.empty()) {
    const int log = open(game.log.c_str(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0644);
    for (const int file : {STDOUT_FILENO, STDERR_FILENO}) {
      if (log >= 0) dup2(log, file);
    }
  }
  for (const auto& [name, value] : game.environment) {
    if (value.empty()) {
      unsetenv(name.c_str());
    } else {
      setenv(name.c_str(), value.c_str(), 1);
    }
  }
  std::vector<char*> arguments;
  arguments.reserve(game.command.size() + 1);
  for (const std::string& word : game.command) arguments.push_back(const_cast<char*>(word.c_str()));
  arguments.push_back(nullptr);
  execvp(arguments[0], arguments.data());
  dprintf(STDERR_FILENO, "cabinet: can't start %s: %s\n", arguments[0], std::strerror(errno));
  _exit(127);
}

// True if the game has ended; then its process is reaped. `flags` may be WNOHANG.
//
// Another thread reaps it, at normal priority. The kernel drops the process's entries in /proc, and
// while one of the game's threads still drops its own, it tries again without sleeping. At the
// hardware's priority that keeps the game's thread from the processor, for almost a second.
bool take_end(GameProcess& game, int flags) {
  siginfo_t end{};
  while (waitid(P_PID, game.pid, &end, WEXITED | WNOWAIT | flags) != 0) {
    if (errno != EINTR) return false;
  }
  if (end.si_pid != game.pid) return false;
  game.reaper = std::jthread([pid = game.pid] { waitpid(pid, nullptr, 0); });
  game.running = false;
  game.killed = false;
  game.pid = -1;
  game.kill_at_ms = 0;
  game.exit_code = end.si_code == CLD_EXITED ? end.si_status : 128 + end.si_status;
  return true;
}

}  // namespace

void hardware_goes_first() {
  sched_param lowest_of_these{};
  lowest_of_these.sched_priority = sched_get_priority_min(SCHED_RR);
  sched_setscheduler(0, SCHED_RR | SCHED_RESET_ON_FORK, &lowest_of_these);
  mlockall(MCL_CURRENT);  // a page that has to be read again can take seconds
}

std::string game_start(GameProcess& game) {
  game.start_waits = game.killed;
  if (game.killed) return {};
  if (game.running) return "the game is running";
  if (game.command.empty()) return "this cabinet was started without a game";
  const pid_t pid = fork();
  if (pid < 0) return std::string("the game can't be started: ") + std::strerror(errno);
  if (pid == 0) become_game(game);
  game.pid = pid;
  game.running = true;
  game.end_ordered = false;
  game.would_not_quit = false;
  game.kill_at_ms = 0;
  game.exit_code = 0;
  return {};
}

void game_kill(GameProcess& game) {
  game.start_waits = false;
  if (!game.running) return;
  game.end_ordered = true;
  game.killed = true;
  game.kill_at_ms = 0;
  kill(game.pid, SIGKILL);
}

void game_end(GameProcess& game) {
  game_kill(game);
  if (game.running) take_end(game, 0);
}

void game_ask_to_quit(GameProcess& game, int signal, std::int64_t now_ms) {
  game.start_waits = false;
  if (!game.running || game.killed) return;
  game.end_ordered = true;
  kill(game.pid, signal);
  if (game.kill_at_ms == 0) game.kill_at_ms = now_ms + QUIT_MS;
}

bool game_watch(GameProcess& game, std::int64_t now_ms) {
  if (!game.running) return false;
  if (take_end(game, WNOHANG)) return true;
  if (game.kill_at_ms == 0 || now_ms < game.kill_at_ms) return false;
  game.would_not_quit = true;
  game_kill(game);
  return false;
}

int game_verdict(const GameProcess& game) {
  if (game.would_not_quit) return 1;
  if (game.end_ordered && game.exit_code > 128) return 0;
  return game.exit_code;
}
