// The heap, where its ways cost time.
#pragma once

// While set, freed memory stays with the program, so that one large buffer after another takes the
// same pages instead of fresh ones, which the system would clear each time. Clearing it gives back
// what is free. For a run of large buffers at start-up. Main thread.
void memory_keep_freed(bool keep);
