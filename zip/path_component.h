// The parts of a path, by the same rules on every platform: a separator is a slash or a backslash,
// and prefixes and drive letters are recognised everywhere.
#pragma once

#include <string>

#include "port/export.h"

// Copies of the parts of one path, taken apart when it is made. Nothing asks the file system.
class ZOL_API CZipPathComponent {
 public:
  // All parts but the prefix are empty for a path that is too long; see zol::port::split_path.
  explicit CZipPathComponent(const std::wstring& path);
  virtual ~CZipPathComponent();

  // "\\", "\\?\" or "\\?\unc\", whose letters may be of either case; otherwise empty.
  const std::wstring& GetPrefix() const { return prefix_; }
  const std::wstring& GetDrive() const { return drive_; }          // with its colon
  const std::wstring& GetDirectory() const { return directory_; }  // without separators at its end
  const std::wstring& GetTitle() const { return title_; }
  const std::wstring& GetExtension() const { return extension_; }  // without its dot

  // Title and extension, with the dot between them if there is an extension.
  std::wstring GetFileName() const;
  // The parts joined again, with a backslash before the file name.
  std::wstring GetFullPath() const;

 private:
  std::wstring prefix_;
  std::wstring drive_;
  std::wstring directory_;
  std::wstring title_;
  std::wstring extension_;
};
