// ZIP archives: plain files without Zip64 records, of up to 65,535 entries and 4 GiB.
//
//   CZipArchive archive;
//   archive.Open(L"colours.zip", CZipArchive::modeReadOnly);
//   CZipAutoBuffer data(archive.EntryAt(0)->uncompressed_size);
//   if (!archive.OpenEntry(0) || archive.ReadEntry(data, data.GetSize()) != data.GetSize()) ...
//   archive.CloseEntry();
//   archive.Close();
//
// Failures throw `CZipException` with the archive's path, or that of the file concerned. An object
// and its entries belong to one thread at a time. After an exception either destroy the object or
// call `Close(closeAfterException)`; both leave nothing open.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <string>

#include "zip/central_dir.h"
#include "zip/compressor.h"
#include "zip/cryptograph.h"
#include "zip/exception.h"
#include "zip/storage.h"

// One archive in one file. It can be opened again after it was closed, and not be copied.
class ZOL_API CZipArchive {
 public:
  // What is done with the file.
  enum OpenMode : std::uint32_t {
    modeOpen = 0,
    modeReadOnly = 1,
    modeCreate = 2,     // an existing file is truncated
    modeSegmented = 3,  // not supported: cause 103
    modeAppend = 4      // opens or creates; what is in the file stays in front of the archive
  };
  // What becomes of the central directory.
  enum CloseMode {
    closeNormal = 0,
    closeAfterException = 1,  // writes no central directory, and never throws
    closeAndWrite = 2         // writes it although an exception came first
  };
  // Bits: what is decided by the file that is added.
  enum Smartness : std::uint32_t {
    smartNoPasswordForDirectory = 0x01,
    smartNoPasswordForEmpty = 0x02,
    smartStoreSmall = 0x04,     // files below 5 bytes
    smartStoreIfLarger = 0x08,  // when compression gains nothing
    smartInMemory = 0x10,       // of no effect: no trial needs a copy
    smartDefault = 0x07
  };
  // Of AddFile, in bytes.
  static constexpr std::uint32_t k_default_buffer_size = 0x10000;

  CZipArchive();
  CZipArchive(const CZipArchive&) = delete;
  CZipArchive& operator=(const CZipArchive&) = delete;
  // Closes as after an exception: an archive that is to be kept is closed first.
  virtual ~CZipArchive();
  // Drops the cryptograph: the library has none. A descendant may set one up.
  virtual void CreateCryptograph(std::uint8_t encryptionMethod);
  // Makes the compressor for a method, or keeps the one at hand if it can serve; none for a method
  // that is not known.
  virtual void CreateCompressor(std::uint16_t method);

  // False, and nothing changes, if the object is open already. Cause 101 for a file that is damaged
  // or no archive, 120 for one with Zip64 records. `segmentSize` has no meaning yet.
  bool Open(const std::wstring& path, std::uint32_t mode = modeOpen, std::uint32_t segmentSize = 0);
  // On a client's file, which is open for what the mode needs. It outlives the archive's use of it
  // and stays open.
  bool Open(CZipAbstractFile& file, std::uint32_t mode = modeOpen);
  // Harmless on a closed object. With `updateTimeStamp` the file gets the time of the latest entry.
  void Close(int mode = closeNormal, bool updateTimeStamp = false);
  // Is nothing open?
  bool IsClosed() const { return storage_.IsClosed(); }
  // Of the file; empty before the first opening.
  std::wstring GetArchivePath() const { return storage_.GetArchivePath(); }

  // The entries are in the order of their data in the file. The header lives until the archive is
  // closed; null if it is, or for an index out of range.
  CZipFileHeader* EntryAt(std::uint16_t index) const;
  // The number of entries.
  std::uint16_t GetCount() const { return central_dir_.GetCount(); }
  // As stored.
  const std::string& GetRawComment() const { return central_dir_.GetRawComment(); }
  // Whether the file is long enough for the size that the entry claims. A caller that allocates
  // before it reads asks this first; what it refuses could not be read.
  bool CanHold(const CZipFileHeader& entry) const;

  // False for an index out of range, an unknown compression method, and if an entry is open. Cause
  // 101 for a local header that is damaged or differs from the central one, 112 for an encrypted
  // entry.
  bool OpenEntry(std::uint16_t index);
  // Bytes delivered: fewer than `count` only at the end of the entry.
  std::uint32_t ReadEntry(void* buffer, std::uint32_t count);
  // 1 if all is well, 0 if no entry is open for reading, -1 if it was not read to its end, in which
  // case its checksum was not compared, -2 if the file at `path`, if any, did not take the entry's
  // time and attributes. Cause 102 for a wrong checksum; the entry then stays open.
  int CloseEntry(const wchar_t* path = nullptr, bool afterException = false);

  // The method of new entries, 8 or 12; false for any other one, and while a new entry is open. An
  // entry is stored when its level is 0.
  bool SetCompressionMethod(std::uint16_t method);
  // Adds a file or an empty directory. Its name in the archive is the file's name, or the full path
  // without its drive. `level` is 0 to 9 or -1 for the default, `smartness` a set of `Smartness`.
  // False if the file can't be opened, or nothing can be added. Nobody looks for an entry of the
  // same name.
  bool AddFile(const std::wstring& path, int level = -1, bool keepFullPath = false,
               std::uint32_t smartness = smartDefault,
               std::uint32_t bufferSize = k_default_buffer_size);

  // Adds an entry piece by piece: `header` carries name, time and attributes. False if nothing can
  // be added: the archive is closed, read-only, segmented or full, or an entry is open.
  bool OpenNewEntry(std::unique_ptr<CZipFileHeader> header, int level = -1);
  // False if no new entry is open.
  bool WriteNewEntry(const void* buffer, std::uint32_t size);
  // False if no new entry is open. After an exception the entry stays in the list as it is.
  bool CloseNewEntry(bool afterException = false);

  // Reads headers past the number in the end record. Set before opening.
  void SetExhaustiveRead(bool exhaustive) { exhaustive_read_ = exhaustive; }
  // A set of `CZipCheck`; at first only the data descriptor is not compared.
  void SetIgnoredChecks(std::uint32_t checks) { central_dir_.SetIgnoredChecks(checks); }
  // For the compressors of their type, from the next entry on.
  void SetCompressorOptions(const CZipCompressor::COptions& options);

 private:
  enum class EntryState { none, writing, reading };

  template <class File>
  bool OpenStorage(File& file, std::uint32_t mode);
  std::unique_ptr<CZipFileHeader> MakeHeader(const std::wstring& path, std::uint32_t attributes,
                                             bool keepFullPath) const;
  bool AddData(CZipFile& source, std::unique_ptr<CZipFileHeader> header, int level,
               std::uint32_t bufferSize);

  CZipStorage storage_;
  CZipCentralDir central_dir_;
  EntryState entry_state_ = EntryState::none;
  std::uint16_t compression_method_ = k_zip_deflated;
  std::uint8_t system_ = 0;
  bool exhaustive_read_ = false;
  std::unique_ptr<CZipCryptograph> cryptograph_;
  std::unique_ptr<CZipCompressor> compressor_;
  std::map<int, std::unique_ptr<CZipCompressor::COptions>> compressor_options_;
};
