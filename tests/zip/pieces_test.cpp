// The smaller classes: exception, buffer, path, file.
#include <gtest/gtest.h>

#include <cerrno>

#include "support/files.h"
#include "zip/archives.h"
#include "zip/path_component.h"

namespace {

using namespace zol_test;

TEST(Exception, HasATextForEachCause) {
  errno = 0;
  const std::pair<int, const wchar_t*> rows[] = {
      {1, L"Not super-user."},
      {2, L"No such file or directory."},
      {4, L"Interrupted system call."},
      {5, L"I/O error."},
      {6, L"No such device or address."},
      {9, L"Bad file number."},
      {12, L"Not enough space."},
      {13, L"Permission denied."},
      {14, L"Bad address."},
      {17, L"File exists."},
      {18, L"Cross-device link."},
      {19, L"No such device."},
      {20, L"Not a directory."},
      {21, L"Is a directory."},
      {22, L"Invalid argument."},
      {23, L"File table overflow."},
      {24, L"Too many open files."},
      {27, L"File too large."},
      {28, L"No space left on device."},
      {29, L"Illegal seek."},
      {30, L"Read-only file system."},
      {101, L"Damaged or not a zip file."},
      {102, L"Crc is mismatched."},
      {103, L"There is no spanned archive callback object set."},
      {104, L"Volume change aborted in a segmented archive."},
      {105, L"Action aborted."},
      {106, L"Action aborted safely."},
      {107, L"The device selected for the spanned archive is not removable."},
      {108, L"The limit of the maximum volumes reached."},
      {109, L"The limit of the maximum files in an archive reached."},
      {110,
       L"The filename, the comment or the local or central extra field of the file added to the "
       L"archive is too long."},
      {111, L"The file size is too large to be supported."},
      {112, L"An incorrect password set for the file being decrypted."},
      {113, L"The directory with a non-zero size found while testing."},
      {114, L"An internal error."},
      {117, L"Cannot create a file for the specified platform."},
      {118,
       L"The central directory was not found in the archive (or you were trying to open not the "
       L"last volume of a segmented archive)."},
      {119, L"Mismatched authentication code in WinZip AEC decrypted data."},
      {120,
       L"The Zip64 format has not been enabled for the library, but is required to use the "
       L"archive."},
      {121,
       L"WinZip AES encryption has not been enabled for the library, but is required to decompress "
       L"the archive."},
      {122, L"The collection is empty and the bounds do not exist."},
      {500, L"Zlib library error (end of stream)."},
      {503, L"Zlib library error (stream error)."},
      {504, L"Zlib library error (data error)."},
      {505, L"Not enough memory."},
      {506, L"Zlib library error (buffer error)."},
      {507, L"Zlib library error (version error)."},
      {600, L"Bzlib library sequence error."},
      {601, L"Bzlib library parameters error."},
      {602, L"Bzlib library memory error."},
      {603, L"Bzlib library data error."},
      {604, L"Bzlib library error (invalid magic value)."},
      {605, L"Bzlib library IO error."},
      {606, L"Bzlib library error (unexpected EOF)."},
      {607, L"Bzlib library error (buffer full)."},
      {100, L"Unknown error"},
      {501, L"Unknown error"},
      {502, L"Unknown error"},
      {115, L"Error while removing a file (Unknown error)."},
      {-7, L"Unknown error"},
  };
  for (const auto& [cause, text] : rows) EXPECT_EQ(CZipException(cause).ErrorText(), text) << cause;
#if !defined(_WIN32)  // it numbers and words this otherwise
  EXPECT_EQ(CZipException(36).ErrorText(), L"File name too long");
#endif

  errno = ENOSPC;
  for (const int cause : {100, 501, 502, 1000}) {
    EXPECT_EQ(CZipException(cause).ErrorText(), L"No space left on device.") << cause;
  }
  EXPECT_EQ(CZipException(116).ErrorText(),
            L"Error while renaming a file (No space left on device.).");
#if defined(EDQUOT)
  errno = EDQUOT;
  EXPECT_EQ(CZipException::FromErrno(L"x").GetCause(), ENOSPC);
#endif
  errno = ETIMEDOUT;
  EXPECT_EQ(CZipException::FromErrno(L"x").GetCause(), EIO);
}

TEST(Exception, CopiesItsTextIntoABuffer) {
  const CZipException exception(102, L"\u8272.zip");
  wchar_t buffer[32];
  EXPECT_TRUE(exception.ErrorTextInto(buffer, 32));
  EXPECT_STREQ(buffer, L"Crc is mismatched.");
  EXPECT_TRUE(exception.ErrorTextInto(buffer, 4));
  EXPECT_STREQ(buffer, L"Crc");
  EXPECT_TRUE(exception.ErrorTextInto(buffer, 1));
  EXPECT_STREQ(buffer, L"");
  EXPECT_FALSE(exception.ErrorTextInto(buffer, 0));
  EXPECT_FALSE(exception.ErrorTextInto(nullptr, 4));
  EXPECT_STREQ(exception.what(), "archive cause 102: Crc is mismatched. (\u8272.zip)");
}

TEST(AutoBuffer, OwnsItsBlock) {
  CZipAutoBuffer buffer(4, true);
  EXPECT_EQ(std::string(buffer.GetBuffer(), 4), std::string(4, '\0'));
  const char* const block = buffer;
  buffer[0] = 'a';
  buffer.Allocate(4);
  EXPECT_EQ(static_cast<const char*>(buffer), block);
  EXPECT_EQ(buffer[0], 'a');
  CZipAutoBuffer copy(buffer);
  buffer.Allocate(4, true);
  EXPECT_EQ(buffer[0], 0);
  EXPECT_EQ(copy[0], 'a');
  buffer = copy;
  EXPECT_NE(static_cast<char*>(buffer), static_cast<char*>(copy));
  EXPECT_EQ(buffer[0], 'a');
  buffer.Allocate(0);
  EXPECT_EQ(buffer.GetSize(), 0u);
  EXPECT_EQ(static_cast<char*>(buffer), nullptr);
  copy = buffer;
  EXPECT_EQ(copy.GetSize(), 0u);
}

TEST(PathComponent, SplitsPaths) {
  struct Case {
    std::wstring path, prefix, drive, directory, name, extension;
  };
  const std::wstring long_name(255, L'n');
  const Case cases[] = {
      {L"file.zolz", L"", L"", L"", L"file.zolz", L"zolz"},
      {L"/a/b.c/file", L"", L"", L"/a/b.c", L"file", L""},
      {L"a\\b//file.x.zol", L"", L"", L"a\\b", L"file.x.zol", L"zol"},
      {L"C:\\dir\\file.zol", L"", L"C:", L"\\dir", L"file.zol", L"zol"},
      {L"c:file.zol", L"", L"c:", L"", L"file.zol", L"zol"},
      {L"\\\\server\\share\\file.zolz", L"\\\\", L"", L"server\\share", L"file.zolz", L"zolz"},
      {L"\\\\?\\C:\\file.zol", L"\\\\?\\", L"C:", L"", L"file.zol", L"zol"},
      {L"\\\\?\\UNC\\server\\file.zol", L"\\\\?\\UNC\\", L"", L"server", L"file.zol", L"zol"},
      {L"\\\\?x", L"", L"", L"\\\\?x", L"", L""},
      {L".zol", L"", L"", L"", L".zol", L"zol"},
      {L"", L"", L"", L"", L"", L""},
      {long_name + L".zol", L"", L"", L"", long_name + L".zol", L"zol"},
      {L"/a/" + long_name + L"n.zol", L"", L"", L"", L"", L""},
  };
  for (const Case& each : cases) {
    const CZipPathComponent parts(each.path);
    SCOPED_TRACE(testing::Message() << each.path);
    EXPECT_EQ(parts.GetPrefix(), each.prefix);
    EXPECT_EQ(parts.GetDrive(), each.drive);
    if (each.path != L"\\\\?x") {
      EXPECT_EQ(parts.GetDirectory(), each.directory);
      EXPECT_EQ(parts.GetFileName(), each.name);
    }
    EXPECT_EQ(parts.GetExtension(), each.extension);
  }
  EXPECT_EQ(CZipPathComponent(L"C:/dir/file.zol").GetFullPath(), L"C:/dir\\file.zol");
}

TEST(File, OpensByItsFlags) {
  TempDir dir;
  const std::wstring path = dir.wide("a");
  CZipFile file;
  EXPECT_FALSE(file.Open(path, CZipFile::modeReadWrite | CZipFile::modeNoTruncate, false));
  EXPECT_EQ(cause_of([&] { file.Open(path, CZipFile::modeRead, true); }), 2);
  ASSERT_TRUE(file.Open(path, 0x27, true));
  file.Write("0123456789", 10);
  EXPECT_EQ(file.GetLength(), 10u);
  EXPECT_EQ(file.Seek(-3, CZipFile::end), 7u);
  EXPECT_EQ(file.Seek(-2, CZipFile::current), 5u);
  char digits[10];
  EXPECT_EQ(file.Read(digits, 10), 5u);
  EXPECT_EQ(file.Read(digits, 10), 0u);
  EXPECT_EQ(cause_of([&] { file.Seek(-1, CZipFile::begin); }), 22);
  file.SetLength(4);
  file.Flush();
  file.Close();
  EXPECT_TRUE(file.IsClosed());
  EXPECT_TRUE(file.GetFilePath().empty());
  file.Close();

  ASSERT_TRUE(file.Open(path, 0x45, true));
  EXPECT_EQ(file.GetFilePath(), path);
  EXPECT_EQ(cause_of([&] { file.Write("x", 1); }), 9);
  CZipFile other;
  EXPECT_FALSE(other.Open(path, 0x47, false));
  EXPECT_TRUE(other.Open(path, 0x11, false));
  file.Close();
  ASSERT_TRUE(file.Open(path, CZipFile::modeWrite, true));
  EXPECT_EQ(file.GetLength(), 0u);
}

// An offset from 2^63 on counts back from the end.
TEST(Storage, SeeksPastWhatIsInFront) {
  MemoryFile file("stub0123456789");
  CZipStorage storage;
  storage.Open(file, CZipOpenMode::openOrCreate);
  storage.SetBytesBeforeArchive(4);
  char digit = 0;
  storage.Seek(2);
  storage.Read(&digit, 1);
  EXPECT_EQ(digit, '2');
  EXPECT_EQ(storage.GetPosition(), 3u);
  storage.Seek(~std::uint64_t{0} - 2);
  storage.Read(&digit, 1);
  EXPECT_EQ(digit, '7');
  EXPECT_EQ(cause_of([&] { storage.Read(&digit, 0); }), 0);
  storage.Seek(0, CZipAbstractFile::end);
  EXPECT_EQ(cause_of([&] { storage.Read(&digit, 1); }), 101);
}

}  // namespace
