#include <gtest/gtest.h>

#include <cstdio>
#include <cstring>

#include "tests/gl/docs_pictures.h"
#include "tests/gl/own_screen.h"
#include "tests/gl/screen.h"

int main(int argc, char** argv) {
  if (argc == 3 && std::strcmp(argv[1], OWN_SCREEN) == 0) return own_screen(argv[2]);
  if (argc == 3 && std::strcmp(argv[1], DOCS_PICTURES) == 0) return docs_pictures_write(argv[2]);
  testing::InitGoogleTest(&argc, argv);
  if (!screen_start()) {
    std::fprintf(stderr, "no display, and Xvfb doesn't start\n");
    return 1;
  }
  const int result = RUN_ALL_TESTS();
  screen_stop();
  return result;
}
