// The bytes of one archive: a checked reader and a buffered writer over a file.
#pragma once

#include <cstdint>
#include <string>

#include "zip/auto_buffer.h"
#include "zip/file.h"

// How an archive is opened.
enum class CZipOpenMode : std::uint32_t {
  existing = 0,      // for change
  readOnly = 1,      // existing
  create = 2,        // an existing file is truncated
  segmented = 3,     // not supported: cause 103
  openOrCreate = 4,  // without truncating; what is there stays in front of the new archive
};

// Failures of the file throw the `errno`; a read that ends early throws cause 101 with the
// archive's path.
class ZOL_API CZipStorage {
 public:
  // Of a plain archive.
  static constexpr std::uint16_t k_no_volume = 0xFFFF;

  CZipStorage() = default;
  CZipStorage(const CZipStorage&) = delete;
  CZipStorage& operator=(const CZipStorage&) = delete;
  virtual ~CZipStorage();

  // `segmentSize` other than 0 only matters to segmented archives, which are not written.
  void Open(const std::wstring& path, CZipOpenMode mode, std::uint32_t segmentSize = 0);
  // On a client's file, which is open already and stays open; it outlives the storage's use of it.
  void Open(CZipAbstractFile& file, CZipOpenMode mode);
  // Returns the archive's path. After an exception what waits in the write buffer is dropped.
  std::wstring Close(bool afterException);

  // Is there no open file?
  bool IsClosed() const { return file_ == nullptr || file_->IsClosed(); }
  // By the mode of opening.
  bool IsReadOnly() const { return read_only_; }
  // Of the file; empty before the first opening.
  const std::wstring& GetArchivePath() const { return archive_path_; }

  // All of `count`, or an exception.
  void Read(void* buffer, std::uint32_t count);
  // Through the write buffer.
  void Write(const void* buffer, std::uint32_t count);
  // Hands the write buffer to the file.
  void Flush();
  // From the beginning the data in front of the archive is passed over. An offset of 2^63 or more
  // is negative: it counts back from the end of the file.
  std::uint64_t Seek(std::uint64_t offset,
                     CZipAbstractFile::SeekOrigin origin = CZipAbstractFile::begin);
  // Counts the bytes in the write buffer, and not those in front of the archive.
  std::uint64_t GetPosition() const;
  // In bytes, without those in the write buffer. The storage is open.
  std::uint64_t GetFileLength() const { return file_->GetLength(); }
  // Cuts the file at an offset of the archive. The write buffer is dropped.
  void Truncate(std::uint64_t offset);

  // Looks for a signature backwards from the file offset `end`, through at most `depth` bytes. The
  // one nearest to `end` is found.
  bool Locate(const char (&signature)[5], std::uint64_t end, std::uint64_t depth,
              std::uint64_t& offset);

  // What stands in the file in front of the archive.
  std::uint32_t GetBytesBeforeArchive() const { return bytes_before_archive_; }
  // See GetBytesBeforeArchive.
  void SetBytesBeforeArchive(std::uint32_t count) { bytes_before_archive_ = count; }
  // What the end record says of its own volume; any number but 0 makes the archive a segmented one.
  void SetLastVolume(std::uint16_t volume);
  // Is it one of several volumes?
  bool IsSegmented() const { return is_segmented_; }
  // The volume at hand, from 0; k_no_volume in a plain archive.
  std::uint16_t GetCurrentVolume() const { return current_volume_; }
  // Only the volume at hand can be read. Another one fails like a file that is missing; in a plain
  // archive there is no other one, and the archive is damaged.
  void ChangeVolume(std::uint16_t volume);

 private:
  void Start(CZipAbstractFile* file, CZipOpenMode mode);
  std::wstring VolumeName(std::uint16_t volume) const;

  CZipAbstractFile* file_ = nullptr;  // the internal file, or a client's
  std::wstring archive_path_;
  CZipAutoBuffer write_buffer_;
  std::uint32_t waiting_ = 0;  // bytes in the write buffer
  std::uint32_t bytes_before_archive_ = 0;
  std::uint16_t current_volume_ = k_no_volume;
  bool is_segmented_ = false;
  bool read_only_ = false;
  CZipFile internal_file_;
};
