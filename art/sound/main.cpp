// render_sounds OUTDIR            brings OUTDIR/sounds up to date
// render_sounds OUTDIR NAME...    makes some sounds again
// render_sounds --levels NAME...  loudness, peak and length of sounds (all if none is named)
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <string>
#include <utility>
#include <vector>

#include "art/render_jobs.h"
#include "art/sound/catalogue.h"
#include "art/sound/speech.h"
#include "art/source_key.h"

namespace {

using art::sound::Entry;

int usage() {
  std::fprintf(stderr,
               "usage: render_sounds OUTDIR            what is out of date\n"
               "       render_sounds OUTDIR NAME...    these sounds, in any case\n"
               "       render_sounds --levels NAME...  how loud they are\n");
  return 2;
}

std::vector<Entry> all_sounds() {
  std::vector<Entry> all;
  for (const auto* family : art::sound::families())
    for (const auto& row : family->rows) all.push_back({family, &row});
  return all;
}

bool find_sounds(char** names, int count, std::vector<Entry>& found) {
  for (int i = 0; i < count; i++) {
    found.push_back(art::sound::catalogue_find(names[i]));
    if (found.back().row) continue;
    std::fprintf(stderr, "render_sounds: no sound is called %s\n", names[i]);
    return false;
  }
  return true;
}

void levels(const std::vector<Entry>& sounds) {
  for (const Entry& entry : sounds) {
    const auto wave = art::sound::catalogue_render(*entry.row);
    std::printf("%-24s %6.2f s %6.1f LUFS %6.1f dBTP\n", entry.row->name,
                static_cast<double>(wave.frames()) / art::sound::kRate,
                loudness_of(wave, entry.row->kind), true_peak_db(wave));
  }
}

bool copy_script(const std::string& path) {
  std::error_code error;
  std::filesystem::copy_file(std::string(ART_SOURCE_ROOT) + "/art/sound/mainpls.txt", path,
                             std::filesystem::copy_options::overwrite_existing, error);
  return !error;
}

std::string key_of(const art::sound::Family& family) {
  const std::string key = art::source_key(family.source);
  return &family == &art::sound::kVoiceFamily ? key + "-" + art::sound::speech_version() : key;
}

bool render(const std::string& outdir, const std::vector<Entry>& sounds, bool again) {
  std::vector<art::RenderJob> jobs;
  jobs.reserve(sounds.size() + 1);
  for (const auto& [family, row] : sounds)
    jobs.push_back({std::string("sounds/") + row->name + ".wav", key_of(*family), family->cost,
                    [sound = row](const std::string& path) {
                      return wave_write(art::sound::catalogue_render(*sound), path);
                    }});
  if (!again)
    jobs.push_back(
        {"sounds/mainpls.txt", art::source_key("art/sound/mainpls.txt"), 0, copy_script});
  return art::render_jobs(outdir, std::move(jobs), again, "sounds", stdout);
}

}  // namespace

int main(int argc, char** argv) {
  const bool levels_only = argc > 1 && std::strcmp(argv[1], "--levels") == 0;
  if (argc < 2 || (argv[1][0] == '-' && !levels_only)) return usage();
  if (argv[1][0] == '\0') {
    std::fprintf(stderr, "render_sounds: an empty name is not a folder\n");
    return 2;
  }
  std::vector<Entry> sounds;
  if (!find_sounds(argv + 2, argc - 2, sounds)) return 2;
  const bool all = sounds.empty();
  if (all) sounds = all_sounds();
  if (levels_only) {
    levels(sounds);
    return 0;
  }
  return render(argv[1], sounds, !all) ? 0 : 1;
}
