#include "art/render.h"

#include <cstring>
#include <map>
#include <utility>

#include "art/render_jobs.h"
#include "art/source_key.h"

namespace art {

namespace {

bool write_picture(const CatalogueRow& row, const std::string& path) {
  Picture picture = catalogue_render(row);
  return std::strstr(row.name, ".png")   ? picture_write_png(picture, path)
         : std::strstr(row.name, ".bmp") ? picture_write_bmp(picture, path)
                                         : picture_write_tga(picture, path);
}

// What of a picture stands elsewhere than in its family's source.
std::string facts(const CatalogueRow& row) {
  std::string text;
  for (int fact : {row.width, row.height, row.columns, row.rows, row.frames})
    text += "-" + std::to_string(fact);
  return text;
}

}  // namespace

bool render_files(const std::string& outdir, const std::vector<CatalogueEntry>& pictures,
                  bool again, FILE* log) {
  std::map<const Family*, std::string> keys;
  std::vector<RenderJob> jobs;
  for (const auto& [family, row] : pictures) {
    std::string& key = keys[family];
    if (key.empty()) key = source_key(family->source);
    const double pixels = static_cast<double>(row->frames) * row->cell_width * row->cell_height;
    jobs.push_back(
        {catalogue_path(*row), key + facts(*row), pixels,
         [picture = row](const std::string& path) { return write_picture(*picture, path); }});
  }
  return render_jobs(outdir, std::move(jobs), again, "pictures", log);
}

}  // namespace art
