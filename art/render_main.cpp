// render OUTDIR            brings OUTDIR/images up to date
// render OUTDIR NAME...    draws some pictures again
// render NAME...           the same in out/, from the project's root
// render --list OUTDIR     writes OUTDIR/lhpcrc.txt for what lies there
#include <cstdio>
#include <cstring>
#include <string>
#include <vector>

#include "art/file_list.h"
#include "art/render.h"

namespace {

int usage() {
  std::fprintf(stderr,
               "usage: render OUTDIR            what is out of date\n"
               "       render [OUTDIR] NAME...  these pictures, in any case (default out/)\n"
               "       render --list OUTDIR     the list of files, lhpcrc.txt\n");
  return 2;
}

int list(const char* outdir) {
  if (art::file_list_write(outdir) >= 0) return 0;
  std::fprintf(stderr, "render: can't list %s\n", outdir);
  return 1;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc == 3 && std::strcmp(argv[1], "--list") == 0) return list(argv[2]);
  if (argc < 2 || argv[1][0] == '-') return usage();
  if (argv[1][0] == '\0') {
    std::fprintf(stderr, "render: an empty name is not a folder\n");
    return 2;
  }
  const bool named_first = art::catalogue_find(argv[1]).row != nullptr;
  const std::string outdir = named_first ? "out" : argv[1];
  std::vector<art::CatalogueEntry> pictures;
  for (int i = named_first ? 1 : 2; i < argc; i++) {
    pictures.push_back(art::catalogue_find(argv[i]));
    if (pictures.back().row) continue;
    std::fprintf(stderr, "render: no picture is called %s\n", argv[i]);
    return 2;
  }
  const bool all = pictures.empty();
  return art::render_files(outdir, all ? art::catalogue() : pictures, !all, stdout) ? 0 : 1;
}
