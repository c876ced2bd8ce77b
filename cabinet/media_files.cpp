#include "cabinet/media_files.h"

namespace {

constexpr std::uint32_t RATE_HZ = 44100, FRAME_BYTES = 4;
constexpr std::uint32_t HAS_INDEX = 0x10, IS_INTERLEAVED = 0x100, IS_KEY = 0x10;
constexpr std::uint32_t WAV_HEAD = 44, RIFF_HEAD = 8;
constexpr const char *PICTURE = "00dc", *SOUND = "01wb";

}  // namespace

void MediaFile::put(std::uint32_t number, int bytes) {
  for (int i = 0; i < bytes; ++i) out_.put(static_cast<char>(number >> 8 * i));
}

void MediaFile::put_at(std::int64_t place, std::uint32_t number) {
  out_.seekp(place);
  put(number, 4);
  out_.seekp(0, std::ios::end);
}

void MediaFile::put_sound_format() {
  put(1, 2);  // PCM
  put(2, 2);  // channels
  put(RATE_HZ, 4);
  put(RATE_HZ * FRAME_BYTES, 4);
  put(FRAME_BYTES, 2);
  put(16, 2);  // bits
}

WavFile::WavFile(const std::string& path) {
  out_.open(path, std::ios::binary | std::ios::trunc);
  put("RIFF");
  put(0, 4);
  put("WAVEfmt ");
  put(16, 4);
  put_sound_format();
  put("data");
  put(0, 4);
}

void WavFile::add_sound(const std::int16_t* samples, std::size_t frames) {
  out_.write(reinterpret_cast<const char*>(samples),
             static_cast<std::streamsize>(frames * FRAME_BYTES));
}

void WavFile::close() {
  const auto bytes = static_cast<std::uint32_t>(size());
  put_at(4, bytes - RIFF_HEAD);
  put_at(WAV_HEAD - 4, bytes - WAV_HEAD);
  out_.close();
}

AviFile::AviFile(const std::string& path, int width, int height, int pictures_per_second) {
  out_.open(path, std::ios::binary | std::ios::trunc);
  put("RIFF");
  put(0, 4);
  put("AVI LIST");
  put(4 + 64 + 124 + 102, 4);
  put("hdrl");
  put_head(width, height, pictures_per_second);
  put_picture_stream(width, height, pictures_per_second);
  put_sound_stream();
  put("LIST");
  list_at_ = size();
  put(0, 4);
  put("movi");
}

void AviFile::put_head(int width, int height, int pictures_per_second) {
  put("avih");
  put(56, 4);
  put(static_cast<std::uint32_t>(1'000'000 / pictures_per_second), 4);
  put(0, 4);
  put(0, 4);
  put(HAS_INDEX | IS_INTERLEAVED, 4);
  total_at_ = size();
  put(0, 4);
  put(0, 4);
  put(2, 4);  // streams
  put(0, 4);
  put(static_cast<std::uint32_t>(width), 4);
  put(static_cast<std::uint32_t>(height), 4);
  for (int i = 0; i < 4; ++i) put(0, 4);
}

void AviFile::put_picture_stream(int width, int height, int pictures_per_second) {
  put("LIST");
  put(4 + 64 + 48, 4);
  put("strlstrh");
  put(56, 4);
  put("vidsMJPG");
  for (int i = 0; i < 3; ++i) put(0, 4);
  put(1, 4);
  put(static_cast<std::uint32_t>(pictures_per_second), 4);
  put(0, 4);
  pictures_at_ = size();
  put(0, 4);
  put(0, 4);
  put(~0U, 4);  // quality: default
  put(0, 4);
  put(0, 4);
  put(static_cast<std::uint32_t>(width), 2);
  put(static_cast<std::uint32_t>(height), 2);
  put("strf");
  put(40, 4);
  put(40, 4);
  put(static_cast<std::uint32_t>(width), 4);
  put(static_cast<std::uint32_t>(height), 4);
  put(1, 2);
  put(24, 2);
  put("MJPG");
  put(static_cast<std::uint32_t>(width * height * 3), 4);
  for (int i = 0; i < 4; ++i) put(0, 4);
}

void AviFile::put_sound_stream() {
  put("LIST");
  put(4 + 64 + 26, 4);
  put("strlstrh");
  put(56, 4);
  put("auds");
  for (int i = 0; i < 4; ++i) put(0, 4);
  put(1, 4);
  put(RATE_HZ, 4);
  put(0, 4);
  sound_at_ = size();
  put(0, 4);
  put(0, 4);
  put(~0U, 4);
  put(FRAME_BYTES, 4);
  put(0, 4);
  put(0, 4);
  put("strf");
  put(18, 4);
  put_sound_format();
  put(0, 2);
}

void AviFile::add_chunk(const char* name, const char* bytes, std::size_t chunk) {
  // Offsets count from the word "movi".
  index_.push_back(
      {name, static_cast<std::uint32_t>(size() - list_at_ - 4), static_cast<std::uint32_t>(chunk)});
  put(name);
  put(static_cast<std::uint32_t>(chunk), 4);
  out_.write(bytes, static_cast<std::streamsize>(chunk));
  if (chunk % 2 != 0) put(0, 1);
}

void AviFile::add_sound(const std::int16_t* samples, std::size_t frames) {
  add_chunk(SOUND, reinterpret_cast<const char*>(samples), frames * FRAME_BYTES);
  sound_frames_ += static_cast<std::uint32_t>(frames);
}

void AviFile::add_picture(const std::string& jpeg) {
  add_chunk(PICTURE, jpeg.data(), jpeg.size());
  ++pictures_;
}

void AviFile::close() {
  const auto list = static_cast<std::uint32_t>(size() - list_at_ - 4);
  put("idx1");
  put(static_cast<std::uint32_t>(index_.size() * 16), 4);
  for (const Entry& entry : index_) {
    put(entry.name);
    put(IS_KEY, 4);
    put(entry.offset, 4);
    put(entry.size, 4);
  }
  put_at(list_at_, list);
  put_at(4, static_cast<std::uint32_t>(size()) - RIFF_HEAD);
  put_at(total_at_, pictures_);
  put_at(pictures_at_, pictures_);
  put_at(sound_at_, sound_frames_);
  out_.close();
}
