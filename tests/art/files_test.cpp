// What the render program writes: formats, the list of checksums, and which files are rendered
// again.
#include <gtest/gtest.h>

#include <unistd.h>

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

namespace fs = std::filesystem;
using namespace art;

namespace {

class Files : public testing::Test {
 protected:
  void SetUp() override {
    dir_ = fs::temp_directory_path() / ("lilyhop_art_" + std::to_string(getpid()));
    fs::create_directories(dir_ / "images" / "fonts");
  }
  void TearDown() override { fs::remove_all(dir_); }

  void write(const std::string& name, const std::string& bytes) {
    std::ofstream(dir_ / name, std::ios::binary) << bytes;
  }
  std::string text(const std::string& name) {
    std::vector<uint8_t> b = read_file(dir_ / name);
    return {b.begin(), b.end()};
  }

  fs::path dir_;
};

// Bit by bit, as in the boot check.
int32_t slow_crc(const std::string& bytes) {
  uint32_t crc = 0x63046310;
  for (unsigned char b : bytes) {
    crc ^= b;
    for (int i = 0; i < 8; i++) crc = (crc >> 1) ^ ((crc & 1) ? 0xEDB88320u : 0);
  }
  return static_cast<int32_t>(crc);
}

}  // namespace

TEST_F(Files, WritesEveryPixelInEveryFormat) {
  Picture p(8, 4);
  for (size_t i = 0; i < p.rgba.size(); i++) p.rgba[i] = static_cast<uint8_t>(i * 7 + 3);
  ASSERT_TRUE(picture_write_tga(p, dir_ / "a.tga"));
  ASSERT_TRUE(picture_write_png(p, dir_ / "a.png"));
  ASSERT_TRUE(picture_write_bmp(p, dir_ / "a.bmp"));
  EXPECT_EQ(read_tga(dir_ / "a.tga")->rgba, p.rgba);
  EXPECT_EQ(read_png(dir_ / "a.png")->rgba, p.rgba);
  std::optional<Picture> bmp = read_bmp(dir_ / "a.bmp");
  ASSERT_TRUE(bmp);
  for (int x = 0; x < 8; x++)
    for (int y = 0; y < 4; y++)
      for (int k = 0; k < 3; k++) EXPECT_EQ(bmp->at(x, y)[k], p.at(x, y)[k]);
  // The file begins with the picture's last row: the loader reverses the rows and ignores byte 17.
  std::vector<uint8_t> tga = read_file(dir_ / "a.tga");
  EXPECT_EQ(tga[18], p.at(0, 3)[2]);
  EXPECT_EQ(tga[18 + 3], p.at(0, 3)[3]);
}

TEST_F(Files, TransparentPixelsTakeNeighbouringColour) {
  Canvas canvas(8, 8);
  cairo_set_source_rgba(canvas.ctx, 1, 0.5, 0, 0.5);
  cairo_rectangle(canvas.ctx, 3, 3, 2, 2);
  cairo_fill(canvas.ctx);
  Picture p(8, 8);
  picture_take(p, canvas, 0, 0);
  EXPECT_EQ(p.at(3, 3)[3], 128);
  EXPECT_EQ(p.at(3, 3)[0], 255);  // straight, not halved by its alpha
  for (int i = 0; i < 64; i++) {
    EXPECT_EQ(p.rgba[static_cast<size_t>(i) * 4], 255) << i;
    EXPECT_NEAR(p.rgba[static_cast<size_t>(i) * 4 + 1], 128, 1) << i;
  }
  EXPECT_EQ(p.at(0, 0)[3], 0);
}

TEST_F(Files, ListHasTheChecksumsOfTheBootCheck) {
  const std::string one = "a picture", other(5000, '\x91');
  write("images/b.tga", one);
  write("images/empty.tga", "");
  write("images/fonts/f.bmp", other);
  ASSERT_EQ(file_list_write(dir_), 3);
  EXPECT_EQ(text("lhpcrc.txt"), "images\\b.tga 9 " + std::to_string(slow_crc(one)) +
                                    "\nimages\\empty.tga 0 1661231888\nimages\\fonts\\f.bmp 5000 " +
                                    std::to_string(slow_crc(other)) + "\n");
  EXPECT_TRUE(slow_crc(one) < 0 || slow_crc(other) < 0) << "no negative checksum among these";
  EXPECT_EQ(file_list_write(dir_ / "nowhere"), -1);
}

TEST_F(Files, ListContainsThePrograms) {
  write("lilyhop", "a program");
  write("notes.txt", "no program");
  fs::permissions(dir_ / "lilyhop", fs::perms::owner_exec, fs::perm_options::add);
  const fs::path elsewhere = fs::path(dir_).concat(".images");
  fs::rename(dir_ / "images", elsewhere);  // a build tree's own out/ has links to the pictures
  fs::create_directory_symlink(elsewhere, dir_ / "images");
  write("images/b.tga", "b");
  EXPECT_EQ(file_list_write(dir_), 2);
  fs::remove_all(elsewhere);
  EXPECT_EQ(text("lhpcrc.txt"), "images\\b.tga 1 " + std::to_string(slow_crc("b")) +
                                    "\nlilyhop 9 " + std::to_string(slow_crc("a program")) + "\n");
}

TEST_F(Files, RendersOnlyOutdatedFilesAndAlwaysTheSameBytes) {
  const CatalogueEntry row = catalogue_find("lily_bonus_txt"),
                       sparks = catalogue_find("anim_spark");
  ASSERT_TRUE(row.row && sparks.row);
  ASSERT_TRUE(render_files(dir_, {row, sparks}, false, nullptr));
  const std::string first = text("images/lily_bonus_txt.tga"),
                    second = text("images/anim_spark.tga");
  ASSERT_EQ(first.size(), 18u + 64 * 32 * 4);

  // An operator's own picture is kept; a missing one is rendered with the same bytes.
  write("images/lily_bonus_txt.tga", "my own");
  fs::remove(dir_ / "images/anim_spark.tga");
  ASSERT_TRUE(render_files(dir_, {row, sparks}, false, nullptr));
  EXPECT_EQ(text("images/lily_bonus_txt.tga"), "my own");
  EXPECT_EQ(text("images/anim_spark.tga"), second);

  // Made from another source: rendered again.
  write(".art/images_lily_bonus_txt.tga", "0123456789abcdef\n");
  ASSERT_TRUE(render_files(dir_, {row}, false, nullptr));
  EXPECT_EQ(text("images/lily_bonus_txt.tga"), first);
  EXPECT_FALSE(fs::exists(dir_ / "images/lily_bonus_txt.tga.part"));

  // The same source, and another size: due again.
  CatalogueRow tall = *row.row;
  tall.height *= 2;
  ASSERT_TRUE(render_files(dir_, {{row.family, &tall}}, false, nullptr));
  EXPECT_EQ(text("images/lily_bonus_txt.tga").size(), 18u + 64 * 64 * 4);

  fs::remove_all(dir_);
  write("", "");
  std::ofstream(dir_) << "a file where the folder should be";
  EXPECT_FALSE(render_files(dir_, {row}, false, nullptr));
}

TEST_F(Files, UnwritableFolderIsReportedOnceAndNothingIsRendered) {
  write("file", "");
  int drawn = 0;
  const auto draw = [&](const std::string&) { return ++drawn > 0; };
  const std::vector<RenderJob> jobs = {{"images/a.tga", "1", 1, draw},
                                       {"images/b.tga", "1", 1, draw}};
  testing::internal::CaptureStderr();
  EXPECT_FALSE(render_jobs(dir_ / "file", jobs, true, "pictures", nullptr));
  EXPECT_EQ(testing::internal::GetCapturedStderr(),
            (dir_ / "file/.art").string() + ": Not a directory\n");
  fs::create_directory(dir_ / "shut");
  chmod((dir_ / "shut").c_str(), 0555);
  {
    const PlainUser user(dir_);
    ASSERT_TRUE(user.changed());
    testing::internal::CaptureStderr();
    EXPECT_FALSE(render_jobs(dir_ / "shut", jobs, false, "pictures", nullptr));
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              (dir_ / "shut/.art").string() + ": Permission denied\n");
  }
  EXPECT_EQ(drawn, 0);
}

TEST_F(Files, KeyDependsOnAllSourcesOfAPicture) {
  fs::create_directories(dir_ / "art");
  write("art/frog.cpp", "#include \"art/model.h\"\n#include <cmath>\nint frog;\n");
  write("art/model.h", "int model();\n");
  write("art/model.cpp", "#include \"art/palette.h\"\nint model() { return 1; }\n");
  write("art/palette.h", "int green;\n");
  write("art/bug.cpp", "int bug;\n");
  auto key = [&] { return source_key_below(dir_, "art/frog.cpp"); };
  const std::string first = key();
  EXPECT_EQ(first.size(), 16u);
  write("art/bug.cpp", "int beetle;\n");
  EXPECT_EQ(key(), first) << "not one of its sources";
  // Included headers count, and the sources beside them.
  std::string before = first;
  for (const char* file : {"art/palette.h", "art/model.cpp", "art/model.h", "art/frog.cpp"}) {
    std::ofstream(dir_ / file, std::ios::app) << "// changed\n";
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
  AnimationWriter out(dir_ / "a.png", 6, 4, 2);
  out.add(red, 35);
  out.add(blue, 1000);
  ASSERT_TRUE(out.finish());
  std::optional<Picture> first = read_png(dir_ / "a.png");
  ASSERT_TRUE(first);
  EXPECT_EQ(first->rgba, red.rgba);
  const std::string file = text("a.png");
  EXPECT_NE(file.find("acTL"), file.npos);
  EXPECT_NE(file.find("fdAT"), file.npos);

  AnimationWriter few(dir_ / "b.png", 6, 4, 2);
  few.add(red, 35);
  EXPECT_FALSE(few.finish()) << "one frame of two";
}
