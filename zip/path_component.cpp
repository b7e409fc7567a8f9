#include "zip/path_component.h"

#include "port/files.h"

namespace {

std::size_t prefix_length(const std::wstring& path) {
  const std::wstring longest = L"\\\\?\\unc\\";
  std::size_t length = 0;
  while (length < longest.size() && length < path.size()) {
    wchar_t c = path[length];
    if (c >= L'A' && c <= L'Z') c = static_cast<wchar_t>(c - L'A' + L'a');
    if (c != longest[length]) break;
    ++length;
  }
  return length == 2 || length == 4 || length == 8 ? length : 0;
}

}  // namespace

CZipPathComponent::CZipPathComponent(const std::wstring& path)
    : prefix_(path.substr(0, prefix_length(path))) {
  zol::port::PathParts parts = zol::port::split_path(path.substr(prefix_.size()));
  while (!parts.directory.empty() && zol::port::is_separator(parts.directory.back())) {
    parts.directory.pop_back();
  }
  drive_ = parts.drive;
  directory_ = parts.directory;
  title_ = parts.title;
  extension_ = parts.extension.empty() ? parts.extension : parts.extension.substr(1);
}

CZipPathComponent::~CZipPathComponent() = default;

std::wstring CZipPathComponent::GetFileName() const {
  return extension_.empty() ? title_ : title_ + L'.' + extension_;
}

std::wstring CZipPathComponent::GetFullPath() const {
  std::wstring path = prefix_ + drive_ + directory_;
  const std::wstring name = GetFileName();
  if (!path.empty() && !name.empty()) path += L'\\';
  return path + name;
}
