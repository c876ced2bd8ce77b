// Files of the installation and of drive d:.
//
// A name that begins with "d:\" lies below LILYHOP_DRIVE_D; any other name is relative to the
// program's own folder. Backslashes part folders. A name that would climb out of its root, with
// "..", gives no path. Safe from any thread, each file from one thread at a time.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

// The host path of a name, or an empty string for a name that leaves its root.
std::string files_path(const char* name);

// Where d: lies and where the program's own folder lies; set once at start-up, before any file is
// opened, and by tests. `files_use_roots` makes the drive's folder if it is missing. An empty root
// is a missing one: none of its files opens.
void files_use_roots(const std::string& drive_d, const std::string& program_folder);

// The folder that the running program lies in.
std::string files_program_folder();

struct ReadFile;
struct StoreFile;

// Opens for reading; null if there is no such file, or it is a folder or anything but a plain file.
ReadFile* read_open(const char* name);
// The same whatever the case of the name's letters, where lists were written on systems that don't
// tell upper from lower case.
ReadFile* read_open_any_case(const char* name);
// Reads up to `size` bytes; returns how many came, less at the end of the file or on an error.
std::size_t read_bytes(ReadFile* file, void* data, std::size_t size);
// The same from `offset` on, wherever `read_bytes` stands, which stays there.
std::size_t read_at(ReadFile* file, std::uint64_t offset, void* data, std::size_t size);
// Tells the system that these bytes will be read soon, so that it fetches them meanwhile.
void read_prefetch(ReadFile* file, std::uint64_t offset, std::size_t size);
// True if a `read_bytes` came to an error rather than to the end.
bool read_failed(const ReadFile* file);
// Bytes in the file, 0 if it can't be told.
std::uint64_t read_size(const ReadFile* file);
void read_close(ReadFile* file);

// Opens a file of the books for writing, truncating. What is written goes unbuffered to a
// temporary file beside it and takes the old file's place in `store_close`, so a power cut leaves
// the old file or the new one whole. Null if it can't be created.
StoreFile* store_open(const char* name);
// Writes all `size` bytes or returns false; after a failure `store_close` keeps the old file.
bool store_bytes(StoreFile* file, const void* data, std::size_t size);
// Brings the data to the disk, renames, and brings the folder to the disk. False if one of these
// failed: the old file is still in place, or comes back with a power cut.
bool store_close(StoreFile* file);

// Puts a note beside the books: `size` bytes, whole or not at all, in the place of the old note. It
// doesn't wait for the disk: a note outlives the program, not the machine's power. False if the old
// one is still in place.
bool note_store(const char* name, const void* data, std::size_t size);
