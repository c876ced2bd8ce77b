#include "cabinet/frame_log.h"

#include <cctype>
#include <cstdio>

#include "cabinet/wire.h"

namespace {

// The letter unchanged, digits in capitals, no spaces: one key for all spellings of a frame.
std::string key_of(const std::string& text) {
  std::string key;
  for (const char c : text) {
    if (c == ' ') continue;
    key += key.empty() ? c : static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
  }
  return key;
}

std::string line_of(const FrameLog& log, Direction direction, const FrameLog::Entry& entry) {
  char time[32];
  std::snprintf(time, sizeof time, "%9.3f", static_cast<double>(entry.at_ms - log.began_ms) / 1000);
  return std::string(time) + (direction == TO_BOARD ? "  game > board  " : "  board > game  ") +
         wire_text(entry.body) + "\n";
}

}  // namespace

void frame_log_add(FrameLog& log, Direction direction, const std::string& body,
                   std::int64_t now_ms) {
  FrameLog::Way& way = log.ways[direction];
  ++way.total;
  ++way.exact[key_of(body)];
  if (!body.empty()) ++way.letters[body[0]];
  way.last.push_back({now_ms, body});
  if (way.last.size() > FRAME_LOG_KEPT) way.last.pop_front();
  if (log.printing) std::fputs(line_of(log, direction, way.last.back()).c_str(), stdout);
}

void frame_log_mark(FrameLog& log) {
  for (FrameLog::Way& way : log.ways) {
    way.exact.clear();
    way.letters.clear();
  }
}

long frame_log_letters(const FrameLog& log, Direction direction, char letter) {
  const auto& letters = log.ways[direction].letters;
  const auto found = letters.find(letter);
  return found == letters.end() ? 0 : found->second;
}

long frame_log_exact(const FrameLog& log, Direction direction, const std::string& text) {
  const auto& exact = log.ways[direction].exact;
  const auto found = exact.find(key_of(text));
  return found == exact.end() ? 0 : found->second;
}

std::string frame_log_text(const FrameLog& log, Direction direction) {
  std::string text;
  for (const FrameLog::Entry& entry : log.ways[direction].last) {
    text += line_of(log, direction, entry);
  }
  return text;
}
