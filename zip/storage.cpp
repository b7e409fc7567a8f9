#include "zip/storage.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <string_view>
#include <utility>

#include "zip/exception.h"
#include "zip/path_component.h"

namespace {

constexpr std::uint32_t k_write_buffer_size = 0x10000;
constexpr std::uint32_t k_locate_buffer_size = 0x8000;

std::uint32_t open_flags(CZipOpenMode mode) {
  constexpr std::uint32_t k_read = CZipFile::modeRead | CZipFile::modeNoTruncate;
  constexpr std::uint32_t k_change = CZipFile::modeReadWrite | CZipFile::modeNoTruncate;
  switch (mode) {
    case CZipOpenMode::existing:
      return k_change;
    case CZipOpenMode::readOnly:
      return k_read;
    case CZipOpenMode::create:
      return CZipFile::modeReadWrite | CZipFile::modeCreate;
    case CZipOpenMode::openOrCreate:
      return k_change | CZipFile::modeCreate;
    case CZipOpenMode::segmented:
      break;
  }
  return 0;
}

// Forwards, since a search for one byte is fastest in that direction.
std::size_t last_place(const char* bytes, std::size_t size, std::string_view signature) {
  std::size_t place = std::string_view::npos;
  const char* const end = bytes + size;
  for (const char* at = bytes; signature.size() <= static_cast<std::size_t>(end - at); ++at) {
    const std::size_t starts = static_cast<std::size_t>(end - at) - signature.size() + 1;
    at = static_cast<const char*>(std::memchr(at, signature[0], starts));
    if (at == nullptr) break;
    if (std::string_view(at, signature.size()) == signature) {
      place = static_cast<std::size_t>(at - bytes);
    }
  }
  return place;
}

}  // namespace

CZipStorage::~CZipStorage() = default;

void CZipStorage::Start(CZipAbstractFile* file, CZipOpenMode mode) {
  write_buffer_.Allocate(k_write_buffer_size);
  waiting_ = 0;
  bytes_before_archive_ = 0;
  is_segmented_ = false;
  read_only_ = mode == CZipOpenMode::readOnly;
  const bool is_new = mode == CZipOpenMode::create || mode == CZipOpenMode::openOrCreate;
  current_volume_ = is_new ? 0 : k_no_volume;
  file_ = file;
}

void CZipStorage::Open(const std::wstring& path, CZipOpenMode mode, std::uint32_t) {
  if (mode == CZipOpenMode::segmented) throw CZipException(CZipException::noCallback, path);
  if (mode > CZipOpenMode::openOrCreate) throw CZipException(EINVAL, path);
  archive_path_ = path;
  Start(&internal_file_, mode);
  internal_file_.Open(path, open_flags(mode) | CZipFile::shareDenyWrite, true);
}

void CZipStorage::Open(CZipAbstractFile& file, CZipOpenMode mode) {
  archive_path_ = file.GetFilePath();
  if (mode == CZipOpenMode::segmented)
    throw CZipException(CZipException::noCallback, archive_path_);
  if (mode > CZipOpenMode::openOrCreate || file.IsClosed()) {
    throw CZipException(EINVAL, archive_path_);
  }
  Start(&file, mode);
  if (mode == CZipOpenMode::create) file.SetLength(0);
  file.SeekToBegin();
}

std::wstring CZipStorage::Close(bool afterException) {
  if (!IsClosed() && !afterException) {
    Flush();
    if (!read_only_) file_->Flush();
  }
  write_buffer_.Release();
  waiting_ = 0;
  current_volume_ = k_no_volume;
  is_segmented_ = false;
  bytes_before_archive_ = 0;
  if (std::exchange(file_, nullptr) == &internal_file_) internal_file_.Close();
  return archive_path_;
}

void CZipStorage::Read(void* buffer, std::uint32_t count) {
  if (count == 0) return;
  if (file_->Read(buffer, count) != count) {
    throw CZipException(CZipException::badZipFile, archive_path_);
  }
}

void CZipStorage::Write(const void* buffer, std::uint32_t count) {
  const char* from = static_cast<const char*>(buffer);
  while (count != 0) {
    if (waiting_ == k_write_buffer_size) Flush();
    const std::uint32_t step = std::min(count, k_write_buffer_size - waiting_);
    std::memcpy(write_buffer_.GetBuffer() + waiting_, from, step);
    waiting_ += step;
    from += step;
    count -= step;
  }
}

void CZipStorage::Flush() {
  if (waiting_ == 0) return;
  file_->Write(write_buffer_.GetBuffer(), waiting_);
  waiting_ = 0;
}

std::uint64_t CZipStorage::Seek(std::uint64_t offset, CZipAbstractFile::SeekOrigin origin) {
  if (offset >= std::uint64_t{1} << 63) {
    const std::uint64_t distance = ~offset + 1;
    return file_->Seek(-static_cast<std::int64_t>(distance - 1) - 1, CZipAbstractFile::end);
  }
  if (origin == CZipAbstractFile::begin && current_volume_ == 0) offset += bytes_before_archive_;
  return file_->Seek(static_cast<std::int64_t>(offset), origin);
}

std::uint64_t CZipStorage::GetPosition() const {
  const std::uint64_t position = file_->GetPosition() + waiting_;
  return current_volume_ == 0 ? position - bytes_before_archive_ : position;
}

void CZipStorage::Truncate(std::uint64_t offset) {
  waiting_ = 0;
  file_->SetLength(offset + bytes_before_archive_);
}

bool CZipStorage::Locate(const char (&signature)[5], std::uint64_t end, std::uint64_t depth,
                         std::uint64_t& offset) {
  constexpr std::uint32_t k_size = 4;
  const std::uint64_t limit = std::min(depth, end);
  // A block, and behind it the first bytes of the one that follows it in the file.
  CZipAutoBuffer block(k_locate_buffer_size + k_size - 1);
  char next[k_size - 1];
  std::uint32_t next_size = 0;
  for (std::uint64_t position = 0; position < limit;) {
    const auto size =
        static_cast<std::uint32_t>(std::min<std::uint64_t>(k_locate_buffer_size, limit - position));
    position += size;
    file_->Seek(static_cast<std::int64_t>(end - position), CZipAbstractFile::begin);
    Read(block.GetBuffer(), size);
    std::memcpy(block.GetBuffer() + size, next, next_size);
    const std::size_t found = last_place(block.GetBuffer(), size + next_size, {signature, k_size});
    if (found != std::string_view::npos) {
      offset = end - position + found;
      return true;
    }
    next_size = std::min(size, k_size - 1);
    std::memcpy(next, block.GetBuffer(), next_size);
  }
  return false;
}

void CZipStorage::SetLastVolume(std::uint16_t volume) {
  is_segmented_ = volume != 0;
  current_volume_ = volume;
}

void CZipStorage::ChangeVolume(std::uint16_t volume) {
  if (volume == current_volume_) return;
  if (!is_segmented_) throw CZipException(CZipException::badZipFile, archive_path_);
  throw CZipException(ENOENT, VolumeName(volume));
}

std::wstring CZipStorage::VolumeName(std::uint16_t volume) const {
  const std::size_t length = CZipPathComponent(archive_path_).GetExtension().size();
  const unsigned number = volume + 1u;
  const std::wstring digits = std::to_wstring(number);
  return archive_path_.substr(0, archive_path_.size() - length) + L'z' +
         (digits.size() < 2 ? L"0" + digits : digits);
}
