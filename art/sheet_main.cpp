// sheet NAME FILE.png              a picture's frames side by side
// sheet --move NAME FILE.png       the same in motion, as an animated PNG
// sheet --families FOLDER          a sheet for each family of pictures
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

#include "art/sheet.h"

namespace {

struct Options {
  bool move = false;
  std::string families;
  art::Ground ground = art::Ground::kGrass;
  int frame_ms = 35;  // the pace of most sheets in the game
  std::vector<std::string> names;
};

int usage() {
  std::fprintf(stderr,
               "usage: sheet [--on grass|water|grey] NAME FILE.png\n"
               "       sheet [--on ...] --move [--ms MILLISECONDS A FRAME] NAME FILE.png\n"
               "       sheet [--on ...] --families FOLDER\n");
  return 2;
}

bool parse(int argc, char** argv, Options& o) {
  for (int i = 1; i < argc; i++) {
    const std::string word = argv[i], value = i + 1 < argc ? argv[i + 1] : "";
    if (word == "--move") {
      o.move = true;
    } else if (word == "--families" && !value.empty()) {
      o.families = argv[++i];
    } else if (word == "--ms" && std::strtol(value.c_str(), nullptr, 10) > 0) {
      o.frame_ms = static_cast<int>(std::strtol(argv[++i], nullptr, 10));
    } else if (word == "--on" && (value == "grass" || value == "water" || value == "grey")) {
      o.ground = value == "grass"   ? art::Ground::kGrass
                 : value == "water" ? art::Ground::kWater
                                    : art::Ground::kGrey;
      i++;
    } else if (word.empty() || word[0] == '-') {
      return false;
    } else {
      o.names.push_back(word);
    }
  }
  return o.names.size() == (o.families.empty() ? 2 : 0);
}

bool write_families(const Options& o) {
  std::error_code error;
  std::filesystem::create_directories(o.families, error);
  bool good = !error;
  for (const art::Family* family : art::families()) {
    const std::string stem = std::filesystem::path(family->source).stem();
    good = good && art::family_sheet_write(*family, o.ground, o.families + "/" + stem + ".png");
  }
  return good;
}

}  // namespace

int main(int argc, char** argv) {
  Options o;
  if (!parse(argc, argv, o)) return usage();
  bool good;
  std::string to = o.families;
  if (!o.families.empty()) {
    good = write_families(o);
  } else {
    const art::CatalogueRow* row = art::catalogue_find(o.names[0]).row;
    if (!row) {
      std::fprintf(stderr, "sheet: no picture is called %s\n", o.names[0].c_str());
      return 2;
    }
    to = o.names[1];
    good = o.move ? art::motion_write(*row, o.ground, o.frame_ms, to)
                  : art::contact_sheet_write(*row, o.ground, to);
  }
  if (!good) std::fprintf(stderr, "sheet: can't write %s\n", to.c_str());
  return good ? 0 : 1;
}
