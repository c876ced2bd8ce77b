#include <gtest/gtest.h>

#include <cstdio>

#include "tests/gl/screen.h"

int main(int argc, char** argv) {
  testing::InitGoogleTest(&argc, argv);
  if (!screen_start()) {
    std::fprintf(stderr, "no display, and Xvfb doesn't start\n");
    return 1;
  }
  const int result = RUN_ALL_TESTS();
  screen_stop();
  return result;
}
