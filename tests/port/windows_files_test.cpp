// Files as Windows has them: long paths, other programs at work on them, replacement, and texts
// from its allocator.
#include <gtest/gtest.h>

#include <cerrno>
#include <cstdlib>

#include "port/files.h"
#include "port/internal/windows_calls.h"
#include "port/replacement_file.h"
#include "port/returned_text.h"
#include "port/wide_text.h"
#include "support/files.h"

#include <oleauto.h>

namespace {

using namespace zol::port;
using zol_test::TempDir;
using Names = std::vector<std::string>;
using Outcome = ReplacementFile::Outcome;

constexpr DWORD k_share_all = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;

// A file in the hands of another program.
class Holder {
 public:
  Holder(const std::wstring& path, DWORD access, DWORD share)
      : file_(CreateFileW(path.c_str(), access, share, nullptr, OPEN_EXISTING, 0, nullptr)) {
    EXPECT_NE(file_, INVALID_HANDLE_VALUE);
  }
  Holder(const Holder&) = delete;
  Holder& operator=(const Holder&) = delete;
  ~Holder() { CloseHandle(file_); }

  std::string read() const {
    char bytes[100];
    DWORD count = 0;
    EXPECT_TRUE(ReadFile(file_, bytes, sizeof bytes, &count, nullptr));
    return std::string(bytes, count);
  }

 private:
  HANDLE file_;
};

Outcome replace(const std::wstring& path, const std::string& bytes) {
  ReplacementFile file(path);
  EXPECT_TRUE(file.is_open()) << errno;
  EXPECT_TRUE(write_handle(file.handle(), bytes.data(), bytes.size()));
  return file.commit();
}

bool is_refused(const std::wstring& path, int error) {
  errno = 0;
  const ReplacementFile file(path);
  EXPECT_EQ(errno, error);
  return !file.is_open();
}

// --- Paths --------------------------------------------------------------------------------------

TEST(WindowsPaths, AreGivenFromTheirRootOnlyWhereTheyAreLong) {
  const std::wstring longer(300, L'x');
  struct Case {
    std::wstring path;
    std::wstring expected;
  };
  for (const Case& each : {
           Case{L"a.zol", L"a.zol"},
           Case{L"C:/a/b.zol", L"C:/a/b.zol"},
           Case{L"\\\\server\\share\\a.zol", L"\\\\server\\share\\a.zol"},
           Case{L"C:\\a/" + longer, L"\\\\?\\C:\\a\\" + longer},
           Case{L"C:/a/./b/../" + longer, L"\\\\?\\C:\\a\\" + longer},
           Case{L"//server/share/" + longer, L"\\\\?\\UNC\\server\\share\\" + longer},
           Case{L"\\\\?\\C:\\a\\" + longer, L"\\\\?\\C:\\a\\" + longer},
           Case{L"\\\\.\\pipe\\" + longer, L"\\\\.\\pipe\\" + longer},
       }) {
    EXPECT_TRUE(internal::system_path(each.path) == each.expected) << to_utf8(each.path);
  }
  const std::wstring relative = internal::system_path(longer);
  EXPECT_TRUE(relative.rfind(L"\\\\?\\", 0) == 0);
  EXPECT_TRUE(relative.substr(relative.size() - 301) == L"\\" + longer);
}

TEST(WindowsPaths, MayBeLong) {
  TempDir dir;
  const std::wstring root = dir.wide("");
  std::wstring directory = L"\\\\?\\" + split_path(root).drive;
  for (const wchar_t c : split_path(root).directory) directory += c == L'/' ? L'\\' : c;
  for (int i = 0; i < 4; ++i) {
    directory += std::wstring(100, static_cast<wchar_t>(L'a' + i));
    ASSERT_TRUE(CreateDirectoryW(directory.c_str(), nullptr));
    directory += L'\\';
  }
  const std::wstring plain = directory.substr(4);
  const std::wstring paths[] = {plain + L"Gr\u00f6\u00dfe.zol", directory + L"b.zol"};
  for (const std::wstring& path : paths) {
    EXPECT_EQ(replace(path, "new"), Outcome::replaced);
    EXPECT_EQ(replace(path, "newer"), Outcome::replaced);
    std::FILE* const file = open_file(path, "rb");
    ASSERT_NE(file, nullptr);
    char bytes[10];
    EXPECT_EQ(read_file(file, bytes, sizeof bytes), 5u);
    std::fclose(file);
    std::time_t time = 0;
    std::uint32_t attributes = 0;
    EXPECT_TRUE(set_modification_time(path, 1'000'000'001));
    EXPECT_TRUE(get_modification_time(path, time));
    EXPECT_EQ(time, 1'000'000'001);
    EXPECT_TRUE(set_attributes(path, k_attribute_archive));
    EXPECT_TRUE(get_attributes(path, attributes));
    EXPECT_EQ(attributes, k_attribute_archive);
    EXPECT_TRUE(rename_file(path, plain + L"c.zol"));
    EXPECT_TRUE(remove_file(plain + L"c.zol"));
  }
  for (directory.pop_back(); directory.size() > root.size() + 4;
       directory.resize(directory.rfind(L'\\'))) {
    EXPECT_TRUE(RemoveDirectoryW(directory.c_str())) << "a file was left behind";
  }
}

TEST(WindowsPaths, ThatNameNothingSayWhy) {
  TempDir dir;
  struct Case {
    std::wstring path;
    int error;
  };
  for (const Case& each :
       {Case{dir.wide("missing"), ENOENT}, Case{dir.wide("no/such"), ENOENT},
        Case{dir.wide("a?b"), ENOENT}, Case{dir.wide("."), EISDIR}, Case{L"", ENOENT}}) {
    errno = 0;
    EXPECT_EQ(open_handle(each.path, {}), k_no_file);
    EXPECT_EQ(errno, each.error) << to_utf8(each.path);
  }
}

// --- Other programs ---------------------------------------------------------------------------

TEST(WindowsFiles, InTheHandsOfOthers) {
  TempDir dir;
  zol_test::write_file(dir.file("a"), "older");
  const std::wstring path = dir.wide("a");
  const OpenOptions writes = {Access::write};
  {
    const Holder alone(path, GENERIC_READ, 0);
    EXPECT_EQ(open_file(path, "rb"), nullptr);
    EXPECT_EQ(errno, EACCES);
    EXPECT_TRUE(is_refused(path, EACCES));
  }
  {
    const Holder reader(path, GENERIC_READ, FILE_SHARE_READ);
    EXPECT_EQ(open_handle(path, writes), k_no_file);
    EXPECT_EQ(errno, EACCES);
    EXPECT_TRUE(is_refused(path, EACCES)) << "before anything is written";
  }
  EXPECT_EQ(dir.names(), Names{"a"});
  EXPECT_EQ(zol_test::read_file(dir.file("a")), "older");
  {
    // Whoever reads in the way of this library does not stand in the way of a save.
    const FileHandle ours = open_handle(path, {});
    const Holder theirs(path, GENERIC_READ, k_share_all);
    EXPECT_EQ(replace(path, "newer"), Outcome::replaced);
    EXPECT_EQ(theirs.read(), "older");
    char bytes[10];
    EXPECT_EQ(read_handle(ours, bytes, sizeof bytes), 5u);
    EXPECT_EQ(std::string(bytes, 5), "older");
    close_handle(ours);
  }
  EXPECT_EQ(zol_test::read_file(dir.file("a")), "newer");
  EXPECT_EQ(dir.names(), Names{"a"});
}

// --- Replacement --------------------------------------------------------------------------------

TEST(WindowsReplacement, IsCompleteOrNothing) {
  TempDir dir;
  zol_test::write_file(dir.file("a"), "older");
  {
    ReplacementFile file(dir.wide("a"));
    ASSERT_TRUE(file.is_open());
    EXPECT_TRUE(write_handle(file.handle(), "half", 4));
    EXPECT_EQ(dir.names().size(), 2u);
    for (const std::string& name : dir.names()) {
      if (name == "a") continue;
      EXPECT_EQ(open_handle(dir.wide(name), {}), k_no_file) << "others stay out";
    }
  }
  EXPECT_EQ(dir.names(), Names{"a"});
  EXPECT_EQ(zol_test::read_file(dir.file("a")), "older");
  EXPECT_EQ(replace(dir.wide("a"), "newer"), Outcome::replaced);
  EXPECT_EQ(replace(dir.wide("b"), "first"), Outcome::replaced);
  EXPECT_EQ(dir.names(), (Names{"a", "b"}));
  EXPECT_EQ(zol_test::read_file(dir.file("a")) + zol_test::read_file(dir.file("b")), "newerfirst");
}

TEST(WindowsReplacement, RefusesWhatIsProtected) {
  TempDir dir;
  zol_test::write_file(dir.file("a"), "older");
  zol_test::make_directory(dir.file("d"));
  ASSERT_TRUE(set_attributes(dir.wide("a"), k_attribute_read_only));
  EXPECT_TRUE(is_refused(dir.wide("a"), EACCES));
  EXPECT_TRUE(is_refused(dir.wide("d"), EISDIR));
  EXPECT_TRUE(is_refused(dir.wide("no/such"), ENOENT));
  EXPECT_TRUE(is_refused(dir.wide("a") + std::wstring(L"\0", 1), EINVAL));
  EXPECT_EQ(zol_test::read_file(dir.file("a")), "older");
  ASSERT_TRUE(set_attributes(dir.wide("a"), k_attribute_archive));
}

TEST(WindowsReplacement, KeepsAttributes) {
  TempDir dir;
  zol_test::write_file(dir.file("a"), "older");
  constexpr std::uint32_t k_hidden = k_attribute_hidden | k_attribute_archive;
  ASSERT_TRUE(set_attributes(dir.wide("a"), k_hidden));
  EXPECT_EQ(replace(dir.wide("a"), "newer"), Outcome::replaced);
  std::uint32_t attributes = 0;
  EXPECT_TRUE(get_attributes(dir.wide("a"), attributes));
  EXPECT_EQ(attributes, k_hidden);
}

// The working file goes with the process, however that ends.
TEST(WindowsReplacement, LeavesNothingInADirectoryWhenItsProcessEnds) {
  constexpr char k_variable[] = "ZOL_TEST_DIRECTORY";
  TempDir dir;
  // The test runs a second time in the process that dies.
  if (std::getenv(k_variable) == nullptr) {
    _putenv((std::string(k_variable) + "=" + dir.path()).c_str());
  }
  const std::string path = std::string(std::getenv(k_variable)) + "/a";
  testing::GTEST_FLAG(death_test_style) = "threadsafe";
  EXPECT_EXIT(
      {
        const ReplacementFile file(std::wstring(path.begin(), path.end()));
        TerminateProcess(GetCurrentProcess(), file.is_open() ? 7 : 1);
      },
      testing::ExitedWithCode(7), "");
  _putenv((std::string(k_variable) + "=").c_str());
  EXPECT_EQ(dir.names(), Names{});
}

// --- Texts --------------------------------------------------------------------------------------

TEST(WindowsTexts, ComeFromTheAllocatorThatTheirClientsFreeThemWith) {
  for (const std::wstring& text : {std::wstring(L""), std::wstring(L"Gr\u00f6\u00dfe"),
                                   std::wstring(L"a\0b", 3), std::wstring(100'000, L'x')}) {
    char16_t* const given = give_wide(text);
    const BSTR string = reinterpret_cast<BSTR>(given);
    EXPECT_EQ(SysStringLen(string), text.size());
    EXPECT_EQ(given_bytes(given), 2 * text.size());
    EXPECT_TRUE(std::wstring(string, SysStringLen(string)) == text);
    EXPECT_EQ(string[text.size()], L'\0');
    SysFreeString(string);
  }
  char* const narrow = give_narrow(std::string("\xC3\xB6\0", 3));
  EXPECT_EQ(SysStringByteLen(reinterpret_cast<BSTR>(narrow)), 3u);
  free_given(narrow);
  free_given(nullptr);
  EXPECT_EQ(given_bytes(nullptr), 0u);
}

}  // namespace
