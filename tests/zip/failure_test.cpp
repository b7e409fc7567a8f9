// Storage and memory that fail at every call in turn, and real failures of the system.
#include <gtest/gtest.h>

#include <new>

#if !defined(_WIN32)
#include <sys/mount.h>
#include <sys/resource.h>
#include <unistd.h>

#include <csignal>
#endif

#include "support/failing_memory.h"
#include "support/files.h"
#include "zip/archives.h"

namespace {

using namespace zol_test;

// Descriptors that a test leaves open are a failure of it.
class Failure : public testing::Test {
 protected:
  Failure() : open_files_(count_open_files()) {}
  ~Failure() override { EXPECT_EQ(count_open_files(), open_files_); }

 private:
  std::size_t open_files_;
};

void write_archive(CZipArchive& archive, const std::wstring& source, std::uint16_t method) {
  archive.SetCompressionMethod(method);
  if (!archive.AddFile(source)) throw CZipException(CZipException::generic);
  archive.Close();
}

TEST_F(Failure, OfTheFileWhileWriting) {
  TempDir dir;
  write_file(dir.file("a.zol"), noise(300'000));
  for (const std::uint16_t method : {8, 12}) {
    unsigned fail_at = 0;
    std::int32_t cause = -1;
    while (cause != 0) {
      MemoryFile file;
      file.fail_at = ++fail_at;
      CZipArchive archive;
      cause = cause_of([&] {
        archive.Open(file, CZipArchive::modeCreate);
        write_archive(archive, dir.wide("a.zol"), method);
      });
      EXPECT_TRUE(cause == 0 || cause == 5) << cause;
      archive.Close(CZipArchive::closeAfterException);
      EXPECT_TRUE(archive.IsClosed());
    }
    EXPECT_GT(fail_at, 10u);
  }
}

TEST_F(Failure, OfTheFileWhileReading) {
  const std::string data = noise(300'000);
  for (const RawEntry& entry : {stored(data), deflated(data), bzipped(data)}) {
    for (const bool is_short : {false, true}) {
      unsigned fail_at = 0;
      std::int32_t cause = -1;
      while (cause != 0) {
        MemoryFile file(RawArchive{{entry}, {}, "", ""}.bytes());
        file.fail_at = ++fail_at;
        file.fails_short = is_short;
        CZipArchive archive;
        ReadResult result;
        cause = cause_of([&] {
          archive.Open(file, CZipArchive::modeReadOnly);
          result = read_entry(archive);
        });
        if (cause == 0) cause = result.cause;
        // A seek that silently does nothing may be made good by luck, or show up as anything.
        if (!is_short) {
          EXPECT_TRUE(cause == 0 || cause == 5) << cause;
        }
        const bool failed = file.calls >= fail_at;
        if (!failed) {
          EXPECT_TRUE(cause == 0 && result.data == data) << cause;
        } else if (cause == 0) {
          cause = -1;
        }
      }
      EXPECT_GT(fail_at, 8u);
    }
  }
}

template <class Call>
void with_each_allocation_failing(Call call) {
  unsigned fail_at = 0;
  bool done = false;
  while (!done) {
    fail_allocation(++fail_at);
    std::int32_t cause = 0;
    try {
      call();
    } catch (const std::bad_alloc&) {
      cause = -1;
    } catch (const CZipException& exception) {
      cause = exception.GetCause();
    }
    done = count_allocations() < fail_at;
    fail_allocation(0);
    if (done) {
      ASSERT_EQ(cause, 0);
    }
    ASSERT_TRUE(cause == 0 || cause == -1 || cause == 505 || cause == 602) << cause;
    ASSERT_LT(fail_at, 10'000u);
  }
  EXPECT_GT(fail_at, 10u);
}

TEST_F(Failure, OfMemory) {
  TempDir dir;
  write_file(dir.file("a.zol"), noise(100'000));
  const std::wstring source = dir.wide("a.zol");
  const std::wstring path = dir.wide("a.zip");
  for (const std::uint16_t method : {8, 12}) {
    with_each_allocation_failing([&] {
      CZipArchive archive;
      archive.Open(path, CZipArchive::modeCreate);
      write_archive(archive, source, method);
    });
    with_each_allocation_failing([&] {
      CZipArchive archive;
      archive.Open(path, CZipArchive::modeReadOnly);
      CZipAutoBuffer buffer(archive.EntryAt(0)->uncompressed_size);
      archive.OpenEntry(0);
      archive.ReadEntry(buffer, buffer.GetSize());
      archive.CloseEntry();
      archive.Close();
    });
  }
}

#if !defined(_WIN32)

TEST_F(Failure, AtAFileSizeLimit) {
  TempDir dir;
  write_file(dir.file("a.zol"), noise(400'000));
  const auto old_handler = std::signal(SIGXFSZ, SIG_IGN);
  rlimit old_limit = {};
  ::getrlimit(RLIMIT_FSIZE, &old_limit);
  for (const rlim_t limit : {0, 10, 65'536, 200'000, 400'000}) {
    rlimit small = old_limit;
    small.rlim_cur = limit;
    ::setrlimit(RLIMIT_FSIZE, &small);
    CZipArchive archive;
    const std::int32_t cause = cause_of([&] {
      archive.Open(dir.wide("a.zip"), CZipArchive::modeCreate);
      write_archive(archive, dir.wide("a.zol"), 8);
    });
    archive.Close(CZipArchive::closeAfterException);
    ::setrlimit(RLIMIT_FSIZE, &old_limit);
    EXPECT_EQ(cause, 27) << limit;
    EXPECT_EQ(read_file(dir.file("a.zip")).size(), limit);
  }
  std::signal(SIGXFSZ, old_handler);
}

TEST_F(Failure, OnAFullDisk) {
  TempDir dir;
  if (::mount("zol-test", dir.path().c_str(), "tmpfs", 0, "size=128k") != 0) {
    GTEST_SKIP() << "this needs the right to mount a small file system";
  }
  TempDir source;
  write_file(source.file("a.zol"), noise(400'000));
  {
    CZipArchive archive;
    EXPECT_EQ(cause_of([&] {
                archive.Open(dir.wide("a.zip"), CZipArchive::modeCreate);
                write_archive(archive, source.wide("a.zol"), 8);
              }),
              28);
  }
  ::mount("zol-test", dir.path().c_str(), "tmpfs", MS_REMOUNT | MS_RDONLY, "");
  CZipArchive archive;
  EXPECT_EQ(cause_of([&] { archive.Open(dir.wide("b.zip"), CZipArchive::modeCreate); }), 30);
  EXPECT_EQ(cause_of([&] { archive.Open(dir.wide("a.zip"), CZipArchive::modeOpen); }), 30);
  EXPECT_EQ(::umount(dir.path().c_str()), 0);
}

TEST_F(Failure, WithoutPermission) {
  TempDir dir;
  write_file(dir.file("a.zip"), RawArchive{{stored("colours")}, {}, "", ""}.bytes());
  write_file(dir.file("a.zol"), "colours");
  ASSERT_EQ(run({"chmod", "0000", dir.file("a.zip"), dir.file("a.zol")}).status, 0);
  ASSERT_EQ(run({"chmod", "0555", dir.path()}).status, 0);
  // The superuser may do anything, so for a moment we are nobody.
  const bool is_root = ::geteuid() == 0;
  ASSERT_EQ(is_root ? ::seteuid(65534) : 0, 0);
  MemoryFile file;
  CZipArchive archive;
  EXPECT_EQ(cause_of([&] { archive.Open(dir.wide("a.zip"), CZipArchive::modeReadOnly); }), 13);
  EXPECT_EQ(cause_of([&] { archive.Open(dir.wide("new.zip"), CZipArchive::modeCreate); }), 13);
  archive.Open(file, CZipArchive::modeCreate);
  EXPECT_FALSE(archive.AddFile(dir.wide("a.zol")));
  ASSERT_EQ(is_root ? ::seteuid(0) : 0, 0);
  ASSERT_EQ(run({"chmod", "0755", dir.path()}).status, 0);
}

// A claim of 4 GiB must not reserve, or even touch, what the data has not proved.
TEST_F(Failure, OfAHugeClaimCostsNothing) {
  RawEntry entry = deflated("ten bytes.");
  entry.size = 0xFFFFFFFE;
  const std::string bytes = RawArchive{{entry}, {}, "", ""}.bytes();
  rusage before = {};
  ::getrusage(RUSAGE_SELF, &before);
  MemoryFile file(bytes);
  CZipArchive archive;
  archive.Open(file, CZipArchive::modeReadOnly);
  EXPECT_FALSE(archive.CanHold(*archive.EntryAt(0)));
  try {
    CZipAutoBuffer buffer;
    buffer.Allocate(archive.EntryAt(0)->uncompressed_size, false);
    ASSERT_TRUE(archive.OpenEntry(0));
    EXPECT_EQ(archive.ReadEntry(buffer, buffer.GetSize()), 10u);
    EXPECT_EQ(archive.CloseEntry(), -1);
  } catch (const std::bad_alloc&) {
    // A system that does not lend memory says so.
  }
  rusage after = {};
  ::getrusage(RUSAGE_SELF, &after);
#if !defined(__SANITIZE_ADDRESS__)  // which marks each byte of a block that is freed
  EXPECT_LT(after.ru_maxrss - before.ru_maxrss, 64 * 1024);
#endif
}

#endif

}  // namespace
