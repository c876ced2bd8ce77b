// Messages about scripts and streams that fail while they play.
//
// They occur under the sound lock, where no thread should have to wait for the reader of standard
// output. So they are kept, and printed when the lock is free.
#pragma once

// Keeps a line, which includes its "\n". A script can fail a thousand times a second: the first 20
// lines of each second are kept, and one more line counts the others. Any thread.
[[gnu::format(printf, 1, 2)]] void jps_complain(const char* format, ...);

// Prints the kept lines. Call without the sound lock. Any thread.
void jps_complaints_print();

// The sound lock calls it when it becomes free: prints, unless a thread does so regularly.
void jps_complaints_lock_is_free();

// Discards the kept lines. For start-up.
void jps_complaints_reset();

// Whether a thread calls `jps_complaints_print` regularly, so that nobody else has to print.
void jps_complaints_have_a_thread(bool have);
