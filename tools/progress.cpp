#include "tools/progress.h"

#include <cstdio>
#include <utility>

#include "tools/terminal.h"
#include "tools/text.h"

Progress::Progress(const std::string& activity)
    : activity_(one_line(activity)), begin_(std::chrono::steady_clock::now()) {
  if (is_terminal(stderr)) thread_ = std::thread(&Progress::run, this);
}

Progress::~Progress() {
  if (!thread_.joinable()) return;
  {
    const std::lock_guard<std::mutex> lock(mutex_);
    is_over_ = true;
  }
  over_.notify_one();
  thread_.join();
}

std::unique_lock<std::mutex> Progress::step() {
  std::unique_lock<std::mutex> lock = silence();
  ++files_;
  return lock;
}

std::unique_lock<std::mutex> Progress::silence() {
  std::unique_lock<std::mutex> lock(mutex_);
  if (is_shown_) std::fputs("\r\x1B[K", stderr);
  is_shown_ = false;
  return lock;
}

void Progress::run() {
  leave_signals_to_others();
  std::unique_lock<std::mutex> lock(mutex_);
  int seconds = 0;
  while (!over_.wait_until(lock, begin_ + std::chrono::seconds(seconds + 1),
                           [this] { return is_over_; })) {
    ++seconds;
    const std::string files = files_ == 0 ? "" : ", " + counted(files_, "file", "files");
    std::fprintf(stderr, "\r\x1B[K%s%s ... %d s", activity_.c_str(), files.c_str(), seconds);
    std::fflush(stderr);
    is_shown_ = true;
  }
  if (is_shown_) std::fputs("\r\x1B[K", stderr);
}
