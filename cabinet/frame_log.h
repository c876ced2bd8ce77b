// The frames on the line: the most recent ones, and a count of each since the last mark.
#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <map>
#include <string>

enum Direction { TO_BOARD, TO_HOST, DIRECTIONS };

struct FrameLog {
  struct Entry {
    std::int64_t at_ms;
    std::string body;
  };
  struct Way {
    std::deque<Entry> last;             // newest last, at most FRAME_LOG_KEPT
    std::map<std::string, long> exact;  // complete frames since the mark
    std::map<char, long> letters;       // since the mark
    long total = 0;                     // since the cabinet started
  };
  Way ways[DIRECTIONS];
  bool printing = false;  // print each frame to standard output
  std::int64_t began_ms = 0;
};

constexpr std::size_t FRAME_LOG_KEPT = 20;

void frame_log_add(FrameLog& log, Direction direction, const std::string& body,
                   std::int64_t now_ms);

// Clears the counts since the last mark.
void frame_log_mark(FrameLog& log);

// How many frames with this letter came since the mark.
long frame_log_letters(const FrameLog& log, Direction direction, char letter);

// How many frames equal to `text` came since the mark. Spaces and the case of digits don't matter.
long frame_log_exact(const FrameLog& log, Direction direction, const std::string& text);

// The last frames of one direction, one per line with its time in seconds.
std::string frame_log_text(const FrameLog& log, Direction direction);
