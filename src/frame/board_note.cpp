#include "frame/board_note.h"

#include <algorithm>
#include <cstddef>
#include <cstdio>
#include <iterator>
#include <string>
#include <string_view>

#include "io/jamma.h"
#include "platform/files.h"
#include "platform/power.h"  // power_boot_id

namespace {

constexpr char NOTE_FILE[] = R"(d:\board)";

// How far a counter of 16 steps may have moved while no program ran: players go on pressing. Beyond
// half a turn, forward looks like back.
constexpr unsigned COUNTER_MASK = 0x0F, STEPS_MAX = 7;

struct Note {
  std::uint8_t counters[COUNTER_COUNT]{};
  std::int32_t tickets_queued[SIDE_COUNT]{};
  bool operator==(const Note&) const = default;
};

struct BoardNoteState {
  std::string boot_id;
  Note on_disk;  // as far as this run knows
};

BoardNoteState& state() {
  static BoardNoteState instance;
  return instance;
}

// One line: the power-up, the counters, the tickets of both sides.
int note_text(char (&text)[256], const char* boot_id, const Note& note) {
  int length = std::snprintf(text, sizeof text, "%s", boot_id);
  const auto add = [&](int number) {
    length += std::snprintf(text + length, sizeof text - length, " %d", number);
  };
  for (const std::uint8_t counter : note.counters) add(counter);
  for (const std::int32_t tickets : note.tickets_queued) add(tickets);
  text[length++] = '\n';
  return length;
}

// Reads the note of the power-up that has this name.
bool read_note(const std::string& boot_id, Note& note) {
  ReadFile* const file = read_open(NOTE_FILE);
  if (!file) return false;
  char text[256];
  const std::size_t size = read_bytes(file, text, sizeof text - 1);
  read_close(file);
  text[size] = '\0';

  if (boot_id.empty() || std::string_view(text).substr(0, boot_id.size()) != boot_id) return false;
  const char* at = text + boot_id.size();
  bool whole = true;
  const auto next = [&] {
    int number = 0, length = 0;
    whole = whole && std::sscanf(at, " %d%n", &number, &length) == 1;  // NOLINT(cert-err34-c)
    at += length;
    return number;
  };
  for (std::uint8_t& counter : note.counters) counter = static_cast<std::uint8_t>(next());
  for (std::int32_t& tickets : note.tickets_queued) tickets = next();
  return whole;
}

// Has each of the board's counters moved forward only, and not far? Where all stood at 0 nothing
// tells the board of the note from one that has just started.
bool counters_agree(const Note& note) {
  std::uint8_t now[COUNTER_COUNT]{};
  if (!jamma_board_counters(now)) return false;
  if (std::ranges::all_of(note.counters, [](auto counter) { return counter == 0; })) return false;
  for (std::size_t i = 0; i < std::size(now); ++i) {
    const auto steps = static_cast<unsigned>(now[i] - note.counters[i]) & COUNTER_MASK;
    if (steps > STEPS_MAX) return false;
  }
  return true;
}

}  // namespace

BoardNote board_note_read() {
  state() = {.boot_id = power_boot_id(), .on_disk = {}};
  BoardNote result;
  Note note;
  if (!read_note(state().boot_id, note)) return result;
  state().on_disk = note;
  if (!counters_agree(note)) return result;
  result.stayed_up = true;
  std::ranges::copy(note.tickets_queued, result.tickets_queued);
  return result;
}

void board_note_keep(bool owes, const std::int32_t (&tickets_queued)[SIDE_COUNT]) {
  Note& on_disk = state().on_disk;
  const bool queue_moved = !std::ranges::equal(tickets_queued, on_disk.tickets_queued);
  if (!owes && !queue_moved) return;
  Note note;
  if (!jamma_board_counters(note.counters)) return;
  std::ranges::copy(tickets_queued, note.tickets_queued);
  if (note == on_disk) return;
  char text[256];
  const int length = note_text(text, state().boot_id.c_str(), note);
  if (note_store(NOTE_FILE, text, static_cast<std::size_t>(length))) on_disk = note;
}
