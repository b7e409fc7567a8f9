// The safe save and open while every allocation and every system call fails in turn, once and for
// good: the code is one that is documented, an older file is whole, and nothing is left behind.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "facade/files.h"
#include "model/Zol.h"
#include "support/failing_calls.h"
#include "support/failing_memory.h"
#include "support/files.h"

namespace {

using namespace zol_test;
using zol_v2::LoadReport;
using zol_v2::openFile;
using zol_v2::saveFile;
using zol_v2::SaveReport;
using zol_v2::Zol;
using Names = std::vector<std::string>;

constexpr int k_file_error = lmx::elmx_no_file;
constexpr int k_memory_error = lmx::elmx_user_defined_1;

// Larger than a block of any buffer on its way.
Zol made() {
  Zol document;
  EXPECT_EQ(document.unmarshal(ZOL_SOURCE_DIR "/examples/documents/named-colours.zol"),
            lmx::elmx_ok);
  return document;
}

class Failure : public testing::TestWithParam<const char*> {
 protected:
  Failure() : path_(dir_.wide(name())), document_(made()) {
    // The stamp and whatever the libraries keep is there before anything is counted.
    EXPECT_EQ(saveFile(document_, path_), lmx::elmx_ok);
    EXPECT_EQ(openFile(document_, path_), lmx::elmx_ok);
    EXPECT_EQ(saveFile(document_, path_), lmx::elmx_ok);
    newer_size_ = read_file(dir_.file(name())).size();
    open_files_ = count_open_files();
  }

  std::string name() const { return GetParam(); }

  void put_older() { write_file(dir_.file(name()), "older"); }

  // After a save that gave `code` while something failed. A file whose removal failed stays.
  void check_directory(int code, bool had_older) {
    Names names = dir_.names();
    if (count_failed_calls("unlinkat") != 0 && !names.empty() && names[0].rfind(".zol-", 0) == 0) {
      ASSERT_EQ(run({"rm", dir_.file(names[0])}).status, 0);
      names.erase(names.begin());
    }
    ASSERT_EQ(names, had_older || code == 0 ? Names{name()} : Names());
    if (code == 0) {
      ASSERT_EQ(read_file(dir_.file(name())).size(), newer_size_);
    } else if (had_older) {
      ASSERT_EQ(read_file(dir_.file(name())), "older");
    }
    ASSERT_EQ(count_open_files(), open_files_);
  }

  TempDir dir_;
  std::wstring path_;
  Zol document_;
  std::size_t newer_size_ = 0;
  std::size_t open_files_ = 0;
};

TEST_P(Failure, OfASystemCallInSaveFile) {
  for (const bool had_older : {true, false}) {
    for (const bool for_good : {false, true}) {
      for (unsigned number = 1; number != 0; ++number) {
        SCOPED_TRACE(testing::Message() << number << (for_good ? " for good" : " once"));
        ASSERT_EQ(run({"rm", "-f", dir_.file(name())}).status, 0);
        if (had_older) put_older();
        SaveReport report;
        fail_call({number, for_good});
        const int code = saveFile(document_, path_, &report);
        const unsigned calls = end_failing_calls();
        ASSERT_TRUE(code == 0 || code == k_file_error) << code;
        ASSERT_EQ(report.message.empty(), code == 0 && report.is_durable) << report.message;
        check_directory(code, had_older);
        if (HasFatalFailure()) return;
        if (calls < number) {
          ASSERT_EQ(code, 0);
          EXPECT_GT(number, 10u);
          break;
        }
      }
    }
  }
}

TEST_P(Failure, OfASystemCallInOpenFile) {
  for (const bool for_good : {false, true}) {
    for (unsigned number = 1; number != 0; ++number) {
      SCOPED_TRACE(testing::Message() << number << (for_good ? " for good" : " once"));
      LoadReport report;
      Zol other;
      fail_call({number, for_good});
      const int code = openFile(other, path_, &report);
      const unsigned calls = end_failing_calls();
      ASSERT_TRUE(code == 0 || code == k_file_error) << code << " " << report.message;
      ASSERT_EQ(report.message.empty(), code == 0) << report.message;
      ASSERT_EQ(other.size_Palette(), code == 0 ? document_.size_Palette() : 0);
      ASSERT_EQ(count_open_files(), open_files_);
      if (calls < number) {
        ASSERT_EQ(code, 0);
        EXPECT_GT(number, 4u);
        break;
      }
    }
  }
}

// One allocation in so many, since each save syncs the disk, and a block of output takes no memory.
constexpr unsigned k_first_allocations = 200;

TEST_P(Failure, OfAnAllocationInSaveFile) {
  for (const bool for_good : {false, true}) {
    for (unsigned number = 1, step = 1; number != 0; number += step) {
      SCOPED_TRACE(testing::Message() << number << (for_good ? " for good" : " once"));
      put_older();
      const std::ptrdiff_t blocks = count_blocks();
      int code = 0;
      {
        SaveReport report;
        fail_allocation(number, for_good);
        code = saveFile(document_, path_, &report);
      }
      const bool is_over = count_allocations() < number;
      fail_allocation(0);
      ASSERT_EQ(code, is_over ? 0 : k_memory_error);
      check_directory(code, true);
      if (HasFatalFailure()) return;
      // What the stamp was about to replace may be gone, and comes back with the next one.
      if (code != 0) {
        ASSERT_EQ(saveFile(document_, path_), lmx::elmx_ok);
      }
      ASSERT_EQ(count_blocks(), blocks);
      if (is_over) break;
      if (number > k_first_allocations) step = 97;
    }
  }
}

TEST_P(Failure, OfAnAllocationInOpenFile) {
  for (const bool for_good : {false, true}) {
    for (unsigned number = 1, step = 1; number != 0; number += step) {
      SCOPED_TRACE(testing::Message() << number << (for_good ? " for good" : " once"));
      const std::ptrdiff_t blocks = count_blocks();
      int code = 0;
      std::size_t size = 0;
      {
        Zol other;
        LoadReport report;
        fail_allocation(number, for_good);
        code = openFile(other, path_, &report);
        size = other.size_Palette();
      }
      const bool is_over = count_allocations() < number;
      fail_allocation(0);
      // A large block is a favour that is done without.
      ASSERT_TRUE(code == 0 || (code == k_memory_error && !is_over)) << code;
      ASSERT_EQ(size, code == 0 ? document_.size_Palette() : 0);
      ASSERT_EQ(count_open_files(), open_files_);
      ASSERT_EQ(count_blocks(), blocks);
      if (is_over) break;
      if (number > k_first_allocations) step = 97;
    }
  }
}

// A signal breaks calls off, and nobody may notice.
TEST_P(Failure, OfAnInterruptedCallIsNone) {
  for (const char* call : {"open", "openat", "read", "write", "fsync", "ftruncate"}) {
    for (unsigned number = 1; number <= 8; ++number) {
      SCOPED_TRACE(testing::Message() << call << number);
      SaveReport saved;
      fail_call({number, false, EINTR, call});
      const int save_code = saveFile(document_, path_, &saved);
      Zol other;
      const int open_code = openFile(other, path_);
      end_failing_calls();
      EXPECT_EQ(save_code, 0) << saved.message;
      EXPECT_TRUE(saved.is_durable);
      EXPECT_EQ(open_code, 0);
      check_directory(0, true);
    }
  }
}

struct CommitCase {
  const char* what;
  CallFault fault;
  int code;
  bool is_durable;
  bool is_overwritten;
};

TEST_P(Failure, WhenTheFileTakesItsPlace) {
  const CommitCase cases[] = {
      {"the file can't be synced", {1, false, EIO, "fsync"}, 1, true, false},
      {"no name can be given", {1, true, EPERM, "linkat"}, 1, true, false},
      {"it can't be renamed", {1, true, EIO, "renameat"}, 1, true, false},
      {"its directory can't be synced", {2, true, EIO, "fsync"}, 0, false, false},
      {"it stands on a mount of its own", {1, true, EBUSY, "renameat"}, 0, true, true},
  };
  for (const CommitCase& each : cases) {
    SCOPED_TRACE(each.what);
    if (each.fault.call == std::string("linkat") && !dir_.takes_nameless_files()) continue;
    put_older();
    SaveReport report;
    fail_call(each.fault);
    const int code = saveFile(document_, path_, &report);
    end_failing_calls();
    EXPECT_EQ(code, each.code) << report.message;
    EXPECT_EQ(report.code, code);
    EXPECT_EQ(report.is_durable, each.is_durable);
    EXPECT_EQ(report.is_overwritten, each.is_overwritten);
    EXPECT_FALSE(report.message.empty());
    check_directory(code, true);
  }
}

INSTANTIATE_TEST_SUITE_P(, Failure, testing::Values("x.zol", "x.zolz"),
                         [](const auto& info) { return std::string(info.param).substr(2); });

}  // namespace
