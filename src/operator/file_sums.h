// Sizes and sums of installed files, against the list that came with them.
#pragma once

#include <cstdint>
#include <string>

struct ReadFile;  // platform/files.h

// Size and list_sum of an open file, which it closes. False if the file couldn't be read to its
// end.
bool crc_file_sum(ReadFile* file, std::int32_t* size, std::int32_t* crc);

enum FileCheck { FILES_GOOD, LIST_MISSING, FILE_MISSING, FILE_DAMAGED };

// Proves the files of lhpcrc.txt, in its order. `current` gets each name, as the list's reader has
// it, before `checked` is called behind a good file. Stops at the first bad one. A list that can't
// be read to its end is a missing one.
FileCheck file_list_check(std::string& current, void (*checked)());
