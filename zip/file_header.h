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
  // What kind of record it is.
  std::uint16_t id;
  // Its bytes, without id and size.
  std::string data;
};
// The records in the order in which they stand in the file.
using CZipExtraField = std::vector<CZipExtraRecord>;

// How the texts of an entry are stored. The code pages are those of `zol::port::to_code_page`.
struct EntryTextSettings {
  // Whether the name goes to an extra record in UTF-8, too.
  bool store_name_in_extra = false;
  // Of the name.
  std::uint32_t name_code_page = 1;
  // Of the comment.
  std::uint32_t comment_code_page = 0;

  // Are all of them alike?
  bool operator==(const EntryTextSettings& other) const {
    return store_name_in_extra == other.store_name_in_extra &&
           name_code_page == other.name_code_page && comment_code_page == other.comment_code_page;
  }
  // Is one of them different?
  bool operator!=(const EntryTextSettings& other) const { return !(*this == other); }
};

// One entry. The archive that it is from owns it.
class ZOL_API CZipFileHeader {
 public:
  // Of encryption_method.
  static constexpr std::uint8_t k_not_encrypted = 0xFF;
  // Bits of `flags`. Those of speed say how it was compressed.
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
  // To extract it, as 20 for 2.0.
  std::uint16_t version_needed = 0;
  // A set of Flag, and other bits as they stand.
  std::uint16_t flags = 0;
  // One of CZipMethod, or any other number.
  std::uint16_t method = k_zip_deflated;
  std::uint16_t time = 0;  // DOS form
  // DOS form.
  std::uint16_t date = 0;
  // CRC-32 of the uncompressed bytes.
  std::uint32_t crc = 0;
  // In bytes, with what an encryption adds.
  std::uint32_t compressed_size = 0;
  // In bytes.
  std::uint32_t uncompressed_size = 0;
  // The volume of the local header, from 0.
  std::uint16_t volume_start = 0;
  // As they stand; nothing looks at them.
  std::uint16_t internal_attributes = 0;
  // What the local header says.
  std::uint32_t local_compressed_size = 0;
  // What the local header says.
  std::uint32_t local_uncompressed_size = 0;
  std::uint32_t offset = 0;  // of the local header, from the archive's start
  // The extra records of the local header.
  CZipExtraField local_extra;
  // The extra records of the central header.
  CZipExtraField central_extra;
  // Attributes of the file, in the form of the host.
  std::uint32_t external_attributes = 0;
  // Bytes of the name in the local header.
  std::uint16_t local_name_size = 0;
  std::uint8_t encryption_method = k_not_encrypted;  // 0 traditional, 1 to 3 AES strengths
  bool encrypted_v2 = false;                         // AES version 2: the checksum is stored as 0

  // As text, with backslashes. As stored, with slashes.
  std::wstring GetFileName() const;
  // Either separator may stand in it.
  void SetFileName(const std::wstring& name);
  // The bytes as stored.
  const std::string& GetRawFileName() const { return raw_name_; }
  // As text, from its code page.
  std::wstring GetComment() const;
  // Stored in its code page.
  void SetComment(const std::wstring& comment);
  // Those in force.
  const EntryTextSettings& GetTextSettings() const { return text_settings_; }
  // Keeps the text of name and comment.
  void SetTextSettings(const EntryTextSettings& settings);

  // The host: 0 for DOS and Windows, 3 for Unix.
  std::uint8_t GetSystem() const { return static_cast<std::uint8_t>(version_made_by >> 8); }
  // See GetSystem. The attributes stay as they are.
  void SetSystem(std::uint8_t system);
  // Attributes in FAT form, from the host's or from those of the system that made the entry.
  std::uint32_t GetSystemAttributes() const;
  // In FAT form; stored in that of the host.
  void SetSystemAttributes(std::uint32_t attributes);
  // By its attributes.
  bool IsDirectory() const;
  // Is it in need of a cryptograph?
  bool IsEncrypted() const { return encryption_method != k_not_encrypted; }
  // Do checksum and sizes follow the data?
  bool HasDataDescriptor() const { return (flags & flagDataDescriptor) != 0; }

  // Local time, to two seconds. The time -1 stands for now.
  void SetTime(std::time_t when);
  // See SetTime.
  std::time_t GetTime() const;

  // --- For the archive. The storage stands at the record. A false result or cause 101 means that
  // the record is damaged.
  bool ReadCentral(CZipStorage& storage, bool signatureRead);
  // Reads the local header, and compares it but for a set of CZipCheck.
  bool CheckLocal(CZipStorage& storage, std::uint32_t ignoredChecks);
  // Compares the record behind the data.
  bool CheckDataDescriptor(CZipStorage& storage) const;
  // Settles version, flags and stored texts of a new entry. Cause 110 if one of them is too long.
  void PrepareNew(int level, const std::wstring& archivePath);
  // At the end of the file.
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
