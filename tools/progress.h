// A sign of life for people who wait.
#pragma once

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <string>
#include <thread>

// While the object lives, and from its second second on, a line on the terminal says what goes on
// and for how long. It is gone when the object dies; nobody else may print meanwhile. Where
// standard error is no terminal nothing happens.
class Progress {
 public:
  explicit Progress(const std::string& activity);
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;
  ~Progress();

 private:
  void run();

  std::string activity_;
  std::chrono::steady_clock::time_point begin_;
  bool is_over_ = false;
  std::mutex mutex_;
  std::condition_variable over_;
  std::thread thread_;
};
