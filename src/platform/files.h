// Files of the installation and of drive d:.
//
// A name that begins with "d:\" is below LILYHOP_DRIVE_D; any other name is relative to the
// program's own folder. Backslashes separate folders. A name that would leave its root, with "..",
// has no path. Safe from any thread; each file from one thread at a time.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

// The host path of a name; empty if the name leaves its root.
std::string files_path(const char* name);

// Sets the folder of d: and the program's own folder. Call once at start-up before any file is
// opened; tests call it too. `files_use_roots` makes the drive's folder if it is missing. No file
// below an empty root opens.
void files_use_roots(const std::string& drive_d, const std::string& program_folder);

// The running program's file, empty if the machine doesn't say; and its folder.
std::string files_program();
std::string files_program_folder();

// Brings the names in a file's folder to the disk: a new file is safe only with its name.
bool files_sync_folder(const char* name);

struct ReadFile;
struct StoreFile;

// Opens for reading; null if there is no such file, or it isn't a regular file.
ReadFile* read_open(const char* name);
// The same, but ignores the case of letters: lists may come from systems that do so.
ReadFile* read_open_any_case(const char* name);
// Reads up to `size` bytes; returns how many were read, fewer at the end of the file or on an
// error.
std::size_t read_bytes(ReadFile* file, void* data, std::size_t size);
// The same from `offset` on; does not move the position of `read_bytes`.
std::size_t read_at(ReadFile* file, std::uint64_t offset, void* data, std::size_t size);
// Asks the system to fetch these bytes in advance.
void read_prefetch(ReadFile* file, std::uint64_t offset, std::size_t size);
// True if a `read_bytes` met an error, not the end.
bool read_failed(const ReadFile* file);
// Bytes in the file, 0 if unknown.
std::uint64_t read_size(const ReadFile* file);
void read_close(ReadFile* file);

// Opens a file of the books for writing, truncated. Data goes unbuffered to a temporary file beside
// it, which replaces the old file in `store_close`. So a power cut leaves the old file or the new
// one complete. Null if it can't be created: errno says why, 0 if the name has no path.
StoreFile* store_open(const char* name);
// Writes all `size` bytes. After a failure `store_close` keeps the old file.
void store_bytes(StoreFile* file, const void* data, std::size_t size);
// Brings the data to the disk, renames, and brings the folder to the disk. False if one of these
// failed, and errno says why: the old file is still in place, or comes back after a power cut.
bool store_close(StoreFile* file);

// Writes a note beside the books: `size` bytes, completely or not at all, in place of the old note.
// It doesn't wait for the disk: a note survives the program, but not a power cut. False if the old
// one is still in place.
bool note_store(const char* name, const void* data, std::size_t size);
