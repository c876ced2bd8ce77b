#include "books/journal.h"

#include <algorithm>
#include <atomic>
#include <bit>
#include <cstdarg>
#include <cstddef>
#include <cstdio>
#include <ctime>
#include <memory>
#include <string>
#include <string_view>

#include "books/settings.h"
#include "platform/append_file.h"
#include "platform/clock.h"
#include "platform/files.h"  // read_open, ...
#include "platform/mutex.h"
#include "platform/power.h"  // power_boot_id
#include "platform/thread.h"

namespace {

constexpr std::uint32_t RING_SIZE = 2048;  // a power of two
constexpr std::size_t LINE_MOST = 256;
constexpr int WRITE_EVERY_MS = 500, LOOK_MS = 50;
constexpr int JOIN_BOUND_MS = 2000;  // a write may be under way

struct Event {
  std::int64_t utc_ms;
  JournalKind kind;
  std::int32_t values[JOURNAL_FIELDS_MOST];
};

// A slot is free for event number n when `turn` is n, and holds it when `turn` is n + 1.
struct Slot {
  std::atomic<std::uint32_t> turn;
  Event event;
};

struct Ring {
  Slot slots[RING_SIZE];
  std::atomic<std::uint32_t> next;  // number of the next event
  std::atomic<std::int32_t> lost;
};
Ring ring;

std::atomic<bool> is_open{false};
std::shared_ptr<Thread> thread;  // start-up and shutdown

// Held while the disk is written: by the journal's thread, or by one that stores the books.
Mutex writing;
struct Writer {
  std::int32_t boot;
  std::uint32_t taken;  // number of the next event to take from the ring
  AppendFile* file;
  bool unsynced;
  std::size_t used;  // bytes of `text` that are not in the file yet
  char text[32768];
};
Writer writer GUARDED_BY(writing);

void ring_clear() {
  for (std::uint32_t i = 0; i < RING_SIZE; ++i) ring.slots[i].turn = i;
  ring.next = 0;
  ring.lost = 0;
}

// --- lines ------------------------------------------------------------------------------------

[[gnu::format(printf, 1, 2)]] void add(const char* format, ...) REQUIRES(writing);

void add(const char* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  const std::size_t room = sizeof writer.text - writer.used;
  const int length = std::vsnprintf(writer.text + writer.used, room, format, arguments);
  va_end(arguments);
  if (length > 0) writer.used += std::min(static_cast<std::size_t>(length), room - 1);
}

void add_head(std::int64_t utc_ms, JournalKind kind) REQUIRES(writing) {
  const auto seconds = static_cast<std::time_t>(utc_ms / 1000);
  std::tm utc{};
  gmtime_r(&seconds, &utc);
  add("%04d-%02d-%02dT%02d:%02d:%02d.%03dZ %d %s", utc.tm_year + 1900, utc.tm_mon + 1, utc.tm_mday,
      utc.tm_hour, utc.tm_min, utc.tm_sec, static_cast<int>(utc_ms % 1000), writer.boot,
      JOURNAL_ROWS[kind].name);
}

// A real setting travels as the bits of its float.
void add_value(const Event& event, std::string_view field, std::int32_t value) REQUIRES(writing) {
  const std::string_view words = journal_words(field);
  if (!words.empty()) {
    const std::string_view word = journal_word(words, static_cast<std::size_t>(value));
    add("%.*s", static_cast<int>(word.size()), word.data());
  } else if (field == "setting") {
    add("\"%s\"", SETTINGS[value].name);
  } else if (event.kind == JOURNAL_SETTING && setting_is_real(SETTINGS[event.values[0]])) {
    add("%g", static_cast<double>(std::bit_cast<float>(value)));
  } else {
    add("%d", value);
  }
}

void add_line(const Event& event) REQUIRES(writing) {
  add_head(event.utc_ms, event.kind);
  for (std::size_t i = 0; i < JOURNAL_FIELDS_MOST; ++i) {
    const std::string_view field = journal_word(JOURNAL_ROWS[event.kind].fields, i);
    if (field.empty()) break;
    add(" %.*s=", static_cast<int>(field.size()), field.data());
    add_value(event, field, event.values[i]);
  }
  add("\n");
}

// --- from the ring to the disk ----------------------------------------------------------------

// Adds lines until the ring is empty or `text` is full. False if there was none.
bool take_events() REQUIRES(writing) {
  const std::size_t before = writer.used;
  while (writer.used + 2 * LINE_MOST < sizeof writer.text) {
    Slot& slot = ring.slots[writer.taken % RING_SIZE];
    if (slot.turn.load(std::memory_order_acquire) != writer.taken + 1) {
      const std::int32_t lost = ring.lost.exchange(0);
      if (lost > 0) add_line({clock_calendar_ms(), JOURNAL_LOST, {lost}});
      break;
    }
    add_line(slot.event);
    slot.turn.store(writer.taken + RING_SIZE, std::memory_order_release);
    ++writer.taken;
  }
  return writer.used > before;
}

void close_file() REQUIRES(writing) {
  if (writer.file != nullptr) append_close(writer.file);
  writer.file = nullptr;
  writer.unsynced = false;
}

bool open_file() REQUIRES(writing) {
  if (writer.file == nullptr) writer.file = append_open(JOURNAL_FILE);
  return writer.file != nullptr;
}

// Turns the file over if the text has no room in it.
bool make_room() REQUIRES(writing) {
  if (append_size(writer.file) + writer.used <= JOURNAL_BYTES_MOST / 2) return true;
  append_sync(writer.file);
  close_file();
  append_rename(JOURNAL_FILE, JOURNAL_OLD_FILE);
  return open_file();
}

// Writes the text, or keeps it for the next time.
bool write_text() REQUIRES(writing) {
  if (!open_file() || !make_room()) return false;
  if (!append_bytes(writer.file, writer.text, writer.used)) {
    close_file();  // the disk may come back as another one
    return false;
  }
  writer.used = 0;
  writer.unsynced = true;
  return true;
}

void write_events() REQUIRES(writing) {
  do {
    take_events();
    if (writer.used > 0 && !write_text()) return;
  } while (take_events());
  if (writer.unsynced && append_sync(writer.file)) writer.unsynced = false;
}

void journal_thread(const Thread& self, void* /*context*/) {
  for (int waited_ms = 0; !thread_stop_requested(self); waited_ms += LOOK_MS) {
    clock_sleep_ms(LOOK_MS);
    if (waited_ms < WRITE_EVERY_MS) continue;
    waited_ms = 0;
    journal_flush();
  }
}

// --- the end of the last run ------------------------------------------------------------------

std::string whole_file(const char* name) {
  ReadFile* const file = read_open(name);
  if (file == nullptr) return {};
  std::string text(std::min(read_size(file), JOURNAL_BYTES_MOST), '\0');
  text.resize(read_bytes(file, text.data(), text.size()));
  read_close(file);
  return text.substr(0, text.rfind('\n') + 1);
}

// How the run ended whose lines these are; `machine` is the present power-up of the machine.
const char* last_end(std::string_view text, std::string_view machine) {
  if (text.empty()) return "none";
  const std::size_t last = text.rfind('\n', text.size() - 2) + 1;
  const std::string_view kind = journal_word(text.substr(last, text.size() - last - 1), 2);
  if (kind == JOURNAL_ROWS[JOURNAL_STOP].name) return "orderly";
  if (kind == JOURNAL_ROWS[JOURNAL_GOING_DOWN].name) return "reboot";
  constexpr std::string_view MACHINE = " machine=";
  const std::size_t at = text.rfind(MACHINE);
  if (at == std::string_view::npos) return "power";
  const std::string_view rest = text.substr(at + MACHINE.size());
  return rest.substr(0, rest.find('\n')) == machine ? "killed" : "power";
}

const char* how_it_ended(const std::string& machine) {
  std::string text = whole_file(JOURNAL_FILE);
  if (text.find(" machine=") == std::string::npos) text = whole_file(JOURNAL_OLD_FILE) + text;
  return last_end(text, machine);
}

}  // namespace

void journal_open(const char* version, std::int32_t boot) {
  const std::string machine = power_boot_id();
  const char* const last = how_it_ended(machine);
  const MutexLock lock(writing);
  close_file();
  ring_clear();
  writer.boot = boot;
  writer.taken = 0;
  writer.used = 0;
  add_head(clock_calendar_ms(), JOURNAL_START);
  add(" version=%s last=%s machine=%s\n", version, last, machine.c_str());
  is_open = true;
}

void journal_start() {
  thread = thread_start("journal", THREAD_PRIORITY_NORMAL, journal_thread, nullptr);
}

void journal_put(JournalKind kind, std::initializer_list<std::int32_t> values) {
  if (!is_open.load(std::memory_order_relaxed)) return;
  std::uint32_t number = ring.next.load(std::memory_order_relaxed);
  for (;;) {
    Slot& slot = ring.slots[number % RING_SIZE];
    const std::uint32_t turn = slot.turn.load(std::memory_order_acquire);
    if (turn != number) {
      if (static_cast<std::int32_t>(turn - number) < 0) {  // full
        ++ring.lost;
        return;
      }
      number = ring.next.load(std::memory_order_relaxed);
    } else if (ring.next.compare_exchange_weak(number, number + 1, std::memory_order_relaxed)) {
      slot.event.utc_ms = clock_calendar_ms();
      slot.event.kind = kind;
      std::copy_n(values.begin(), std::min(values.size(), JOURNAL_FIELDS_MOST), slot.event.values);
      slot.turn.store(number + 1, std::memory_order_release);
      return;
    }
  }
}

void journal_flush() {
  if (!is_open.load(std::memory_order_relaxed)) return;
  const MutexLock lock(writing);
  write_events();
}

void journal_close() {
  if (thread != nullptr) {
    thread_request_stop(*thread);
    if (!thread_join(*thread, JOIN_BOUND_MS)) return;  // the disk hangs
    thread = nullptr;
  }
  journal_flush();
  is_open = false;
  const MutexLock lock(writing);
  close_file();
}
