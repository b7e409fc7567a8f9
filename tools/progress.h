// A sign of life for people who wait.
#pragma once

#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <mutex>
#include <string>
#include <thread>

// While the object lives, and from its second second on, a line on the terminal says what goes on
// for how long, and how many files are done. It is gone when the object dies; nobody else may print
// meanwhile, but with the leave of step() or silence(). Where standard error is no terminal nothing
// happens.
class Progress {
 public:
  explicit Progress(const std::string& activity);
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;
  ~Progress();

  // Another file is done, of which something may be printed as long as the result lives.
  std::unique_lock<std::mutex> step();
  // The line is gone and stays away as long as the result lives.
  std::unique_lock<std::mutex> silence();

 private:
  void run();

  std::string activity_;
  std::chrono::steady_clock::time_point begin_;
  bool is_over_ = false;
  bool is_shown_ = false;
  std::size_t files_ = 0;
  std::mutex mutex_;
  std::condition_variable over_;
  std::thread thread_;
};
