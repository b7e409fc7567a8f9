#include "zip/file_header.h"

#include <algorithm>
#include <limits>

#include "port/files.h"
#include "port/wide_text.h"
#include "zip/exception.h"
#include "zip/internal/bytes.h"

using ZipArchiveLib::internal::ByteReader;
using ZipArchiveLib::internal::ByteWriter;

namespace port = zol::port;

namespace {

constexpr std::uint32_t k_local_signature = 0x04034B50;
constexpr std::uint32_t k_central_signature = 0x02014B50;
constexpr std::uint32_t k_descriptor_signature = 0x08074B50;
constexpr std::uint32_t k_local_size = 30;
constexpr std::uint32_t k_central_size = 46;
constexpr std::uint32_t k_local_crc_offset = 14;

constexpr std::uint16_t k_version = 46;
constexpr std::uint16_t k_zip64_record = 0x0001;
constexpr std::uint16_t k_aes_record = 0x9901;
constexpr std::uint16_t k_text_record = 0x5A4C;
constexpr std::uint16_t k_aes_vendor = 0x4541;

std::string read_bytes(CZipStorage& storage, std::uint16_t size) {
  std::string bytes(size, '\0');
  storage.Read(bytes.data(), size);
  return bytes;
}

bool read_extra(CZipStorage& storage, std::uint16_t size, CZipExtraField& extra) {
  const std::string field = read_bytes(storage, size);
  ByteReader reader(field);
  extra.clear();
  while (reader.left() != 0) {
    const std::uint16_t id = reader.u16();
    const std::uint16_t length = reader.u16();
    extra.push_back({id, reader.bytes(length)});
    if (!reader.ok()) return false;
  }
  return true;
}

std::string extra_bytes(const CZipExtraField& extra) {
  ByteWriter writer;
  for (const CZipExtraRecord& record : extra) {
    writer.u16(record.id).u16(static_cast<std::uint32_t>(record.data.size())).bytes(record.data);
  }
  return writer.record();
}

// Without the records that the writer makes itself.
CZipExtraField foreign_records(CZipExtraField extra) {
  extra.erase(std::remove_if(extra.begin(), extra.end(),
                             [](const CZipExtraRecord& record) {
                               return record.id == k_aes_record || record.id == k_text_record;
                             }),
              extra.end());
  return extra;
}

void write_record(CZipStorage& storage, const ByteWriter& writer) {
  storage.Write(writer.record().data(), static_cast<std::uint32_t>(writer.record().size()));
}

// The systems whose attributes are understood, by their number in the version made by field.
enum System { k_fat = 0, k_unix = 3, k_hpfs = 6, k_macintosh = 7, k_ntfs = 10 };

bool is_known(std::uint8_t system) {
  return system == k_fat || system == k_unix || system == k_hpfs || system == k_macintosh ||
         system == k_ntfs;
}

constexpr std::uint32_t k_unix_readable = 0x0124;
constexpr std::uint32_t k_unix_writable = 0x0090;
constexpr std::uint32_t k_unix_file = 0x8000;
constexpr std::uint32_t k_unix_directory = 0x4049;

std::uint32_t unix_from_fat(std::uint32_t attributes) {
  std::uint32_t mode =
      (attributes & port::k_attribute_directory) != 0 ? k_unix_directory : k_unix_file;
  if ((attributes & port::k_attribute_hidden) == 0) mode |= k_unix_readable;
  if ((attributes & port::k_attribute_read_only) == 0) mode |= k_unix_writable;
  return mode;
}

std::uint32_t fat_from_unix(std::uint32_t mode) {
  const bool is_directory = (mode & 0xF000) == 0x4000;
  std::uint32_t attributes = is_directory ? port::k_attribute_directory : port::k_attribute_archive;
  if ((mode & k_unix_readable) == 0) attributes |= port::k_attribute_hidden;
  if ((mode & k_unix_writable) == 0) attributes |= port::k_attribute_read_only;
  return attributes;
}

std::wstring with_separator(std::wstring name, wchar_t from, wchar_t to) {
  std::replace(name.begin(), name.end(), from, to);
  return name;
}

}  // namespace

CZipFileHeader::~CZipFileHeader() = default;

std::wstring CZipFileHeader::GetFileName() const {
  return with_separator(
      port::from_code_page(raw_name_.data(), raw_name_.size(), text_settings_.name_code_page), L'/',
      L'\\');
}

void CZipFileHeader::SetFileName(const std::wstring& name) {
  raw_name_ = port::to_code_page(with_separator(name, L'\\', L'/'), text_settings_.name_code_page);
}

std::wstring CZipFileHeader::GetComment() const {
  return port::from_code_page(raw_comment_.data(), raw_comment_.size(),
                              text_settings_.comment_code_page);
}

void CZipFileHeader::SetComment(const std::wstring& comment) {
  raw_comment_ = port::to_code_page(comment, text_settings_.comment_code_page);
}

void CZipFileHeader::SetTextSettings(const EntryTextSettings& settings) {
  const std::wstring name = GetFileName();
  const std::wstring comment = GetComment();
  text_settings_ = settings;
  SetFileName(name);
  SetComment(comment);
}

void CZipFileHeader::SetSystem(std::uint8_t system) {
  version_made_by = static_cast<std::uint16_t>((version_made_by & 0xFF) | (system << 8));
}

std::uint32_t CZipFileHeader::GetSystemAttributes() const {
  const std::uint8_t system = GetSystem();
  const std::uint32_t stored =
      system == k_unix ? external_attributes >> 16 : external_attributes & 0xFFFF;
  if (stored != 0 && is_known(system)) {
    if (system == k_unix) return fat_from_unix(stored);
    if (system != k_macintosh) return stored;
    return stored & (port::k_attribute_read_only | port::k_attribute_directory);
  }
  const bool names_directory =
      !raw_name_.empty() && (raw_name_.back() == '/' || raw_name_.back() == '\\');
  return names_directory ? port::k_attribute_directory : port::k_attribute_archive;
}

void CZipFileHeader::SetSystemAttributes(std::uint32_t attributes) {
  external_attributes = (attributes & 0xFFFF) | (unix_from_fat(attributes) << 16);
}

bool CZipFileHeader::IsDirectory() const {
  return (GetSystemAttributes() & port::k_attribute_directory) != 0;
}

void CZipFileHeader::SetTime(std::time_t when) {
  std::tm fields = {};
  if (when == -1) when = std::time(nullptr);
  if (!port::to_local_time(when, fields)) fields = {};
  // Seven bits of years from 1980 on. What lies before 1981 counts as that year.
  const int year = std::min(std::max(fields.tm_year - 80, 0), 127);
  date = static_cast<std::uint16_t>(fields.tm_mday + 32 * (fields.tm_mon + 1) + 512 * year);
  time = static_cast<std::uint16_t>(fields.tm_sec / 2 + 32 * fields.tm_min + 2048 * fields.tm_hour);
}

std::time_t CZipFileHeader::GetTime() const {
  std::tm fields = {};
  fields.tm_sec = 2 * (time & 31);
  fields.tm_min = (time & 0x7FF) / 32;
  fields.tm_hour = time / 2048;
  fields.tm_mday = date & 31;
  fields.tm_mon = (date & 0x1FF) / 32 - 1;
  fields.tm_year = date / 512 + 80;
  fields.tm_isdst = -1;
  return std::mktime(&fields);
}

bool CZipFileHeader::ReadCentral(CZipStorage& storage, bool signatureRead) {
  char record[k_central_size];
  const std::uint32_t skipped = signatureRead ? 4 : 0;
  storage.Read(record, k_central_size - skipped);
  ByteReader reader(record, k_central_size - skipped);
  if (!signatureRead && reader.u32() != k_central_signature) return false;

  version_made_by = reader.u16();
  version_needed = reader.u16();
  flags = reader.u16();
  method = reader.u16();
  time = reader.u16();
  date = reader.u16();
  crc = reader.u32();
  compressed_size = reader.u32();
  uncompressed_size = reader.u32();
  const std::uint16_t name_size = reader.u16();
  const std::uint16_t extra_size = reader.u16();
  const std::uint16_t comment_size = reader.u16();
  volume_start = reader.u16();
  internal_attributes = reader.u16();
  external_attributes = reader.u32();
  offset = reader.u32();
  encryption_method = (flags & flagEncrypted) != 0 ? 0 : k_not_encrypted;

  raw_name_ = read_bytes(storage, name_size);
  if (!read_extra(storage, extra_size, central_extra)) return false;
  if (!ApplyTextRecord()) return false;
  // A record that is not valid leaves the method at 99, which can't be read.
  if (method == k_zip_aes && IsEncrypted() && ApplyAesRecord(central_extra)) {
    central_extra = foreign_records(central_extra);
  }
  raw_comment_ = read_bytes(storage, comment_size);
  return true;
}

// Layout: version, flags; with flag 1 the name's code page, and with 2 also the name; with flag 4
// the comment's code page.
bool CZipFileHeader::ApplyTextRecord() {
  const auto record =
      std::find_if(central_extra.begin(), central_extra.end(),
                   [](const CZipExtraRecord& each) { return each.id == k_text_record; });
  if (record == central_extra.end()) return true;
  ByteReader reader(record->data);
  const std::uint8_t version = reader.u8();
  if (!reader.ok()) return false;
  if (version >= 2) return true;

  const std::uint8_t contents = reader.u8();
  const std::size_t comment_page_size = (contents & 4) != 0 ? 4 : 0;
  if ((contents & 1) != 0) {
    text_settings_.name_code_page = reader.u32();
    if ((contents & 2) != 0) {
      if (!reader.ok() || reader.left() < comment_page_size) return false;
      raw_name_ = reader.bytes(reader.left() - comment_page_size);
      text_settings_.store_name_in_extra = true;
    }
  }
  if (comment_page_size != 0) text_settings_.comment_code_page = reader.u32();
  return reader.ok();
}

// Takes method and strength from the record, if there is a valid one.
bool CZipFileHeader::ApplyAesRecord(CZipExtraField& extra) {
  const auto record = std::find_if(extra.begin(), extra.end(), [](const CZipExtraRecord& each) {
    return each.id == k_aes_record;
  });
  if (record == extra.end()) return false;
  ByteReader reader(record->data);
  const std::uint16_t version = reader.u16();
  const std::uint16_t vendor = reader.u16();
  const std::uint8_t strength = reader.u8();
  const std::uint16_t real_method = reader.u16();
  if (!reader.ok() || version < 1 || version > 2 || vendor != k_aes_vendor || strength < 1 ||
      strength > 3) {
    return false;
  }
  encryption_method = strength;
  encrypted_v2 = version == 2;
  method = real_method;
  return true;
}

// A writer that does not know the sizes beforehand leaves room for large ones in the local header,
// and puts small ones into the directory after all.
bool CZipFileHeader::ApplyZip64Record() {
  constexpr std::uint32_t k_full = 0xFFFFFFFF;
  const auto record =
      std::find_if(local_extra.begin(), local_extra.end(),
                   [](const CZipExtraRecord& each) { return each.id == k_zip64_record; });
  has_wide_descriptor_ = record != local_extra.end();
  if (!has_wide_descriptor_) return true;
  ByteReader reader(record->data);
  for (std::uint32_t* const size : {&local_uncompressed_size, &local_compressed_size}) {
    if (*size != k_full) continue;
    *size = reader.u32();
    if (reader.u32() != 0) return false;
  }
  return reader.ok();
}

bool CZipFileHeader::CheckLocal(CZipStorage& storage, std::uint32_t ignoredChecks) {
  const auto checks = [ignoredChecks](std::uint32_t check) { return (ignoredChecks & check) == 0; };
  char record[k_local_size];
  storage.Read(record, k_local_size);
  ByteReader reader(record, k_local_size);
  if (reader.u32() != k_local_signature) return false;
  reader.u16();  // version needed

  const std::uint16_t local_flags = reader.u16();
  if (checks(k_check_flags) && (local_flags & 0xF) != (flags & 0xF)) return false;
  CZipFileHeader local;
  local.method = reader.u16();
  reader.u32();  // time and date
  local.crc = reader.u32();
  local_compressed_size = reader.u32();
  local_uncompressed_size = reader.u32();
  local_name_size = reader.u16();
  const std::uint16_t extra_size = reader.u16();
  storage.Seek(local_name_size, CZipAbstractFile::current);
  if (!read_extra(storage, extra_size, local_extra) || !ApplyZip64Record()) return false;

  if (local.method == k_zip_aes && IsEncrypted()) {
    const bool has_record =
        std::any_of(local_extra.begin(), local_extra.end(),
                    [](const CZipExtraRecord& each) { return each.id == k_aes_record; });
    if (has_record) {
      if (!local.ApplyAesRecord(local_extra)) return false;
      if (local.encryption_method != encryption_method || local.encrypted_v2 != encrypted_v2) {
        return false;
      }
      local_extra = foreign_records(local_extra);
    }
  }
  if (checks(k_check_method) && local.method != method) return false;
  if ((local_flags & flagDataDescriptor) != 0) return true;
  if (checks(k_check_local_crc) && local.crc != crc) return false;
  return !checks(k_check_sizes) ||
         (local_uncompressed_size == uncompressed_size &&
          (local_compressed_size == compressed_size || local_compressed_size == 0));
}

bool CZipFileHeader::CheckDataDescriptor(CZipStorage& storage) const {
  char record[20];
  storage.Read(record, 4);
  const bool has_signature = ByteReader(record, 4).u32() == k_descriptor_signature;
  if (has_signature) storage.Read(record, 4);
  const std::uint32_t sizes = has_wide_descriptor_ ? 16 : 8;
  storage.Read(record + 4, sizes);
  ByteReader reader(record, 4 + sizes);
  const auto is_size = [&](std::uint32_t size) {
    return reader.u32() == size && (!has_wide_descriptor_ || reader.u32() == 0);
  };
  return reader.u32() == crc && is_size(compressed_size) && is_size(uncompressed_size);
}

void CZipFileHeader::PrepareNew(int level, const std::wstring& archivePath) {
  version_made_by = static_cast<std::uint16_t>((version_made_by & 0xFF00) | k_version);
  version_needed = IsDirectory() ? 10 : method == k_zip_bzip2 ? k_version : 20;
  flags = 0;
  if (method == k_zip_deflated) {
    flags = level == 1                 ? flagSuperFast
            : level == 2               ? flagFast
            : level == 8 || level == 9 ? flagMaximum
                                       : 0;
  }
  encryption_method = k_not_encrypted;
  crc = 0;
  compressed_size = 0;
  uncompressed_size = 0;
  volume_start = 0;
  internal_attributes = 0;
  local_extra = foreign_records(local_extra);

  constexpr std::size_t k_longest = std::numeric_limits<std::uint16_t>::max();
  if (raw_name_.size() > k_longest || NameToWrite().size() > k_longest ||
      raw_comment_.size() > k_longest || extra_bytes(local_extra).size() > k_longest ||
      extra_bytes(ExtraToWrite()).size() > k_longest) {
    throw CZipException(CZipException::tooLongFileName, archivePath);
  }
}

void CZipFileHeader::WriteLocal(CZipStorage& storage) {
  const std::uint64_t position = storage.GetPosition();
  if (position >= std::numeric_limits<std::uint32_t>::max()) {
    throw CZipException(CZipException::tooBigSize, storage.GetArchivePath());
  }
  offset = static_cast<std::uint32_t>(position);
  const std::string name = NameToWrite();
  const std::string extra = extra_bytes(local_extra);
  local_name_size = static_cast<std::uint16_t>(name.size());

  ByteWriter writer;
  writer.u32(k_local_signature).u16(version_needed).u16(flags).u16(method).u16(time).u16(date);
  writer.u32(0).u32(local_compressed_size).u32(local_uncompressed_size);
  writer.u16(local_name_size).u16(static_cast<std::uint32_t>(extra.size()));
  write_record(storage, writer.bytes(name).bytes(extra));
}

void CZipFileHeader::PatchLocal(CZipStorage& storage) {
  storage.Flush();
  const std::uint64_t position = storage.GetPosition();
  local_compressed_size = compressed_size;
  local_uncompressed_size = uncompressed_size;
  ByteWriter writer;
  writer.u32(crc).u32(compressed_size).u32(uncompressed_size);
  storage.Seek(std::uint64_t{offset} + k_local_crc_offset);
  write_record(storage, writer);
  storage.Flush();
  storage.Seek(position);
}

std::uint32_t CZipFileHeader::WriteCentral(CZipStorage& storage) const {
  const std::string name = NameToWrite();
  const std::string extra = extra_bytes(ExtraToWrite());
  const bool is_aes = IsEncrypted() && encryption_method != 0;

  ByteWriter writer;
  writer.u32(k_central_signature).u16(version_made_by).u16(version_needed).u16(flags);
  writer.u16(is_aes ? std::uint16_t{k_zip_aes} : method).u16(time).u16(date).u32(crc);
  writer.u32(compressed_size).u32(uncompressed_size);
  writer.u16(static_cast<std::uint32_t>(name.size()));
  writer.u16(static_cast<std::uint32_t>(extra.size()));
  writer.u16(static_cast<std::uint32_t>(raw_comment_.size()));
  writer.u16(volume_start).u16(0).u32(external_attributes).u32(offset);
  writer.bytes(name).bytes(extra).bytes(raw_comment_);
  write_record(storage, writer);
  return static_cast<std::uint32_t>(writer.record().size());
}

// With the name in an extra record, its place in the header has what the default page makes of it.
std::string CZipFileHeader::NameToWrite() const {
  if (!text_settings_.store_name_in_extra) return raw_name_;
  return port::to_code_page(with_separator(GetFileName(), L'\\', L'/'),
                            EntryTextSettings().name_code_page);
}

CZipExtraField CZipFileHeader::ExtraToWrite() const {
  CZipExtraField extra = foreign_records(central_extra);
  if (IsEncrypted() && encryption_method != 0) {
    ByteWriter aes;
    aes.u16(encrypted_v2 ? 2 : 1).u16(k_aes_vendor).u8(encryption_method).u16(method);
    extra.push_back({k_aes_record, aes.record()});
  }
  const EntryTextSettings defaults;
  if (text_settings_ != defaults) {
    const bool names_page = text_settings_.store_name_in_extra ||
                            text_settings_.name_code_page != defaults.name_code_page;
    const bool comments_page = text_settings_.comment_code_page != defaults.comment_code_page;
    ByteWriter text;
    text.u8(1).u8((names_page ? 1u : 0u) | (text_settings_.store_name_in_extra ? 2u : 0u) |
                  (comments_page ? 4u : 0u));
    if (names_page) text.u32(text_settings_.name_code_page);
    if (text_settings_.store_name_in_extra) text.bytes(raw_name_);
    if (comments_page) text.u32(text_settings_.comment_code_page);
    extra.push_back({k_text_record, text.record()});
  }
  return extra;
}
