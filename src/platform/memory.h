// Control of the heap where its default costs time.
#pragma once

// While set, freed memory stays with the program, so that one large buffer after another uses the
// same pages. The system would have to clear fresh pages each time. Resetting it returns free
// memory. For a series of large buffers at start-up. Main thread.
void memory_keep_freed(bool keep);
