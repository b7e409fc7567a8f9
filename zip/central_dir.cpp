#include "zip/central_dir.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <tuple>
#include <utility>

#include "zip/exception.h"
#include "zip/internal/bytes.h"

using ZipArchiveLib::internal::ByteReader;
using ZipArchiveLib::internal::ByteWriter;

namespace {

constexpr char k_end_signature[] = "PK\x05\x06";
constexpr char k_zip64_signature[] = "PK\x06\x06";
constexpr char k_zip64_locator_signature[] = "PK\x06\x07";
constexpr std::uint32_t k_end_signature_number = 0x06054B50;
constexpr std::uint32_t k_central_signature = 0x02014B50;
constexpr std::uint32_t k_end_size = 22;
constexpr std::uint64_t k_end_depth = k_end_size + 0xFFFF;  // with the longest comment
constexpr std::uint32_t k_not_found = 0xFFFFFFFF;

}  // namespace

CZipCentralDir::~CZipCentralDir() = default;

void CZipCentralDir::Fail(std::int32_t cause) const {
  throw CZipException(cause, storage_.GetArchivePath());
}

void CZipCentralDir::Clear() {
  open_entry_ = nullptr;
  headers_.clear();
  info_ = Info();
}

CZipFileHeader* CZipCentralDir::EntryAt(std::uint16_t index) const {
  return index < headers_.size() ? headers_[index].get() : nullptr;
}

void CZipCentralDir::Read(bool exhaustive) {
  Clear();
  ReadEndRecord();
  RefuseZip64();

  storage_.SetLastVolume(info_.last_volume);
  if (!storage_.IsSegmented()) {
    const std::uint32_t directory_end = info_.end_offset - GetZip64Size();
    if (std::uint64_t{info_.offset} + info_.size > directory_end) Fail(CZipException::badZipFile);
    storage_.SetBytesBeforeArchive(directory_end - info_.size - info_.offset);
  }
  if ((info_.size == 0) != (info_.entries == 0)) Fail(CZipException::badZipFile);
  info_.on_disk = true;
  storage_.ChangeVolume(info_.volume_with_directory);
  if (info_.size != 0) ReadHeaders(exhaustive);
  SortHeaders();
}

void CZipCentralDir::ReadEndRecord() {
  std::uint64_t found = k_not_found;
  storage_.Locate(k_end_signature, storage_.GetFileLength(), k_end_depth, found);
  // Without a signature the record is looked for all the same, at an offset that wraps around to 3;
  // what stands there is judged like any other record.
  info_.end_offset = static_cast<std::uint32_t>(found);
  const std::uint32_t record_offset = info_.end_offset + 4;

  char record[k_end_size - 4];
  storage_.Seek(record_offset);
  storage_.Read(record, sizeof record);
  ByteReader reader(record, sizeof record);
  info_.last_volume = reader.u16();
  info_.volume_with_directory = reader.u16();
  info_.entries_on_volume = reader.u16();
  info_.entries = reader.u16();
  info_.size = reader.u32();
  info_.offset = reader.u32();
  info_.comment.resize(reader.u16());
  storage_.Read(info_.comment.data(), static_cast<std::uint32_t>(info_.comment.size()));
}

// A field that is full may be meant so, or refer to a Zip64 record, which a locator gives away.
void CZipCentralDir::RefuseZip64() {
  constexpr std::uint16_t k_full_16 = 0xFFFF;
  constexpr std::uint32_t k_full_32 = 0xFFFFFFFF;
  const bool is_full = info_.last_volume == k_full_16 || info_.volume_with_directory == k_full_16 ||
                       info_.entries_on_volume == k_full_16 || info_.entries == k_full_16 ||
                       info_.comment.size() == k_full_16 || info_.size == k_full_32 ||
                       info_.offset == k_full_32;
  if (!is_full) return;
  std::uint64_t found = 0;
  if (storage_.Locate(k_zip64_locator_signature, info_.end_offset,
                      std::numeric_limits<std::uint64_t>::max(), found)) {
    Fail(CZipException::noZip64);
  }
}

// A writer that was ready for large sizes puts a record and a locator between the directory and the
// end record, also if that one has room for every number after all.
std::uint32_t CZipCentralDir::GetZip64Size() {
  constexpr std::uint32_t k_record_size = 56;
  constexpr std::uint32_t k_size = k_record_size + 20;
  if (info_.end_offset < k_size || info_.end_offset > storage_.GetFileLength()) return 0;
  char records[k_size];
  storage_.Seek(info_.end_offset - k_size);
  storage_.Read(records, k_size);
  const auto has = [&records](std::uint32_t offset, const char(&signature)[5]) {
    return std::memcmp(records + offset, signature, 4) == 0;
  };
  return has(0, k_zip64_signature) && has(k_record_size, k_zip64_locator_signature) ? k_size : 0;
}

void CZipCentralDir::ReadHeaders(bool exhaustive) {
  const auto read_header = [this](bool signature_read) {
    auto header = std::make_unique<CZipFileHeader>();
    if (!header->ReadCentral(storage_, signature_read)) Fail(CZipException::badZipFile);
    headers_.push_back(std::move(header));
  };
  storage_.Seek(info_.offset);
  for (std::uint32_t i = 0; i < info_.entries; ++i) read_header(false);
  if (!exhaustive) return;
  while (headers_.size() < k_no_entry) {
    char signature[4];
    storage_.Read(signature, sizeof signature);
    if (ByteReader(signature, sizeof signature).u32() != k_central_signature) return;
    read_header(true);
  }
}

void CZipCentralDir::SortHeaders() {
  const auto place = [](const std::unique_ptr<CZipFileHeader>& header) {
    return std::make_tuple(header->volume_start, header->offset);
  };
  std::sort(headers_.begin(), headers_.end(),
            [&](const auto& a, const auto& b) { return place(a) < place(b); });
  const auto twin =
      std::adjacent_find(headers_.begin(), headers_.end(),
                         [&](const auto& a, const auto& b) { return place(a) == place(b); });
  if (twin != headers_.end()) Fail(CZipException::badZipFile);
}

void CZipCentralDir::OpenEntry(std::uint16_t index) {
  CZipFileHeader* const header = EntryAt(index);
  storage_.ChangeVolume(header->volume_start);
  storage_.Seek(header->offset);
  if (!header->CheckLocal(storage_, ignored_checks_)) Fail(CZipException::badZipFile);
  open_entry_ = header;
}

void CZipCentralDir::CloseEntry(bool afterException) {
  CZipFileHeader* const header = std::exchange(open_entry_, nullptr);
  if (header == nullptr || afterException || !header->HasDataDescriptor()) return;
  if ((ignored_checks_ & k_check_data_descriptor) != 0) return;
  if (!header->CheckDataDescriptor(storage_)) Fail(CZipException::badZipFile);
}

CZipFileHeader* CZipCentralDir::AddNew(std::unique_ptr<CZipFileHeader> header, int level) {
  header->PrepareNew(level, storage_.GetArchivePath());
  headers_.push_back(std::move(header));
  open_entry_ = headers_.back().get();
  if (info_.on_disk) {
    storage_.Truncate(info_.offset);
    info_.on_disk = false;
  } else {
    storage_.Flush();
  }
  storage_.Seek(0, CZipAbstractFile::end);
  open_entry_->WriteLocal(storage_);
  return open_entry_;
}

void CZipCentralDir::CloseNew() { std::exchange(open_entry_, nullptr)->PatchLocal(storage_); }

void CZipCentralDir::RemoveLast() {
  storage_.Flush();
  storage_.Truncate(headers_.back()->offset);
  headers_.pop_back();
}

void CZipCentralDir::Write() {
  if (info_.on_disk) return;
  info_.entries = GetCount();
  info_.entries_on_volume = info_.entries;
  storage_.Flush();
  storage_.Seek(0, CZipAbstractFile::end);
  const std::uint64_t start = storage_.GetPosition();
  std::uint64_t size = 0;
  for (const auto& header : headers_) size += header->WriteCentral(storage_);
  if (start + size >= k_not_found) Fail(CZipException::tooBigSize);
  info_.offset = static_cast<std::uint32_t>(start);
  info_.size = static_cast<std::uint32_t>(size);

  ByteWriter writer;
  writer.u32(k_end_signature_number).u16(0).u16(0).u16(info_.entries_on_volume).u16(info_.entries);
  writer.u32(info_.size).u32(info_.offset);
  writer.u16(static_cast<std::uint32_t>(info_.comment.size())).bytes(info_.comment);
  storage_.Write(writer.record().data(), static_cast<std::uint32_t>(writer.record().size()));
  info_.on_disk = true;
}
