// A line of the pane that is there only while something is wrong. Game thread.
#pragma once

#include "books/store_report.h"
#include "operator/info_pane.h"

// Says in this line why the books can't be stored; writes nothing while they can.
inline void pane_line_of_trouble(int line_number) {
  const char* trouble = store_trouble();
  if (*trouble != '\0') pane_set_line(line_number, "BOOKS NOT STORED     : %s", trouble);
}
