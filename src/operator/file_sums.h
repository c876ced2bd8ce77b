// Checks the sizes and sums of the installed files against the list that came with them.
#pragma once

#include <cstdint>
#include <string>

struct ReadFile;  // platform/files.h

// Gets the size and list_sum of an open file and closes it. False after a read error.
bool crc_file_sum(ReadFile* file, std::int32_t* size, std::int32_t* crc);

enum FileCheck { FILES_GOOD, LIST_MISSING, FILE_MISSING, FILE_DAMAGED };

// Checks the files in lhpcrc.txt, in order, and stops at the first bad one. Sets `current` to the
// name of each file, in the list's capitals, and calls `checked` after each good file. A list with
// a read error counts as missing.
FileCheck file_list_check(std::string& current, void (*checked)());
