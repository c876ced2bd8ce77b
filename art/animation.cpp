#include "art/animation.h"

#include <zlib.h>

#include <cstring>

namespace art {

namespace {

// Numbers in a PNG file are big-endian.
void put(std::vector<uint8_t>& out, uint32_t value, int bytes) {
  for (int i = bytes - 1; i >= 0; i--) out.push_back(static_cast<uint8_t>(value >> (8 * i)));
}

// Each row as its difference from the row above, which is zero on flat ground; then deflated.
std::vector<uint8_t> deflated(const Picture& picture) {
  const size_t row_bytes = static_cast<size_t>(picture.width) * 4;
  std::vector<uint8_t> raw;
  raw.reserve((row_bytes + 1) * static_cast<size_t>(picture.height));
  for (int y = 0; y < picture.height; y++) {
    raw.push_back(2);  // "up"
    const uint8_t *row = picture.at(0, y), *above = y ? picture.at(0, y - 1) : nullptr;
    for (size_t i = 0; i < row_bytes; i++)
      raw.push_back(static_cast<uint8_t>(row[i] - (above ? above[i] : 0)));
  }
  uLongf size = compressBound(raw.size());
  std::vector<uint8_t> packed(size);
  if (compress2(packed.data(), &size, raw.data(), raw.size(), 6) != Z_OK) size = 0;
  packed.resize(size);
  return packed;
}

}  // namespace

AnimationWriter::AnimationWriter(const std::string& path, int width, int height, int frames)
    : file_(std::fopen(path.c_str(), "wb")),
      width_(width),
      height_(height),
      left_(frames),
      good_(file_ != nullptr) {
  if (!file_) return;
  static constexpr uint8_t kSignature[] = {0x89, 'P', 'N', 'G', '\r', '\n', 0x1a, '\n'};
  good_ = std::fwrite(kSignature, sizeof kSignature, 1, file_) == 1;
  std::vector<uint8_t> head;
  put(head, static_cast<uint32_t>(width), 4);
  put(head, static_cast<uint32_t>(height), 4);
  head.insert(head.end(), {8, 6, 0, 0, 0});  // 8 bits, RGBA, deflate, filters, no interlace
  chunk("IHDR", head);
  std::vector<uint8_t> control;
  put(control, static_cast<uint32_t>(frames), 4);
  put(control, 0, 4);  // for ever
  chunk("acTL", control);
}

AnimationWriter::~AnimationWriter() {
  if (file_) std::fclose(file_);
}

void AnimationWriter::chunk(const char* tag, const std::vector<uint8_t>& data) {
  std::vector<uint8_t> out;
  put(out, static_cast<uint32_t>(data.size()), 4);
  out.insert(out.end(), tag, tag + 4);
  out.insert(out.end(), data.begin(), data.end());
  put(out, static_cast<uint32_t>(crc32(0, out.data() + 4, static_cast<uInt>(out.size() - 4))), 4);
  good_ = good_ && std::fwrite(out.data(), out.size(), 1, file_) == 1;
}

void AnimationWriter::add(const Picture& picture, int ms) {
  if (!good_ || picture.width != width_ || picture.height != height_ || left_-- <= 0) {
    good_ = false;
    return;
  }
  const bool first = sequence_ == 0;
  std::vector<uint8_t> control;
  put(control, sequence_++, 4);
  put(control, static_cast<uint32_t>(width_), 4);
  put(control, static_cast<uint32_t>(height_), 4);
  put(control, 0, 4);
  put(control, 0, 4);
  put(control, static_cast<uint32_t>(ms), 2);
  put(control, 1000, 2);
  put(control, 0, 2);  // the next frame replaces this one completely
  chunk("fcTL", control);
  std::vector<uint8_t> packed = deflated(picture);
  if (packed.empty()) good_ = false;
  if (first) return chunk("IDAT", packed);  // simple readers show the first frame
  std::vector<uint8_t> data;
  put(data, sequence_++, 4);
  data.insert(data.end(), packed.begin(), packed.end());
  chunk("fdAT", data);
}

bool AnimationWriter::finish() {
  if (!file_) return false;
  chunk("IEND", {});
  const bool closed = std::fclose(file_) == 0;
  file_ = nullptr;
  return good_ && closed && left_ == 0;
}

}  // namespace art
