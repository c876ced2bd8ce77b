#include "cabinet/recording.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <cerrno>
#include <cstdint>
#include <cstring>
#include <fstream>
#include <memory>
#include <thread>
#include <utility>
#include <vector>

#include "cabinet/media_files.h"
#include "platform/mutex.h"

namespace {

constexpr int PICTURES_PER_SECOND = 25;
constexpr int WAIT_MS = 100;

bool ends_with(const std::string& text, const std::string& end) {
  return text.size() >= end.size() && text.compare(text.size() - end.size(), end.size(), end) == 0;
}

}  // namespace

struct Recording {
  Recording(std::string file_path, SoundPort& port, PagePicture* source)
      : path(std::move(file_path)), sound(port), picture(source) {}

  std::string path;
  SoundPort& sound;
  PagePicture* picture;
  std::atomic<bool> ending{false};
  std::thread writer, looker;

  Mutex mutex;
  std::shared_ptr<const PageFrame> newest GUARDED_BY(mutex);  // the picture thread's last frame

  // The writer's own:
  std::unique_ptr<MediaFile> file;
  AviFile* avi = nullptr;  // the same file, if it is an AVI
  std::int64_t begun_us = 0, frames = 0, next_frame = 0;
  std::int64_t pictures = 0;
  long shown = 0;
  std::string trouble;
};

namespace {

void look(Recording& recording) {
  long number = 0;
  while (!recording.ending) {
    const auto frame = page_picture_next(*recording.picture, number, WAIT_MS);
    if (!frame) continue;
    number = frame->number;
    const MutexLock lock(recording.mutex);
    recording.newest = frame;
  }
}

std::shared_ptr<const PageFrame> newest(Recording& recording) {
  const MutexLock lock(recording.mutex);
  return recording.newest;
}

// False until there is a picture, which gives the size.
bool begin(Recording& recording, const SoundBlock& block) {
  if (recording.picture != nullptr) {
    const auto frame = newest(recording);
    if (!frame) return false;
    auto avi =
        std::make_unique<AviFile>(recording.path, frame->width, frame->height, PICTURES_PER_SECOND);
    recording.avi = avi.get();
    recording.file = std::move(avi);
  } else {
    recording.file = std::make_unique<WavFile>(recording.path);
  }
  recording.begun_us = block.time_us;
  recording.next_frame = block.frame;
  return true;
}

void add_silence(Recording& recording, std::int64_t frames) {
  static const std::array<std::int16_t, 2048> silence{};
  for (; frames > 0; frames -= 1024) {
    const auto piece = static_cast<std::size_t>(std::min<std::int64_t>(frames, 1024));
    recording.file->add_sound(silence.data(), piece);
    recording.frames += static_cast<std::int64_t>(piece);
  }
}

void add_block(Recording& recording, const SoundBlock& block) {
  if (block.frame > recording.next_frame) {
    add_silence(recording, block.frame - recording.next_frame);
  } else if (block.frame < recording.next_frame) {  // another game
    const std::int64_t since_us = block.time_us - recording.begun_us;
    add_silence(recording, since_us * SOUND_PORT_HZ / 1'000'000 - recording.frames);
  }
  std::vector<std::int16_t> samples(static_cast<std::size_t>(block.frames) * 2);
  std::memcpy(samples.data(), block.packet.data() + SOUND_PORT_HEAD, samples.size() * 2);
  recording.file->add_sound(samples.data(), static_cast<std::size_t>(block.frames));
  recording.frames += block.frames;
  recording.next_frame = block.frame + block.frames;
}

// Adds pictures up to the end of the sound.
void add_pictures(Recording& recording) {
  while (recording.pictures * SOUND_PORT_HZ < recording.frames * PICTURES_PER_SECOND) {
    const auto frame = newest(recording);
    const bool is_new = frame->number != recording.shown;
    recording.avi->add_picture(is_new ? frame->jpeg : std::string());
    recording.shown = frame->number;
    ++recording.pictures;
  }
}

void write(Recording& recording, long number) {
  while (!recording.ending && recording.trouble.empty()) {
    const auto block = sound_port_next(recording.sound, number, WAIT_MS);
    if (!block) continue;
    number = block->number;
    if (!recording.file && !begin(recording, *block)) continue;
    add_block(recording, *block);
    if (recording.avi != nullptr) add_pictures(recording);
    if (recording.file->size() > MEDIA_BYTES_MAX) recording.trouble = "it is full, at 2 GB";
    if (!recording.file->good()) recording.trouble = "it can't be written";
  }
  if (recording.file) recording.file->close();
}

}  // namespace

bool recording_has_pictures(const std::string& path) {
  return ends_with(path, ".avi");
}

Recording* recording_start(const std::string& path, SoundPort& sound, PagePicture* picture,
                           std::string& error) {
  if (!ends_with(path, ".wav") && !ends_with(path, ".avi")) {
    error = "--record needs a file .wav or .avi, not " + path;
  } else if (!std::ofstream(path, std::ios::trunc)) {
    error = path + ": " + std::strerror(errno);
  } else if (recording_has_pictures(path) && picture == nullptr) {
    error = "--record needs --page for pictures";
  }
  if (!error.empty()) return nullptr;
  auto* recording = new Recording(path, sound, recording_has_pictures(path) ? picture : nullptr);
  recording->writer =
      std::thread([recording, number = sound_port_newest(sound)] { write(*recording, number); });
  if (recording->picture != nullptr)
    recording->looker = std::thread([recording] { look(*recording); });
  return recording;
}

std::string recording_stop(Recording* recording) {
  if (recording == nullptr) return {};
  recording->ending = true;
  recording->writer.join();
  if (recording->looker.joinable()) recording->looker.join();
  std::string trouble;
  if (!recording->trouble.empty()) trouble = recording->path + ": " + recording->trouble;
  if (!recording->file) trouble = recording->path + ": the game made no sound, so it is empty";
  delete recording;
  return trouble;
}
