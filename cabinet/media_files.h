// Files of sound, and of sound with pictures, in formats that any player opens: WAV, and AVI with
// JPEG pictures. 16-bit stereo at 44100 Hz.
#pragma once

#include <cstddef>
#include <cstdint>
#include <fstream>
#include <string>
#include <vector>

// What both formats share. Without `close`, the sizes in the header are wrong; players correct
// that.
class MediaFile {
 public:
  virtual ~MediaFile() = default;

  // `frames` frames: left, right, left, ...
  virtual void add_sound(const std::int16_t* samples, std::size_t frames) = 0;

  // Writes the sizes and the index.
  virtual void close() = 0;

  // Bytes so far. Neither format safely holds more than MEDIA_BYTES_MAX.
  [[nodiscard]] std::int64_t size() { return out_.tellp(); }
  [[nodiscard]] bool good() const { return out_.good(); }

 protected:
  void put(std::uint32_t number, int bytes);
  void put(const std::string& text) { out_ << text; }
  void put_at(std::int64_t place, std::uint32_t number);  // 4 bytes; then back to the end

  void put_sound_format();

  std::ofstream out_;
};

constexpr std::int64_t MEDIA_BYTES_MAX = 2'000'000'000;

class WavFile final : public MediaFile {
 public:
  explicit WavFile(const std::string& path);
  void add_sound(const std::int16_t* samples, std::size_t frames) override;
  void close() override;
};

class AviFile final : public MediaFile {
 public:
  AviFile(const std::string& path, int width, int height, int pictures_per_second);
  void add_sound(const std::int16_t* samples, std::size_t frames) override;
  void close() override;

  // Adds a picture; an empty text repeats the last one.
  void add_picture(const std::string& jpeg);

 private:
  struct Entry {
    const char* name;
    std::uint32_t offset, size;
  };
  void add_chunk(const char* name, const char* bytes, std::size_t size);
  void put_head(int width, int height, int pictures_per_second);
  void put_picture_stream(int width, int height, int pictures_per_second);
  void put_sound_stream();

  std::vector<Entry> index_;
  std::uint32_t pictures_ = 0, sound_frames_ = 0;
  std::int64_t list_at_ = 0, total_at_ = 0, pictures_at_ = 0, sound_at_ = 0;
};
