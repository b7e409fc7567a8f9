// Work on one thing after the other by several threads, whose results come in the order of the
// things.
#pragma once

#include <condition_variable>
#include <cstddef>
#include <exception>
#include <mutex>
#include <optional>
#include <thread>
#include <vector>

#include "tools/terminal.h"

// `next(&thing)` gives the things until it is false, and is never asked twice at once;
// `work(thing)` runs on the threads; `take(result)` runs on the calling one. No more results wait
// than a few a thread, however long one of them takes. What work throws is thrown here, in its
// turn.
template <class Thing, class Result, class Next, class Work, class Take>
void run_in_order(unsigned threads, const Next& next, const Work& work, const Take& take) {
  if (threads <= 1) {
    for (Thing thing; next(&thing);) take(work(thing));
    return;
  }
  struct Slot {
    std::optional<Result> result;
    std::exception_ptr exception;
  };
  constexpr std::size_t k_waiting = 8;
  std::vector<Slot> slots(threads * k_waiting);
  std::mutex mutex;
  std::condition_variable has_room;   // for the threads
  std::condition_variable has_first;  // for this one: the result whose turn it is
  std::size_t given = 0;
  std::size_t taken = 0;
  bool is_over = false;  // nothing more is given

  const auto run = [&] {
    leave_signals_to_others();
    std::unique_lock<std::mutex> lock(mutex);
    while (true) {
      has_room.wait(lock, [&] { return is_over || given - taken < slots.size(); });
      Thing thing;
      try {
        if (is_over || !next(&thing)) break;
      } catch (...) {
        slots[given++ % slots.size()].exception = std::current_exception();
        break;
      }
      const std::size_t number = given++;
      lock.unlock();
      Slot slot;
      try {
        slot.result.emplace(work(thing));
      } catch (...) {
        slot.exception = std::current_exception();
      }
      lock.lock();
      slots[number % slots.size()] = std::move(slot);
      if (number == taken) has_first.notify_one();
    }
    is_over = true;
    has_room.notify_all();
    has_first.notify_one();
  };
  std::vector<std::thread> pool;
  // Whoever leaves, also by an exception, waits for the threads.
  struct Joiner {
    std::mutex& mutex;
    std::condition_variable& has_room;
    bool& is_over;
    std::vector<std::thread>& pool;
    ~Joiner() {
      {
        const std::lock_guard<std::mutex> lock(mutex);
        is_over = true;
      }
      has_room.notify_all();
      for (std::thread& thread : pool) thread.join();
    }
  } joiner{mutex, has_room, is_over, pool};
  for (unsigned i = 0; i < threads; ++i) pool.emplace_back(run);

  std::unique_lock<std::mutex> lock(mutex);
  while (true) {
    Slot& slot = slots[taken % slots.size()];
    has_first.wait(lock, [&] {
      return slot.result || slot.exception != nullptr || (is_over && taken == given);
    });
    if (!slot.result && slot.exception == nullptr) return;
    const Slot done = std::move(slot);
    slot = {};
    lock.unlock();
    if (done.exception != nullptr) std::rethrow_exception(done.exception);
    take(*done.result);
    lock.lock();
    // Whoever waits for room is woken when there is some for several.
    if (given - ++taken <= slots.size() / 2) has_room.notify_all();
  }
}
