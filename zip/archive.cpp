#include "zip/archive.h"

#include <algorithm>
#include <limits>
#include <utility>

#include "port/files.h"
#include "zip/bzip2_compressor.h"
#include "zip/deflate_compressor.h"
#include "zip/path_component.h"

namespace port = zol::port;

namespace {

constexpr std::uint64_t k_small_file = 5;

bool is_known_method(std::uint16_t method) {
  return method == k_zip_stored || method == k_zip_deflated || method == k_zip_bzip2;
}

bool is_known_system(std::uint8_t system) {
  return system == 0 || system == 3 || system == 6 || system == 7 || system == 10;
}

// The path without prefix, drive and leading separators.
std::wstring name_of_full_path(const CZipPathComponent& parts) {
  std::wstring name = parts.GetDirectory();
  if (!name.empty()) name += L'\\';
  name += parts.GetFileName();
  const auto first = std::find_if_not(name.begin(), name.end(), port::is_separator);
  return std::wstring(first, name.end());
}

}  // namespace

CZipArchive::CZipArchive() : central_dir_(storage_) {}

CZipArchive::~CZipArchive() {
  try {
    CZipArchive::Close(closeAfterException);
  } catch (...) {
    // Only a client's file or compressor can be the cause.
  }
}

void CZipArchive::CreateCryptograph(std::uint8_t) { cryptograph_.reset(); }

void CZipArchive::CreateCompressor(std::uint16_t method) {
  if (compressor_ == nullptr || !compressor_->CanProcess(method)) {
    compressor_.reset();
    if (method == k_zip_stored || method == k_zip_deflated) {
      compressor_ = std::make_unique<ZipArchiveLib::CDeflateCompressor>(storage_);
    } else if (method == k_zip_bzip2) {
      compressor_ = std::make_unique<ZipArchiveLib::CBzip2Compressor>(storage_);
    }
  }
  if (compressor_ == nullptr) return;
  const CZipCompressor::COptions* const current = compressor_->GetOptions();
  if (current == nullptr) return;
  const auto own = compressor_options_.find(current->GetType());
  if (own != compressor_options_.end()) compressor_->UpdateOptions(*own->second);
}

void CZipArchive::SetCompressorOptions(const CZipCompressor::COptions& options) {
  compressor_options_[options.GetType()] = options.Clone();
}

template <class File>
bool CZipArchive::OpenStorage(File& file, std::uint32_t mode) {
  if (!IsClosed()) return false;
  try {
    storage_.Open(file, static_cast<CZipOpenMode>(mode));
    central_dir_.Clear();
    entry_state_ = EntryState::none;
    if (mode == modeOpen || mode == modeReadOnly) central_dir_.Read(exhaustive_read_);
  } catch (...) {
    Close(closeAfterException);
    throw;
  }
  const CZipFileHeader* const first = central_dir_.EntryAt(0);
  system_ = first != nullptr && is_known_system(first->GetSystem()) ? first->GetSystem() : 0;
  return true;
}

bool CZipArchive::Open(const std::wstring& path, std::uint32_t mode, std::uint32_t) {
  return OpenStorage(path, mode);
}

bool CZipArchive::Open(CZipAbstractFile& file, std::uint32_t mode) {
  return OpenStorage(file, mode);
}

void CZipArchive::Close(int mode, bool updateTimeStamp) {
  if (IsClosed()) return;
  const bool after_exception = mode != closeNormal;
  if (entry_state_ == EntryState::reading) CloseEntry(nullptr, after_exception);
  if (entry_state_ == EntryState::writing) CloseNewEntry(after_exception);
  const bool writes = mode != closeAfterException;
  if (writes) central_dir_.Write();

  std::time_t latest = -1;
  if (updateTimeStamp) {
    for (std::uint16_t i = 0; i < GetCount(); ++i) {
      latest = std::max(latest, central_dir_.EntryAt(i)->GetTime());
    }
  }
  central_dir_.Clear();
  compressor_.reset();
  std::wstring path;
  try {
    path = storage_.Close(!writes);
  } catch (...) {
    if (writes) throw;
  }
  if (latest != -1) port::set_modification_time(path, latest);
}

CZipFileHeader* CZipArchive::EntryAt(std::uint16_t index) const {
  return IsClosed() ? nullptr : central_dir_.EntryAt(index);
}

bool CZipArchive::CanHold(const CZipFileHeader& entry) const {
  if (IsClosed()) return false;
  // What one byte can stand for at most. Deflate gives up to 258 bytes for two bits. A bzip2 block
  // has up to 900,000 bytes, of which 5 become up to 259 in the last step, and takes at least 23.
  const std::uint64_t most_for_a_byte = entry.method == k_zip_bzip2      ? 46620000 / 23
                                        : entry.method == k_zip_deflated ? 1032
                                                                         : 1;
  return entry.uncompressed_size <= (storage_.GetFileLength() + 1) * most_for_a_byte;
}

bool CZipArchive::OpenEntry(std::uint16_t index) {
  if (IsClosed() || index >= GetCount() || entry_state_ != EntryState::none) return false;
  central_dir_.OpenEntry(index);
  CZipFileHeader* const header = central_dir_.GetOpenEntry();
  const bool is_known = is_known_method(header->method);
  if (!is_known || header->IsEncrypted()) {
    central_dir_.CloseEntry(true);
    if (!is_known) return false;
    throw CZipException(CZipException::badPassword, GetArchivePath());
  }
  CreateCryptograph(CZipFileHeader::k_not_encrypted);
  CreateCompressor(header->method);
  compressor_->InitDecompression(*header, cryptograph_.get());
  entry_state_ = EntryState::reading;
  return true;
}

std::uint32_t CZipArchive::ReadEntry(void* buffer, std::uint32_t count) {
  if (entry_state_ != EntryState::reading || buffer == nullptr || count == 0) return 0;
  return compressor_->Decompress(buffer, count);
}

int CZipArchive::CloseEntry(const wchar_t* path, bool afterException) {
  if (entry_state_ != EntryState::reading) return 0;
  const CZipFileHeader& header = *central_dir_.GetOpenEntry();
  int result = 1;
  if (!afterException) {
    if (compressor_->GetUncompressedLeft() != 0) {
      result = -1;
    } else if ((central_dir_.GetIgnoredChecks() & k_check_crc) == 0 &&
               compressor_->GetCrc() != header.crc) {
      throw CZipException(CZipException::badCrc, GetArchivePath());
    }
  }
  compressor_->FinishDecompression(afterException);
  if (!afterException && path != nullptr &&
      !(port::set_modification_time(path, header.GetTime()) &&
        port::set_attributes(path, header.GetSystemAttributes()))) {
    result = -2;
  }
  entry_state_ = EntryState::none;
  cryptograph_.reset();
  central_dir_.CloseEntry(afterException);
  return result;
}

bool CZipArchive::SetCompressionMethod(std::uint16_t method) {
  if (entry_state_ == EntryState::writing) return false;
  if (method != k_zip_deflated && method != k_zip_bzip2) return false;
  compression_method_ = method;
  return true;
}

std::unique_ptr<CZipFileHeader> CZipArchive::MakeHeader(const std::wstring& path,
                                                        std::uint32_t attributes,
                                                        bool keepFullPath) const {
  auto header = std::make_unique<CZipFileHeader>();
  header->SetSystem(system_);
  header->SetSystemAttributes(attributes);
  const CZipPathComponent parts(path);
  header->SetFileName(keepFullPath ? name_of_full_path(parts) : parts.GetFileName());
  std::time_t time = -1;
  if (!port::get_modification_time(path, time)) time = -1;
  header->SetTime(time);
  return header;
}

bool CZipArchive::AddFile(const std::wstring& path, int level, bool keepFullPath,
                          std::uint32_t smartness, std::uint32_t bufferSize) {
  if (bufferSize == 0) return false;
  std::wstring source_path = path;
  while (!source_path.empty() && port::is_separator(source_path.back())) source_path.pop_back();
  std::uint32_t attributes = 0;
  if (source_path.empty() || !port::get_attributes(source_path, attributes)) return false;

  if ((attributes & port::k_attribute_directory) != 0) {
    return OpenNewEntry(MakeHeader(source_path, attributes, keepFullPath), 0) && CloseNewEntry();
  }
  CZipFile source;
  if (!source.Open(source_path, CZipFile::modeRead | CZipFile::shareDenyNone, false)) return false;
  const std::uint64_t length = source.GetLength();
  if (length > std::numeric_limits<std::uint32_t>::max()) {
    throw CZipException(CZipException::tooBigSize, source_path);
  }
  if ((smartness & smartStoreSmall) != 0 && length < k_small_file) level = 0;

  const auto make_header = [&](bool is_stored) {
    auto header = MakeHeader(source_path, attributes, keepFullPath);
    header->local_uncompressed_size = static_cast<std::uint32_t>(length);
    if (is_stored) header->local_compressed_size = header->local_uncompressed_size;
    return header;
  };
  if (!AddData(source, make_header(level == 0), level, bufferSize)) return false;
  const CZipFileHeader& added = *central_dir_.EntryAt(static_cast<std::uint16_t>(GetCount() - 1));
  if ((smartness & smartStoreIfLarger) == 0 || level == 0 ||
      added.compressed_size < added.uncompressed_size) {
    return true;
  }
  central_dir_.RemoveLast();
  source.SeekToBegin();
  return AddData(source, make_header(true), 0, bufferSize);
}

bool CZipArchive::AddData(CZipFile& source, std::unique_ptr<CZipFileHeader> header, int level,
                          std::uint32_t bufferSize) {
  if (!OpenNewEntry(std::move(header), level)) return false;
  CZipAutoBuffer buffer(bufferSize);
  std::uint32_t count = 0;
  do {
    count = source.Read(buffer.GetBuffer(), bufferSize);
    if (count != 0) WriteNewEntry(buffer.GetBuffer(), count);
  } while (count == bufferSize);
  return CloseNewEntry();
}

bool CZipArchive::OpenNewEntry(std::unique_ptr<CZipFileHeader> header, int level) {
  if (header == nullptr || IsClosed() || entry_state_ != EntryState::none ||
      storage_.IsReadOnly() || storage_.IsSegmented() || GetCount() == CZipCentralDir::k_no_entry) {
    return false;
  }
  header->SetSystem(system_);
  if (header->time == 0 && header->date == 0) header->SetTime(-1);

  std::wstring name = header->GetFileName();
  const bool is_directory = header->IsDirectory();
  if (is_directory && (name.empty() || !port::is_separator(name.back()))) name += L'\\';
  if (name.empty()) name = L"file" + std::to_wstring(GetCount());
  header->SetFileName(name);

  if (level < -1 || level > 9) level = -1;
  CreateCryptograph(CZipFileHeader::k_not_encrypted);
  header->method = level == 0 || is_directory ? std::uint16_t{k_zip_stored} : compression_method_;
  CreateCompressor(header->method);
  CZipFileHeader* const added = central_dir_.AddNew(std::move(header), level);
  compressor_->InitCompression(level, *added, cryptograph_.get());
  entry_state_ = EntryState::writing;
  return true;
}

bool CZipArchive::WriteNewEntry(const void* buffer, std::uint32_t size) {
  if (entry_state_ != EntryState::writing) return false;
  compressor_->Compress(buffer, size);
  return true;
}

bool CZipArchive::CloseNewEntry(bool afterException) {
  if (entry_state_ != EntryState::writing) return false;
  compressor_->FinishCompression(afterException);
  entry_state_ = EntryState::none;
  cryptograph_.reset();
  if (afterException) {
    central_dir_.DropOpenEntry();
  } else {
    central_dir_.CloseNew();
    storage_.Flush();
  }
  return true;
}
