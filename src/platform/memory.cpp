#include "platform/memory.h"

#include <malloc.h>

#include <climits>

void memory_keep_freed(bool keep) {
  constexpr int DEFAULT_MMAP_MAX = 65536;
  constexpr int DEFAULT_TRIM_THRESHOLD = 128 * 1024;
  mallopt(M_MMAP_MAX, keep ? 0 : DEFAULT_MMAP_MAX);
  mallopt(M_TRIM_THRESHOLD, keep ? INT_MAX : DEFAULT_TRIM_THRESHOLD);
  if (!keep) malloc_trim(0);
}
