#include "cabinet/cabinet.h"

#include <poll.h>
#include <sys/signalfd.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <utility>
#include <vector>

#include "cabinet/commands.h"

namespace {

constexpr int BUSY_WAIT_MS = 2;  // while switches or tickets move

std::string open_signals(Cabinet& cabinet) {
  for (const int signal : {SIGPIPE, SIGTTIN, SIGTTOU}) std::signal(signal, SIG_IGN);
  // A shell starts background jobs with SIGINT ignored.
  std::signal(SIGINT, SIG_DFL);
  sigset_t set;
  sigemptyset(&set);
  for (const int signal : {SIGINT, SIGTERM, SIGCHLD}) sigaddset(&set, signal);
  sigprocmask(SIG_BLOCK, &set, nullptr);
  cabinet.signals = signalfd(-1, &set, SFD_NONBLOCK | SFD_CLOEXEC);
  return cabinet.signals < 0 ? std::string("signals: ") + std::strerror(errno) : std::string();
}

std::string sound_path(const Cabinet& cabinet) {
  return cabinet.keys.folder + "/sound";
}

// The game's own sound stays on the sound card of this machine, if there is one.
bool sound_is_ours(const Options& options) {
  if (options.sound != SOUND_AUTO) return options.sound == SOUND_PAGE;
  if (!options.record.empty()) return true;
  return options.page && std::getenv("LILYHOP_SOUND") == nullptr && !sound_card_is_there();
}

void describe_game(Cabinet& cabinet) {
  const Options& options = cabinet.options;
  GameProcess& game = cabinet.game;
  if (!options.no_game) game.command = options.game;
  game.log = options.log;
  game.environment = {{"LILYHOP_DRIVE_D", options.drive},
                      {"LILYHOP_KEYS", "unix:" + cabinet.keys.path},
                      {"LILYHOP_POWER", "off"},
                      {"LILYHOP_USBIO", options.no_usb ? "" : "unix:" + cabinet.usb.path}};
  if (cabinet.sound != nullptr) {
    game.environment.emplace_back("LILYHOP_SOUND", "unix:" + sound_path(cabinet));
  }
  // The game must probe no port of this machine except the cabinet's own.
  for (int port = 1; port <= 16; ++port) {
    std::string path;
    if (port == options.com) path = cabinet.cable.path;
    if (port == options.led_com) path = cabinet.led_cable.path;
    game.environment.emplace_back("LILYHOP_COM" + std::to_string(port), path);
  }
}

bool busy(const Cabinet& cabinet) {
  if (!hands_idle(cabinet.hands)) return true;
  return cabinet.board.dispensers[LEFT].running || cabinet.board.dispensers[RIGHT].running;
}

void take_signals(Cabinet& cabinet) {
  signalfd_siginfo info;
  while (read(cabinet.signals, &info, sizeof info) == sizeof info) {
    if (info.ssi_signo == SIGINT || info.ssi_signo == SIGTERM) {
      cabinet_finish(cabinet, static_cast<int>(info.ssi_signo));
    }
  }
}

void take_typed(Cabinet& cabinet) {
  char buffer[512];
  const ssize_t n = read(STDIN_FILENO, buffer, sizeof buffer);
  if (n < 0 && (errno == EINTR || errno == EAGAIN)) return;
  if (n <= 0) {
    cabinet.commands_open = false;
    return;
  }
  cabinet.typed.append(buffer, static_cast<std::size_t>(n));
}

// A line behind one that killed the game waits for the game's end, in scripts too.
void obey_typed(Cabinet& cabinet, std::int64_t now_ms) {
  for (std::size_t end;
       !cabinet.game.killed && (end = cabinet.typed.find('\n')) != std::string::npos;) {
    const std::string line = cabinet.typed.substr(0, end);
    cabinet.typed.erase(0, end + 1);
    const std::string error = commands_do(cabinet, line, now_ms);
    std::fputs(std::exchange(cabinet.said, {}).c_str(), stdout);
    if (!error.empty()) std::printf("%s\n", error.c_str());
    std::fflush(stdout);
  }
}

// Passes bytes both ways between board and cable until both are quiet.
void exchange(Cabinet& cabinet, std::int64_t now_ms) {
  Board& board = cabinet.board;
  for (const char byte : cable_take(cabinet.cable)) {
    board_receive(board, static_cast<std::uint8_t>(byte), now_ms);
  }
  if (!board.to_host.empty()) cable_send(cabinet.cable, board.to_host);
  board.to_host.clear();
  led_display_receive(cabinet.led, cable_take(cabinet.led_cable));
  if (!cabinet.led.to_host.empty()) cable_send(cabinet.led_cable, cabinet.led.to_host);
  cabinet.led.to_host.clear();
}

void exchange_usb(Cabinet& cabinet, std::int64_t now_ms) {
  usb_port_exchange(cabinet.usb, now_ms);
  UsbWatchdog& watchdog = cabinet.usb.device;
  const bool reset = watchdog.bit && watchdog.resets_machine;
  watchdog.bit = false;
  if (!reset) return;
  game_kill(cabinet.game);
  cabinet_start_game(cabinet);
}

void wait(const Cabinet& cabinet, int wait_ms) {
  std::vector<pollfd> files = {{cabinet.signals, POLLIN, 0}, {cabinet.keys.listener, POLLIN, 0}};
  for (const Cable* cable : {&cabinet.cable, &cabinet.led_cable}) {
    if (cable->near >= 0) files.push_back({cable->near, POLLIN, 0});
  }
  if (cabinet.commands_open) files.push_back({STDIN_FILENO, POLLIN, 0});
  usb_port_watch(cabinet.usb, files);
  if (page_wake(cabinet.page) >= 0) files.push_back({page_wake(cabinet.page), POLLIN, 0});
  for (const KeyClient& client : cabinet.keys.clients) files.push_back({client.socket, POLLIN, 0});
  poll(files.data(), files.size(), busy(cabinet) ? std::min(wait_ms, BUSY_WAIT_MS) : wait_ms);
}

bool typed_waits() {
  pollfd file = {STDIN_FILENO, POLLIN, 0};
  return poll(&file, 1, 0) > 0;
}

}  // namespace

std::int64_t cabinet_now_ms() {
  using namespace std::chrono;
  return duration_cast<milliseconds>(steady_clock::now().time_since_epoch()).count();
}

std::string cabinet_open(Cabinet& cabinet) {
  const Options& options = cabinet.options;
  std::error_code failed;
  std::filesystem::create_directories(options.drive, failed);
  if (failed) return options.drive + ": " + failed.message();
  if (euidaccess(options.drive.c_str(), R_OK | W_OK | X_OK) != 0) {
    return options.drive + ": " + std::strerror(errno);
  }
  if (!options.log.empty() && !std::ofstream(options.log)) return options.log + " can't be written";
  if (std::string error = open_signals(cabinet); !error.empty()) return error;
  if (!options.no_board) {
    if (std::string error = cable_open(cabinet.cable); !error.empty()) return error;
  }
  if (!options.no_led) {
    if (std::string error = cable_open(cabinet.led_cable); !error.empty()) return error;
  }
  if (std::string error = keys_open(cabinet.keys); !error.empty()) return error;
  if (!options.no_usb) {
    std::string error = usb_port_open(cabinet.usb, cabinet.keys.folder);
    if (!error.empty()) return error;
  }
  if (sound_is_ours(options)) {
    std::string error;
    cabinet.sound = sound_port_open(sound_path(cabinet), error);
    if (cabinet.sound == nullptr) return error;
  }
  line_faults_seed(cabinet.cable.to_host, options.seed);
  line_faults_seed(cabinet.cable.to_board, options.seed + 1);
  Board& board = cabinet.board;
  board.random.seed(options.seed);
  board.settings.firmware = options.firmware;
  const std::int64_t now_ms = cabinet_now_ms();
  board.log.began_ms = now_ms;
  board_restart(board, BOARD_RANDOM_COUNTERS, now_ms);
  board.counts.restarts = 0;
  board.to_host.clear();  // nobody has the port open yet
  describe_game(cabinet);
  std::string error;
  if (options.page) error = page_open(cabinet);
  if (!error.empty() || options.record.empty()) return error;
  if (cabinet.sound == nullptr) return "--record needs --sound page";
  cabinet.recording =
      recording_start(options.record, *cabinet.sound, page_picture(cabinet.page), error);
  return error;
}

void cabinet_close(Cabinet& cabinet) {
  const std::string trouble = recording_stop(std::exchange(cabinet.recording, nullptr));
  if (!trouble.empty()) std::fprintf(stderr, "cabinet: %s\n", trouble.c_str());
  page_close(cabinet);
  game_end(cabinet.game);
  usb_port_close(cabinet.usb);  // its socket and the sound's are in the keys' folder
  sound_port_close(std::exchange(cabinet.sound, nullptr));
  keys_close(cabinet.keys);
  cable_close(cabinet.cable);
  cable_close(cabinet.led_cable);
  if (cabinet.signals >= 0) close(cabinet.signals);
  cabinet.signals = -1;
}

std::string cabinet_start_game(Cabinet& cabinet) {
  if (cabinet.finishing) return "the cabinet is ending";
  if (!cabinet.game.running) {
    cable_reset(cabinet.cable);
    cable_reset(cabinet.led_cable);
  }
  return game_start(cabinet.game);
}

bool cabinet_turn(Cabinet& cabinet, int wait_ms) {
  wait(cabinet, wait_ms);
  const std::int64_t now_ms = cabinet_now_ms();
  take_signals(cabinet);
  if (cabinet.game.start_waits && !cabinet.game.killed) {
    const std::string error = cabinet_start_game(cabinet);
    if (!error.empty()) std::fprintf(stderr, "cabinet: %s\n", error.c_str());
  }
  const bool ended = game_watch(cabinet.game, now_ms);
  keys_take(cabinet, now_ms);
  hands_advance(cabinet.hands, cabinet.board, now_ms);
  board_advance(cabinet.board, now_ms);
  exchange(cabinet, now_ms);
  exchange_usb(cabinet, now_ms);
  if (cabinet.commands_open && typed_waits()) take_typed(cabinet);
  obey_typed(cabinet, now_ms);
  page_turn(cabinet, now_ms);
  return ended;
}

void cabinet_finish(Cabinet& cabinet, int signal) {
  cabinet.finishing = true;
  game_ask_to_quit(cabinet.game, signal, cabinet_now_ms());
}
