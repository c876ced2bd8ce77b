// Lines about scripts and streams that go wrong while they play.
//
// They come up under the sound lock, where nobody may wait for whoever reads standard output. So
// they are kept, and printed once the lock is free.
#pragma once

// Keeps a line, which brings its "\n" along. A script can go wrong a thousand times a second: of
// each second the first 20 lines are kept, and one more line counts the others. Any thread.
[[gnu::format(printf, 1, 2)]] void jps_complain(const char* format, ...);

// Prints what is kept. Without the sound lock. Any thread.
void jps_complaints_print();

// The sound lock calls it when it has become free: prints, unless a thread does so by itself.
void jps_complaints_lock_is_free();

// Forgets what is kept. For start-up.
void jps_complaints_reset();

// Whether a thread calls `jps_complaints_print` now and then, so that nobody else has to print.
void jps_complaints_have_a_thread(bool have);
