// Checks playlist files and renders what they play.
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

#include "tools/playlist/check.h"
#include "tools/playlist/render.h"

namespace {

constexpr int EXIT_USAGE = 2;
constexpr double LONGEST_S = 3600;

constexpr const char* HELP =
    "playlist check FILE\n"
    "    Prints the errors of a playlist file, with file and line; playlists that the game asks\n"
    "    for and the file doesn't have; names that can't be distinguished; jumps to missing "
    "labels;\n"
    "    and groups and wave files of its folder that nothing uses. The exit code is 1 if there "
    "is\n"
    "    an error; unused things are not errors.\n"
    "\n"
    "playlist render FILE NAME[@SECONDS]... [--for SECONDS] -o OUTPUT.wav\n"
    "    Plays playlists of a file, each from the given second on (default 0), and writes the "
    "sound\n"
    "    of --for seconds (default 10), faster than real time. With several names it shows how "
    "they\n"
    "    duck and displace each other:\n"
    "        playlist render sounds/mainpls.txt bgm voxwin@2 --for 8 -o win.wav\n"
    "\n"
    "docs/playlists.md describes the language.\n";

int usage_error(const std::string& what) {
  std::fprintf(stderr, "playlist: %s; see playlist --help\n", what.c_str());
  return EXIT_USAGE;
}

bool seconds(const char* text, double least, double& value) {
  char* end = nullptr;
  value = std::strtod(text, &end);
  return end != text && *end == '\0' && value >= least && value <= LONGEST_S;
}

// "NAME" or "NAME@SECONDS".
bool request(const std::string& text, RenderRequest& asked) {
  const std::size_t at = text.rfind('@');
  asked.name = text.substr(0, at);
  return !asked.name.empty() &&
         (at == std::string::npos || seconds(text.c_str() + at + 1, 0, asked.at_s));
}

int run_check(int count, char** words) {
  if (count != 1 || *words[0] == '\0') return usage_error("check takes one file");
  return check_playlist_file(words[0]) ? EXIT_SUCCESS : EXIT_FAILURE;
}

int run_render(int count, char** words) {
  RenderOptions options;
  for (int i = 0; i < count; ++i) {
    const std::string word = words[i];
    const char* const value = i + 1 < count ? words[i + 1] : "";
    if (word == "--for") {
      if (!seconds(value, 0.001, options.for_s)) return usage_error("--for needs 0.001 to 3600");
      ++i;
    } else if (word == "-o") {
      options.output = value;
      ++i;
    } else if (word.starts_with("-")) {
      return usage_error("there is no option " + word);
    } else if (word.empty()) {
      return usage_error("an empty word is neither a file nor a playlist");
    } else if (options.script.empty()) {
      options.script = word;
    } else if (RenderRequest asked; request(word, asked)) {
      options.requests.push_back(asked);
    } else {
      return usage_error("\"" + word + "\" is not NAME or NAME@SECONDS");
    }
  }
  if (options.script.empty()) return usage_error("render needs a playlist file");
  if (options.requests.empty()) return usage_error("render needs the name of a playlist");
  if (options.output.empty()) return usage_error("render needs -o OUTPUT.wav");
  return render_playlists(options) ? EXIT_SUCCESS : EXIT_FAILURE;
}

}  // namespace

int main(int argc, char** argv) {
  const std::string verb = argc > 1 ? argv[1] : "";
  if (verb == "--help" || verb == "-h") {
    std::fputs(HELP, stdout);
    return EXIT_SUCCESS;
  }
  if (verb == "check") return run_check(argc - 2, argv + 2);
  if (verb == "render") return run_render(argc - 2, argv + 2);
  return usage_error(verb.empty() ? "say check or render" : "it can't \"" + verb + "\"");
}
