// The real scene with the installed pictures, drawn whole and without its invisible pixels.
#include <gtest/gtest.h>

#include "gfx/blit.h"
#include "presentation/scene.h"
#include "tests/gl/play.h"
#include "tests/gl/screen.h"
#include "tests/temp_folder.h"

namespace {

Shot scene_shot(int width, int height, bool whole) {
  far_bank_reset();  // its movement by frames starts alike in both
  gfx_blit_whole = whole;
  Shot shot = screen_shot(width, height, scene_draw);
  gfx_blit_whole = false;
  return shot;
}

TEST(Scene, SkippingInvisiblePixelsChangesNothing) {
  ASSERT_TRUE(screen_open());
  const TempFolder drive;
  if (!play_open(drive.path(), INSTALLATION)) GTEST_SKIP() << "no pictures in " INSTALLATION;
  play_begin();
  const int sizes[][2] = {{1360, 768}, {640, 480}, {1920, 1080}};
  constexpr int TICKS = 601;
  for (int i = 0; i < TICKS; ++i) {
    if (i % 150 == 0) {
      for (const auto& size : sizes) {
        const Shot whole = scene_shot(size[0], size[1], true);
        const Shot saved = scene_shot(size[0], size[1], false);
        ASSERT_FALSE(whole.rgb.empty());
        EXPECT_TRUE(whole.rgb == saved.rgb) << "tick " << i << ", width " << size[0];
      }
    }
    if (i % 8 == 0) scene_draw();  // gives the lanes' objects their places
    play_tick();
  }
}

}  // namespace
