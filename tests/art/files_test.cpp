// What the render program writes: formats, the list of checksums, and which files are rendered
// again.
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>
#include <fstream>
#include <optional>
#include <string>
#include <vector>

#include "art/animation.h"
#include "art/file_list.h"
#include "art/render.h"
#include "art/render_jobs.h"
#include "art/source_key.h"
#include "tests/art/picture_files.h"
#include "tests/plain_user.h"
#include "tests/temp_folder.h"

namespace fs = std::filesystem;
using namespace art;

namespace {

struct Files : testing::Test {
  Files() { fs::create_directories(dir.file("images/fonts")); }
  TempFolder dir;
};

// Bit by bit, as in the boot check.
std::string slow_crc(const std::string& bytes) {
  uint32_t crc = 0x63046310;
  for (const unsigned char b : bytes) {
    crc ^= b;
    for (int i = 0; i < 8; i++) crc = (crc >> 1) ^ ((crc & 1) ? 0xEDB88320u : 0);
  }
  return std::to_string(static_cast<int32_t>(crc));
}

}  // namespace

TEST_F(Files, WritesEveryPixelInEveryFormat) {
  Picture p(8, 4);
  for (size_t i = 0; i < p.rgba.size(); i++) p.rgba[i] = static_cast<uint8_t>(i * 7 + 3);
  ASSERT_TRUE(picture_write_tga(p, dir.file("a.tga")));
  ASSERT_TRUE(picture_write_png(p, dir.file("a.png")));
  ASSERT_TRUE(picture_write_bmp(p, dir.file("a.bmp")));
  EXPECT_EQ(read_picture(dir.path(), "a.tga")->rgba, p.rgba);
  EXPECT_EQ(read_picture(dir.path(), "a.png")->rgba, p.rgba);
  for (size_t i = 3; i < p.rgba.size(); i += 4) p.rgba[i] = 255;  // a bitmap has no alpha
  EXPECT_EQ(read_picture(dir.path(), "a.bmp")->rgba, p.rgba);
}

TEST_F(Files, TransparentPixelsTakeNeighbouringColour) {
  Canvas canvas(8, 8);
  cairo_set_source_rgba(canvas.ctx, 1, 0.5, 0, 0.5);
  cairo_rectangle(canvas.ctx, 2, 3, 2, 2);
  cairo_fill(canvas.ctx);
  cairo_set_source_rgba(canvas.ctx, 0, 0.5, 1, 1);
  cairo_rectangle(canvas.ctx, 4, 3, 2, 2);
  cairo_fill(canvas.ctx);
  Picture p(8, 8);
  picture_take(p, canvas, 0, 0);
  const auto colour = [&](int x, int y) {
    const uint8_t* q = p.at(x, y);
    return std::vector<int>(q, q + 4);
  };
  EXPECT_EQ(colour(3, 3), (std::vector{255, 128, 0, 128})) << "straight, not halved by its alpha";
  EXPECT_EQ(colour(0, 0), (std::vector{255, 128, 0, 0})) << "of its only neighbours";
  EXPECT_EQ(colour(7, 7), (std::vector{0, 128, 255, 0}));
  EXPECT_EQ(colour(3, 2), (std::vector{128, 128, 127, 0})) << "of two and one, which weighs double";
}

TEST_F(Files, ListHasTheChecksumsOfTheBootCheck) {
  const std::string one = "a picture", other(5000, '\x91');
  dir.write("images/b.tga", one);
  dir.write("images/empty.tga", "");
  dir.write("images/fonts/f.bmp", other);
  ASSERT_EQ(file_list_write(dir.path()), 3);
  EXPECT_EQ(dir.read("lhpcrc.txt"), "images\\b.tga 9 " + slow_crc(one) +
                                        "\nimages\\empty.tga 0 1661231888\n" +
                                        "images\\fonts\\f.bmp 5000 " + slow_crc(other) + "\n");
  EXPECT_NE((slow_crc(one) + slow_crc(other)).find('-'), std::string::npos) << "none is negative";
  EXPECT_EQ(file_list_write(dir.file("nowhere")), -1);
}

TEST_F(Files, ListContainsThePrograms) {
  dir.write("lilyhop", "a program");
  dir.write("notes.txt", "no program");
  fs::permissions(dir.file("lilyhop"), fs::perms::owner_exec, fs::perm_options::add);
  const TempFolder elsewhere;  // a build tree's own out/ has links to the pictures
  elsewhere.write("b.tga", "b");
  fs::remove_all(dir.file("images"));
  fs::create_directory_symlink(elsewhere.path(), dir.file("images"));
  EXPECT_EQ(file_list_write(dir.path()), 2);
  EXPECT_EQ(dir.read("lhpcrc.txt"),
            "images\\b.tga 1 " + slow_crc("b") + "\nlilyhop 9 " + slow_crc("a program") + "\n");
}

TEST_F(Files, RendersOnlyOutdatedFilesAndAlwaysTheSameBytes) {
  const std::string text = "images/lily_bonus_txt.tga", spark = "images/anim_spark.tga";
  const CatalogueEntry row = catalogue_find("lily_bonus_txt"),
                       sparks = catalogue_find("anim_spark");
  ASSERT_TRUE(row.row && sparks.row);
  ASSERT_TRUE(render_files(dir.path(), {row, sparks}, false, nullptr));
  const std::string first = dir.read(text), second = dir.read(spark);
  ASSERT_EQ(first.size(), 18u + 64 * 32 * 4);

  // An operator's own picture is kept; a missing one is rendered with the same bytes.
  dir.write(text, "my own");
  fs::remove(dir.file(spark));
  ASSERT_TRUE(render_files(dir.path(), {row, sparks}, false, nullptr));
  EXPECT_EQ(dir.read(text), "my own");
  EXPECT_EQ(dir.read(spark), second);

  // Made from another source: rendered again.
  dir.write(".art/images_lily_bonus_txt.tga", "0123456789abcdef\n");
  ASSERT_TRUE(render_files(dir.path(), {row}, false, nullptr));
  EXPECT_EQ(dir.read(text), first);
  EXPECT_FALSE(dir.has(text + ".part"));

  // The same source, and another size: due again.
  CatalogueRow tall = *row.row;
  tall.height *= 2;
  ASSERT_TRUE(render_files(dir.path(), {{row.family, &tall}}, false, nullptr));
  EXPECT_EQ(dir.read(text).size(), 18u + 64 * 64 * 4);
  EXPECT_FALSE(render_files(dir.file(text), {row}, false, nullptr)) << "a file is no folder";
}

TEST_F(Files, UnwritableFolderIsReportedOnceAndNothingIsRendered) {
  dir.write("file", "");
  fs::create_directory(dir.file("shut"));
  chmod(dir.file("shut").c_str(), 0555);
  const PlainUser user(dir.path());
  ASSERT_TRUE(user.changed());
  int drawn = 0;
  const auto draw = [&](const std::string&) { return ++drawn > 0; };
  const std::vector<RenderJob> jobs = {{"images/a.tga", "1", 1, draw},
                                       {"images/b.tga", "1", 1, draw}};
  testing::internal::CaptureStderr();
  EXPECT_FALSE(render_jobs(dir.file("file"), jobs, true, "pictures", nullptr));
  EXPECT_FALSE(render_jobs(dir.file("shut"), jobs, false, "pictures", nullptr));
  EXPECT_EQ(testing::internal::GetCapturedStderr(),
            dir.file("file/.art: Not a directory\n") + dir.file("shut/.art: Permission denied\n"));
  EXPECT_EQ(drawn, 0);
}

TEST_F(Files, KeyDependsOnAllSourcesOfAPicture) {
  fs::create_directories(dir.file("art"));
  dir.write("art/frog.cpp", "#include \"art/model.h\"\n#include <cmath>\nint frog;\n");
  dir.write("art/model.h", "int model();\n");
  dir.write("art/model.cpp", "#include \"art/palette.h\"\nint model() { return 1; }\n");
  dir.write("art/palette.h", "int green;\n");
  const auto key = [&] { return source_key_below(dir.path(), "art/frog.cpp"); };
  std::string before = key();
  EXPECT_EQ(before.size(), 16u);
  dir.write("art/bug.cpp", "int beetle;\n");
  EXPECT_EQ(key(), before) << "not one of its sources";
  // Included headers count, and the sources beside them.
  for (const char* file : {"art/palette.h", "art/model.cpp", "art/model.h", "art/frog.cpp"}) {
    std::ofstream(dir.file(file), std::ios::app) << "// changed\n";
    EXPECT_NE(key(), before) << file;
    before = key();
  }
}

TEST_F(Files, AnimationContainsItsFramesAndReadsAsAPicture) {
  Picture red(6, 4), blue(6, 4);
  for (size_t i = 0; i < red.rgba.size(); i += 4) {
    red.rgba[i] = blue.rgba[i + 2] = 200;
    red.rgba[i + 3] = blue.rgba[i + 3] = 255;
  }
  AnimationWriter out(dir.file("a.png"), 6, 4, 2);
  out.add(red, 35);
  out.add(blue, 1000);
  ASSERT_TRUE(out.finish());
  EXPECT_EQ(read_picture(dir.path(), "a.png")->rgba, red.rgba);
  for (const char* chunk : {"acTL", "fdAT"})
    EXPECT_NE(dir.read("a.png").find(chunk), std::string::npos) << chunk;

  AnimationWriter few(dir.file("b.png"), 6, 4, 2);
  few.add(red, 35);
  EXPECT_FALSE(few.finish()) << "one frame of two";
}
