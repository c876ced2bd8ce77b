// A file of drive d: that grows at its end, line by line. See platform/files.h for its names.
#pragma once

#include <cstddef>
#include <cstdint>

struct AppendFile;

// Opens the file, or makes it. A last line that has no end, as a power cut leaves it, is cut off.
// Null if it can't be opened.
AppendFile* append_open(const char* name);
std::uint64_t append_size(const AppendFile* file);
// Writes all `size` bytes behind the end, or none of them and returns false.
bool append_bytes(AppendFile* file, const void* data, std::size_t size);
// Brings what was written to the disk.
bool append_sync(AppendFile* file);
void append_close(AppendFile* file);

// Gives a file another name, in place of the file that has it.
bool append_rename(const char* from, const char* to);
