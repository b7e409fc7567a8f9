// One entry of an archive: its fields, and its records in the local and the central header.
#pragma once

#include <cstdint>
#include <ctime>
#include <string>
#include <vector>

#include "zip/storage.h"

// Compression methods by their number in an entry.
enum CZipMethod : std::uint16_t {
  k_zip_stored = 0,
  k_zip_deflated = 8,
  k_zip_bzip2 = 12,
  k_zip_aes = 99,  // in the header only: the real method is in an extra record
};

// Checks that an archive can be told to leave out.
enum CZipCheck : std::uint32_t {
  k_check_crc = 0x01,
  k_check_method = 0x02,
  k_check_sizes = 0x04,
  k_check_local_crc = 0x08,
  k_check_flags = 0x10,
  k_check_data_descriptor = 0x100,
};

// One record of an extra field.
struct CZipExtraRecord {
  std::uint16_t id;
  std::string data;
};
using CZipExtraField = std::vector<CZipExtraRecord>;

// How the texts of an entry are stored. The code pages are those of `zol::port::to_code_page`.
struct EntryTextSettings {
  bool store_name_in_extra = false;
  std::uint32_t name_code_page = 1;
  std::uint32_t comment_code_page = 0;

  bool operator==(const EntryTextSettings& other) const {
    return store_name_in_extra == other.store_name_in_extra &&
           name_code_page == other.name_code_page && comment_code_page == other.comment_code_page;
  }
  bool operator!=(const EntryTextSettings& other) const { return !(*this == other); }
};

class ZOL_API CZipFileHeader {
 public:
  static constexpr std::uint8_t k_not_encrypted = 0xFF;
  enum Flag : std::uint16_t {
    flagEncrypted = 0x0001,
    flagSuperFast = 0x0006,
    flagFast = 0x0004,
    flagMaximum = 0x0002,
    flagDataDescriptor = 0x0008
  };

  CZipFileHeader() = default;
  virtual ~CZipFileHeader();

  // The numbers of the central header, as they are stored.
  std::uint16_t version_made_by = 0;  // low byte ZIP version, high byte host system
  std::uint16_t version_needed = 0;
  std::uint16_t flags = 0;
  std::uint16_t method = k_zip_deflated;
  std::uint16_t time = 0;  // DOS form
  std::uint16_t date = 0;
  std::uint32_t crc = 0;
  std::uint32_t compressed_size = 0;
  std::uint32_t uncompressed_size = 0;
  std::uint16_t volume_start = 0;
  std::uint16_t internal_attributes = 0;
  std::uint32_t local_compressed_size = 0;
  std::uint32_t local_uncompressed_size = 0;
  std::uint32_t offset = 0;  // of the local header, from the archive's start
  CZipExtraField local_extra;
  CZipExtraField central_extra;
  std::uint32_t external_attributes = 0;
  std::uint16_t local_name_size = 0;
  std::uint8_t encryption_method = k_not_encrypted;  // 0 traditional, 1 to 3 AES strengths
  bool encrypted_v2 = false;                         // AES version 2: the checksum is stored as 0

  // As text, with backslashes. As stored, with slashes.
  std::wstring GetFileName() const;
  void SetFileName(const std::wstring& name);
  const std::string& GetRawFileName() const { return raw_name_; }
  std::wstring GetComment() const;
  void SetComment(const std::wstring& comment);
  const EntryTextSettings& GetTextSettings() const { return text_settings_; }
  // Keeps the text of name and comment.
  void SetTextSettings(const EntryTextSettings& settings);

  std::uint8_t GetSystem() const { return static_cast<std::uint8_t>(version_made_by >> 8); }
  void SetSystem(std::uint8_t system);
  // Attributes in FAT form, from the host's or from those of the system that made the entry.
  std::uint32_t GetSystemAttributes() const;
  void SetSystemAttributes(std::uint32_t attributes);
  bool IsDirectory() const;
  bool IsEncrypted() const { return encryption_method != k_not_encrypted; }
  bool HasDataDescriptor() const { return (flags & flagDataDescriptor) != 0; }

  // Local time, to two seconds. The time -1 stands for now.
  void SetTime(std::time_t when);
  std::time_t GetTime() const;

  // --- For the archive. The storage stands at the record. A false result or cause 101 means that
  // the record is damaged.
  bool ReadCentral(CZipStorage& storage, bool signatureRead);
  bool CheckLocal(CZipStorage& storage, std::uint32_t ignoredChecks);
  bool CheckDataDescriptor(CZipStorage& storage) const;
  // Settles version, flags and stored texts of a new entry. Cause 110 if one of them is too long.
  void PrepareNew(int level, const std::wstring& archivePath);
  void WriteLocal(CZipStorage& storage);
  // Checksum and sizes into a local header that is on disk already.
  void PatchLocal(CZipStorage& storage);
  // The size of the record.
  std::uint32_t WriteCentral(CZipStorage& storage) const;

 private:
  bool ApplyTextRecord();
  bool ApplyZip64Record();
  bool ApplyAesRecord(CZipExtraField& extra);
  CZipExtraField ExtraToWrite() const;
  std::string NameToWrite() const;

  EntryTextSettings text_settings_;
  std::string raw_name_;
  std::string raw_comment_;
  bool has_wide_descriptor_ = false;  // its sizes are of 8 bytes
};
