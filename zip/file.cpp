#include "zip/file.h"

#include <cerrno>
#include <utility>

#include "port/files.h"
#include "zip/exception.h"

namespace port = zol::port;

namespace {

port::Share share_of(std::uint32_t flags) {
  switch (flags & (CZipFile::shareDenyWrite | CZipFile::shareDenyRead | CZipFile::shareDenyNone)) {
    case CZipFile::shareDenyWrite:
      return port::Share::deny_write;
    case CZipFile::shareDenyRead:
      return port::Share::deny_read;
    default:
      return port::Share::deny_none;
  }
}

port::Access access_of(std::uint32_t flags) {
  switch (flags & CZipFile::modeReadWrite) {
    case CZipFile::modeReadWrite:
      return port::Access::read_write;
    case CZipFile::modeWrite:
      return port::Access::write;
    default:
      return port::Access::read;
  }
}

}  // namespace

bool CZipFile::Open(const std::wstring& path, std::uint32_t flags, bool throwOnFailure) {
  if (!IsClosed()) Close();
  port::OpenOptions options;
  options.access = access_of(flags);
  options.share = share_of(flags);
  options.create = (flags & modeCreate) != 0;
  options.truncate = options.access != port::Access::read && (flags & modeNoTruncate) == 0;
  std::wstring kept_path = path;
  handle_ = port::open_handle(path, options);
  if (!IsClosed()) {
    path_ = std::move(kept_path);
    return true;
  }
  if (throwOnFailure) throw CZipException::FromErrno(path);
  return false;
}

void CZipFile::Close() {
  if (IsClosed()) return;
  const std::wstring path = std::exchange(path_, std::wstring());
  const int handle = std::exchange(handle_, -1);
  if (std::exchange(is_ours_, true) && !port::close_handle(handle)) {
    throw CZipException::FromErrno(path);
  }
}

void CZipFile::Flush() {
  if (!port::sync_handle(handle_)) throw CZipException::FromErrno(path_);
}

std::uint64_t CZipFile::MoveTo(std::int64_t offset, SeekOrigin origin) const {
  const port::Origin from = origin == begin ? port::Origin::begin
                            : origin == end ? port::Origin::end
                                            : port::Origin::current;
  const std::int64_t position = port::seek_handle(handle_, offset, from);
  if (position < 0) throw CZipException::FromErrno(path_);
  return static_cast<std::uint64_t>(position);
}

std::uint64_t CZipFile::GetPosition() const { return MoveTo(0, current); }

std::uint64_t CZipFile::Seek(std::int64_t offset, SeekOrigin origin) {
  return MoveTo(offset, origin);
}

std::uint64_t CZipFile::GetLength() const {
  const std::uint64_t position = GetPosition();
  const std::uint64_t length = MoveTo(0, end);
  MoveTo(static_cast<std::int64_t>(position), begin);
  return length;
}

void CZipFile::SetLength(std::uint64_t length) {
  if (!port::resize_handle(handle_, static_cast<std::int64_t>(length))) {
    throw CZipException::FromErrno(path_);
  }
}

std::uint32_t CZipFile::Read(void* buffer, std::uint32_t count) {
  const auto done = static_cast<std::uint32_t>(port::read_handle(handle_, buffer, count));
  if (done != count && errno != 0) throw CZipException::FromErrno(path_);
  return done;
}

void CZipFile::Write(const void* buffer, std::uint32_t count) {
  if (!port::write_handle(handle_, buffer, count)) throw CZipException::FromErrno(path_);
}

CZipFile::~CZipFile() {
  if (handle_ != -1 && is_ours_) port::close_handle(handle_);
}
