#include "cabinet/options.h"

#include <unistd.h>

#include <climits>
#include <cstdlib>
#include <cstring>
#include <filesystem>

namespace {

std::string data_folder() {
  const char* data = std::getenv("XDG_DATA_HOME");
  if (data != nullptr && data[0] == '/') return std::string(data) + "/lilyhop-cabinet";
  const char* home = std::getenv("HOME");
  return std::string(home != nullptr ? home : "/tmp") + "/.local/share/lilyhop-cabinet";
}

// The path of a program in this program's folder.
std::string beside(const char* name) {
  std::error_code failed;
  const auto self = std::filesystem::read_symlink("/proc/self/exe", failed);
  return failed ? name : (self.parent_path() / name).string();
}

bool number(const std::string& text, double least, double most, double& value) {
  char* end = nullptr;
  // Integers may be hexadecimal, such as 0x51; the seconds of --for may be fractions.
  value = text.compare(0, 2, "0x") == 0 ? static_cast<double>(std::strtoll(text.c_str(), &end, 16))
                                        : std::strtod(text.c_str(), &end);
  return !text.empty() && *end == '\0' && value >= least && value <= most;
}

// An option with a value. False if it has another name. Sets `error` if the value is wrong.
bool take_value(Options& options, const std::string& name, const std::string& value,
                std::string& error) {
  double n = 0;
  bool good = true;
  if (name == "--drive") {
    options.drive = value;
    good = !value.empty();
  } else if (name == "--sound") {
    options.sound = value == "page" ? SOUND_PAGE : SOUND_CARD;
    good = value == "page" || value == "card";
  } else if (name == "--script") {
    options.script = value;
    good = !value.empty();
  } else if (name == "--record") {
    options.record = value;
    good = !value.empty();
  } else if (name == "--log") {
    options.log = value;
    good = !value.empty();
  } else if (name == "--com") {
    good = number(value, 1, 16, n);
    options.com = static_cast<int>(n);
  } else if (name == "--led-com") {
    good = number(value, 1, 16, n);
    options.led_com = static_cast<int>(n);
  } else if (name == "--for") {
    good = number(value, 0.001, 1e7, n);
    options.for_seconds = n;
  } else if (name == "--seed") {
    good = number(value, 0, UINT_MAX, n);
    options.seed = static_cast<std::uint32_t>(n);
  } else if (name == "--firmware") {
    good = number(value, 0, 255, n);
    options.firmware = static_cast<std::uint8_t>(n);
  } else {
    return false;
  }
  if (!good) error = name + " can't be \"" + value + "\"";
  return true;
}

bool take_flag(Options& options, const std::string& name) {
  if (name == "--no-board") {
    options.no_board = true;
  } else if (name == "--no-led") {
    options.no_led = true;
  } else if (name == "--no-usb") {
    options.no_usb = true;
  } else if (name == "--no-game") {
    options.no_game = true;
  } else if (name == "--quiet") {
    options.quiet = true;
  } else if (name == "--verbose") {
    options.verbose = true;
  } else if (name == "--help") {
    options.help = true;
  } else {
    return false;
  }
  return true;
}

// "--page", with or without a port. False if it is another option.
bool take_page(Options& options, int argc, char** argv, int& i, std::string& error) {
  if (std::strcmp(argv[i], "--page") != 0) return false;
  options.page = true;
  options.page_port = -1;
  if (i + 1 == argc || argv[i + 1][0] == '-') return true;
  double n = 0;
  if (!number(argv[++i], 0, 65535, n)) {
    error = std::string("--page can't have port \"") + argv[i] + "\"; it is 0 to 65535, 0 any free";
  }
  options.page_port = static_cast<int>(n);
  return true;
}

std::string choose_drive(Options& options) {
  if (!options.drive.empty()) {
    std::error_code failed;
    const auto whole = std::filesystem::absolute(options.drive, failed);
    if (!failed) options.drive = whole.string();
    return {};
  }
  options.drive = data_folder();
  if (options.script.empty()) return {};
  // A script must always start with a new cabinet.
  std::error_code failed;
  std::filesystem::create_directories(options.drive, failed);
  options.drive += "/script-XXXXXX";
  if (mkdtemp(options.drive.data()) == nullptr) return options.drive + " can't be made";
  options.drive_is_temporary = true;
  return {};
}

}  // namespace

std::string options_read(int argc, char** argv, Options& options) {
  int i = 1;
  for (; i < argc; ++i) {
    const std::string name = argv[i];
    if (name == "--") {
      ++i;
      break;
    }
    if (take_flag(options, name)) continue;
    std::string error;
    if (take_page(options, argc, argv, i, error)) {
      if (!error.empty()) return error;
      continue;
    }
    if (!take_value(options, name, i + 1 < argc ? argv[i + 1] : "", error)) {
      return "there is no option \"" + name + "\"; --help lists them";
    }
    if (!error.empty()) return error;
    ++i;
  }
  options.game.assign(argv + i, argv + argc);
  if (options.game.empty()) options.game = {beside("lilyhop")};
  if (options.game[0].empty()) return "GAME can't be \"\"";
  if (options.com == options.led_com) return "--com and --led-com can't be the same port";
  return options.help ? std::string() : choose_drive(options);
}

std::string options_help() {
  return R"(usage: cabinet [options] [-- GAME [ARGUMENTS]]

The virtual cabinet: an I/O board on a pseudo-terminal, with switches, dispensers, lamps and meters,
and the game started against it. The default GAME is the lilyhop beside this program.

  --drive FOLDER   the game's drive d:; by default lilyhop-cabinet in the user's data folder, and with
                   --script a new one that is deleted when the script has passed
  --com N          the game's port for the board, 1 to 16; default 1
  --led-com N      the game's port for the LED board; default 2
  --firmware BYTE  the board's firmware version; 0x5n is the family with a trackball; default 0x51
  --seed N         of the random numbers: line faults, counters after a restart; default 1
  --page [PORT]    serve the cabinet's page to browsers on this machine; the port is 8768 if that is
                   free, 0 takes any free one
  --sound WAY      the game's sound goes to the "page" or to the sound "card", which is where
                   LILYHOP_SOUND says; by default to the page if there is one and no sound card
  --record FILE    record the sound in FILE.wav, or sound and picture in FILE.avi, which needs --page
  --log FILE       the game's output goes there, not to the terminal
  --script FILE    run this script; exit code 0 if all its expectations came true, otherwise 1
  --for SECONDS    ask the game to quit after this time
  --no-board       the game finds no port with an I/O board
  --no-led         nor one with an LED board
  --no-usb         nor a USB port with a watchdog
  --no-game        only the board, for another program
  --quiet          no status line
  --verbose        print each line of the script as it runs
)";
}
