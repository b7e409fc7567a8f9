// Files and paths of the operating system, the one place that knows how to reach them.
//
// A path is wide text. Off Windows it reaches the file system as UTF-8, whatever the locale of the
// process is. On Windows it may be as long as the file system allows, with the prefix that the
// system has for long paths or without it. A path with a null character inside names no file: every
// function fails with EINVAL.
// Failures leave their number in `errno`.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <ctime>
#include <string>

#include "port/export.h"

namespace zol::port {

// A path as the system calls take it off Windows.
ZOL_API std::string utf8_path(const std::wstring& path);

// `std::fopen` on a wide path, in binary everywhere. A directory can't be opened (EISDIR), not even
// for reading. The descriptor is not inherited by programs that the process starts.
ZOL_API std::FILE* open_file(const std::wstring& path, const char* mode);
// The same on a path in the encoding of the system's own calls.
ZOL_API std::FILE* open_file(const char* path, const char* mode);

// `std::fread`, which goes on where a signal broke it off. Fewer bytes than asked for stand for the
// end of the file, or for a failure that `std::ferror` tells.
ZOL_API std::size_t read_file(std::FILE* file, void* buffer, std::size_t count);

// The size in bytes of a regular file; false for a pipe, a device and whatever else has none.
ZOL_API bool regular_file_size(std::FILE* file, std::uint64_t* size);

// Never a directory.
ZOL_API bool remove_file(const std::wstring& path);

// Takes the place of an existing file in one step. Both paths must be in one file system.
ZOL_API bool rename_file(const std::wstring& from, const std::wstring& to);

// --- Files by handle --------------------------------------------------------------------------

// A file that is open, as the system numbers it; whoever opened it closes it.
using FileHandle = int;
constexpr FileHandle k_no_file = -1;

// What the process itself does with a file.
enum class Access { read, write, read_write };

// What others may do while the file is open, beside renaming and deleting it, which they always
// may. Off Windows the first two are advisory locks, which keep apart only those who ask in this
// way: a reader that denies writing and a writer that denies anything exclude each other, two such
// readers do not. A file held by another fails with EACCES.
enum class Share { deny_write, deny_read, deny_none };

// How a file is opened.
struct OpenOptions {
  Access access = Access::read;    // what is done with it
  Share share = Share::deny_none;  // what others may do meanwhile
  bool create = false;    // with read and write permission for the owner, or as `mode` says
  bool truncate = false;  // only once the file is ours
  bool fresh = false;     // with `create`: fails with EEXIST if there is one
  unsigned mode = 0600;   // of a file that is made, off Windows; cut by the mask of the process
};

// The same of a handle.
ZOL_API bool regular_file_size(FileHandle file, std::uint64_t* size);

// Opens a file; k_no_file after a failure.
ZOL_API FileHandle open_handle(const std::wstring& path, const OpenOptions& options);
// False if what was written did not arrive; the handle is gone all the same.
ZOL_API bool close_handle(FileHandle handle);

// Bytes read: fewer than `count` at the end of the file, and then `errno` is 0; or fewer after a
// failure, and then `errno` says which.
ZOL_API std::size_t read_handle(FileHandle handle, void* buffer, std::size_t count);
// All of the bytes, or false.
ZOL_API bool write_handle(FileHandle handle, const void* buffer, std::size_t count);

// Where a distance is counted from.
enum class Origin { begin, current, end };
// The new position from the file's begin, or -1.
ZOL_API std::int64_t seek_handle(FileHandle handle, std::int64_t offset, Origin origin);
// Cuts the file, or lengthens it by zeros, to so many bytes.
ZOL_API bool resize_handle(FileHandle handle, std::int64_t length);
// Returns once the data is on the disk.
ZOL_API bool sync_handle(FileHandle handle);

// --- What the file system knows of a file -----------------------------------------------------

// File attributes in FAT form.
constexpr std::uint32_t k_attribute_read_only = 0x01;
constexpr std::uint32_t k_attribute_hidden = 0x02;
constexpr std::uint32_t k_attribute_directory = 0x10;
constexpr std::uint32_t k_attribute_archive = 0x20;

// Off Windows a file that its owner may not write is read-only, one that nobody may read is hidden,
// and every plain file has the archive attribute.
ZOL_API bool get_attributes(const std::wstring& path, std::uint32_t& attributes);
ZOL_API bool set_attributes(const std::wstring& path, std::uint32_t attributes);

// When the file was last written, to the second. False, with the reason in errno, if the file
// system does not tell or take it.
ZOL_API bool get_modification_time(const std::wstring& path, std::time_t& time);
ZOL_API bool set_modification_time(const std::wstring& path, std::time_t time);

// Calendar time in the zone of the process. False for a time that no calendar year holds.
ZOL_API bool to_local_time(std::time_t time, std::tm& fields);

// --- Paths as text ----------------------------------------------------------------------------

// A slash or a backslash, on every platform.
inline bool is_separator(wchar_t c) { return c == L'/' || c == L'\\'; }

// A path taken apart; put together again they are the path.
struct PathParts {
  std::wstring drive;      // a letter and a colon
  std::wstring directory;  // with its last separator
  std::wstring title;      // the name without its extension
  std::wstring extension;  // with its dot
};

// All parts are empty if one is longer than a path may hold: 2, 32,766, 255 and 255 characters.
ZOL_API PathParts split_path(const std::wstring& path);

// --- Errors -----------------------------------------------------------------------------------

// The system's English text for an `errno` value; empty if it has none.
ZOL_API std::wstring system_error_text(int error);

}  // namespace zol::port
