#include "art/sound/catalogue.h"

namespace art::sound {

std::span<const Family* const> families() {
  static constexpr const Family* kAll[] = {&kCalypsoFamily, &kStrutFamily,   &kFloatFamily,
                                           &kBoogieFamily,  &kJackpotFamily, &kChaseFamily,
                                           &kCrowdFamily,   &kVoiceFamily,   &kCabinetFamily,
                                           &kRiverFamily,   &kFrogFamily,    &kToneFamily};
  return kAll;
}

Entry catalogue_find(std::string_view name) {
  for (const Family* family : families())
    for (const Row& row : family->rows)
      if (name == row.name) return {family, &row};
  return {nullptr, nullptr};
}

Wave catalogue_render(const Row& row) {
  Wave wave = row.make(row.variant);
  finish(wave, row.kind, row.loop);
  return wave;
}

}  // namespace art::sound
