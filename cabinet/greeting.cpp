#include "cabinet/greeting.h"

#include <cstdlib>

#include "cabinet/cabinet.h"

namespace {

std::string page_text(const Cabinet& cabinet) {
  const std::string address = page_address(cabinet.page);
  std::string text = "The cabinet is at " + address + " - open it in a browser of this machine.\n";
  // A user who came over the network has no browser here.
  if (std::getenv("SSH_CONNECTION") != nullptr) {
    std::string port = address.substr(address.rfind(':') + 1);
    port.pop_back();
    text += "From your own machine: ssh -L " + port + ":127.0.0.1:" + port +
            " to this one, then open the same address.\n";
  }
  text += "There, 5 or 6 inserts a coin and 1 or 2 starts a frog, by key, mouse or touch.\n";
  if (cabinet.sound != nullptr) {
    text += sound_card_is_there() ? "The page plays the sound"
                                  : "There is no sound card here, but the page plays the sound";
    text += ": click SOUND on it.\n";
  }
  return text;
}

}  // namespace

std::string greeting_text(const Cabinet& cabinet) {
  const Options& options = cabinet.options;
  std::string text;
  if (options.no_game) {
    if (!options.no_board) text += "The board is on " + cabinet.cable.path + "\n";
    if (!options.no_led) text += "The LED board is on " + cabinet.led_cable.path + "\n";
    if (!options.no_usb) text += "The watchdog is on unix:" + cabinet.usb.path + "\n";
  }
  if (options.page) text += page_text(cabinet);
  if (options.page && !options.quiet && options.script.empty()) {
    text += "Type commands here; help lists them, Ctrl-C ends the game.\n";
  }
  return text;
}

std::string farewell_text(const Cabinet& cabinet, int code) {
  if (code == 0 || cabinet.options.log.empty()) return {};
  return "The game ended with exit code " + std::to_string(code) + "; its output is in " +
         cabinet.options.log + ".\n";
}
