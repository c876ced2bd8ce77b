#include "lab/pool.h"

#include <poll.h>
#include <sched.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <memory>

namespace {

struct Hand {
  pid_t pid;
  int results;  // pipe from it, -1 once it has ended
  std::size_t got;
  std::unique_ptr<PoolJob> job;
};

bool write_whole(int fd, const void* data, std::size_t size) {
  const char* rest = static_cast<const char*>(data);
  while (size > 0) {
    const ssize_t count = write(fd, rest, size);
    if (count < 0 && errno == EINTR) continue;
    if (count <= 0) return false;
    rest += count;
    size -= static_cast<std::size_t>(count);
  }
  return true;
}

[[noreturn]] void hand_work(const std::vector<std::int64_t>& numbers, std::size_t first,
                            std::size_t step, int results,
                            const std::function<void(std::int64_t, Sums&)>& play) {
  const auto job = std::make_unique<PoolJob>();
  for (std::size_t i = first; i < numbers.size(); i += step) {
    *job = {};
    job->number = numbers[i];
    play(job->number, job->sums);
    if (!write_whole(results, job.get(), sizeof *job)) _exit(1);
  }
  _exit(0);
}

// Reads what has come of a job; true once it is whole. A hand that has ended gets -1 for its pipe.
bool take_result(Hand& hand) {
  char* to = reinterpret_cast<char*>(hand.job.get()) + hand.got;
  const ssize_t count = read(hand.results, to, sizeof(PoolJob) - hand.got);
  if (count < 0 && errno == EINTR) return false;
  if (count <= 0) {
    close(hand.results);
    hand.results = -1;
    return false;
  }
  hand.got += static_cast<std::size_t>(count);
  if (hand.got < sizeof(PoolJob)) return false;
  hand.got = 0;
  return true;
}

bool all_ended_well(const std::vector<Hand>& hands) {
  bool good = true;
  for (const Hand& hand : hands) {
    int status = 0;
    while (waitpid(hand.pid, &status, 0) < 0 && errno == EINTR) {
    }
    good = good && hand.got == 0 && WIFEXITED(status) && WEXITSTATUS(status) == 0;
  }
  if (!good) std::fprintf(stderr, "payout-lab: one of the processes ended early\n");
  return good;
}

void collect(std::vector<Hand>& hands, const std::function<void(const PoolJob&)>& done) {
  for (;;) {
    std::vector<pollfd> polled;
    std::vector<Hand*> open;
    for (Hand& hand : hands) {
      if (hand.results < 0) continue;
      polled.push_back({hand.results, POLLIN, 0});
      open.push_back(&hand);
    }
    if (open.empty()) return;
    if (poll(polled.data(), polled.size(), -1) < 0) continue;
    for (std::size_t i = 0; i < open.size(); ++i) {
      if (polled[i].revents != 0 && take_result(*open[i])) done(*open[i]->job);
    }
  }
}

bool hand_start(std::vector<Hand>& hands, const std::vector<std::int64_t>& numbers,
                std::size_t first, std::size_t step,
                const std::function<void(std::int64_t, Sums&)>& play) {
  int ends[2];
  if (pipe(ends) != 0) return false;
  std::fflush(nullptr);
  const pid_t pid = fork();
  if (pid == 0) {
    close(ends[0]);
    for (const Hand& other : hands) close(other.results);
    hand_work(numbers, first, step, ends[1], play);
  }
  close(ends[1]);
  if (pid < 0) {
    close(ends[0]);
    return false;
  }
  hands.push_back({pid, ends[0], 0, std::make_unique<PoolJob>()});
  return true;
}

}  // namespace

int pool_cores() {
  cpu_set_t set;
  return sched_getaffinity(0, sizeof set, &set) == 0 ? std::max(CPU_COUNT(&set), 1) : 1;
}

bool pool_run(const std::vector<std::int64_t>& numbers, int processes,
              const std::function<void(std::int64_t, Sums&)>& play,
              const std::function<void(const PoolJob&)>& done) {
  if (processes <= 1) {
    const auto job = std::make_unique<PoolJob>();
    for (const std::int64_t number : numbers) {
      *job = {};
      job->number = number;
      play(number, job->sums);
      done(*job);
    }
    return true;
  }
  std::vector<Hand> hands;
  const auto count = std::min(static_cast<std::size_t>(processes), numbers.size());
  bool started = true;
  for (std::size_t i = 0; i < count && started; ++i) {
    started = hand_start(hands, numbers, i, count, play);
  }
  if (!started) {
    std::perror("payout-lab: can't start a process");
    for (const Hand& hand : hands) kill(hand.pid, SIGTERM);
  }
  collect(hands, done);
  return all_ended_well(hands) && started;
}
