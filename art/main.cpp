// render OUTDIR [NAME...]          fills OUTDIR/images, all of it or some pictures
// render --list OUTDIR             writes OUTDIR/lhpcrc.txt for what lies there
// render --sheet NAME FILE.png     frames of a picture side by side, for looking at them
#include <cstdio>
#include <cstring>
#include <string>
#include <vector>

#include "art/file_list.h"
#include "art/render.h"
#include "art/sheet.h"

namespace {

int usage() {
  std::fprintf(stderr,
               "usage: render OUTDIR [NAME...]\n"
               "       render --list OUTDIR\n"
               "       render --sheet NAME FILE.png\n");
  return 2;
}

int unknown(const char* name) {
  std::fprintf(stderr, "render: no picture is called %s\n", name);
  return 2;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 2) return usage();
  if (std::strcmp(argv[1], "--list") == 0) {
    if (argc != 3) return usage();
    int lines = art::file_list_write(argv[2]);
    if (lines < 0) {
      std::fprintf(stderr, "render: can't list %s\n", argv[2]);
      return 1;
    }
    std::printf("%s/lhpcrc.txt: %d files\n", argv[2], lines);
    return 0;
  }
  if (std::strcmp(argv[1], "--sheet") == 0) {
    if (argc != 4) return usage();
    const art::CatalogueRow* row = art::catalogue_find(argv[2]);
    if (!row) return unknown(argv[2]);
    return art::sheet_write(*row, argv[3]) ? 0 : 1;
  }
  if (argv[1][0] == '-') return usage();
  std::vector<const art::CatalogueRow*> rows;
  for (int i = 2; i < argc; i++) {
    const art::CatalogueRow* row = art::catalogue_find(argv[i]);
    if (!row) return unknown(argv[i]);
    rows.push_back(row);
  }
  if (argc == 2)
    for (const art::CatalogueRow& row : art::catalogue()) rows.push_back(&row);
  return art::render_files(argv[1], rows, argc > 2, stdout) ? 0 : 1;
}
