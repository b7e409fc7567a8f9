// The list of an archive's entries and the record behind it.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "zip/file_header.h"
#include "zip/storage.h"

// Owns the entries' headers. Failures throw `CZipException` with the archive's path.
class ZOL_API CZipCentralDir {
 public:
  // No index.
  static constexpr std::uint16_t k_no_entry = 0xFFFF;

  // Borrows the storage.
  explicit CZipCentralDir(CZipStorage& storage) : storage_(storage) {}
  CZipCentralDir(const CZipCentralDir&) = delete;
  CZipCentralDir& operator=(const CZipCentralDir&) = delete;
  virtual ~CZipCentralDir();

  // Cause 101 for a damaged directory, 120 for an archive with Zip64 records. The entries are then
  // in the order of their data. With `exhaustive` set, headers past the number in the end record
  // are read, too.
  void Read(bool exhaustive);
  // Does nothing if the directory is on disk already.
  void Write();
  // Forgets all entries.
  void Clear();

  // The number of entries, a new one included.
  std::uint16_t GetCount() const { return static_cast<std::uint16_t>(headers_.size()); }
  // Null for an index out of range. The entry lives until the archive is closed.
  CZipFileHeader* EntryAt(std::uint16_t index) const;
  // Of the archive, as stored.
  const std::string& GetRawComment() const { return info_.comment; }

  // Compares the entry's local header, and leaves the storage at its data.
  void OpenEntry(std::uint16_t index);
  // Compares the data descriptor, if there is one and no exception came.
  void CloseEntry(bool afterException);
  // Null if none is open.
  CZipFileHeader* GetOpenEntry() const { return open_entry_; }

  // Writes the local header of a new entry at the end of the file; where there was a directory on
  // disk, it is overwritten.
  CZipFileHeader* AddNew(std::unique_ptr<CZipFileHeader> header, int level);
  // Patches the local header.
  void CloseNew();
  // Leaves the new entry in the list as it is.
  void DropOpenEntry() { open_entry_ = nullptr; }
  // Takes the entry that was added last out of the list, and its data off the disk.
  void RemoveLast();

  // A set of CZipCheck.
  void SetIgnoredChecks(std::uint32_t checks) { ignored_checks_ = checks; }
  // See SetIgnoredChecks.
  std::uint32_t GetIgnoredChecks() const { return ignored_checks_; }

 private:
  struct Info {
    std::uint32_t end_offset = 0;
    std::uint16_t last_volume = 0;
    std::uint16_t volume_with_directory = 0;
    std::uint16_t entries_on_volume = 0;
    std::uint16_t entries = 0;
    std::uint32_t size = 0;
    std::uint32_t offset = 0;
    std::string comment;
    bool on_disk = false;
  };

  void ReadEndRecord();
  void RefuseZip64();
  std::uint32_t GetZip64Size();
  void ReadHeaders(bool exhaustive);
  void SortHeaders();
  [[noreturn]] void Fail(std::int32_t cause) const;

  CZipStorage& storage_;
  CZipFileHeader* open_entry_ = nullptr;
  std::uint32_t ignored_checks_ = k_check_data_descriptor;
  std::vector<std::unique_ptr<CZipFileHeader>> headers_;
  Info info_;
};
