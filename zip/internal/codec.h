// One run of a compression library, as the driver sees it.
#pragma once

#include <cstddef>
#include <cstdint>

namespace ZipArchiveLib::internal {

// The bytes that a codec may read and the room that it may fill. Pointers move with the counts.
struct Window {
  const char* in = nullptr;
  std::uint32_t in_left = 0;
  char* out = nullptr;
  std::uint32_t out_left = 0;
};

class Codec {
 public:
  enum class Step { run, finish };

  virtual ~Codec() = default;
  // One call of the library; its result code.
  virtual int step(Window& window, Step what) = 0;
  // The code with which `step` reports the end of the stream.
  virtual int end_code() const = 0;
  // The code for a call that got nowhere. The libraries have their own opinion of when that is an
  // error; for the driver it always is.
  virtual int stuck_code() const = 0;
  // Reads a stream that is at hand whole, with room for exactly its bytes, if there is a quicker
  // way than by steps. False, with the room in any state, unless everything is in order, the
  // checksum too; the steps then say what is wrong.
  virtual bool read_whole(const Window& window, std::uint32_t crc) {
    (void)window;
    (void)crc;
    return false;
  }
  // Whether it is worth while to have the stream at hand.
  virtual bool reads_whole() const { return false; }
  // The library's own clean-up, once; its result code. The destructor cleans up in any case.
  virtual int end() = 0;
};

// The memory that a library obtained. While guarded the blocks are kept in a list, so that they can
// be freed without the library. One that is refused gives the library a null pointer, which it
// reports by its code; no exception may pass through it.
class LibraryMemory {
 public:
  explicit LibraryMemory(bool guarded) : guarded_(guarded) {}
  LibraryMemory(const LibraryMemory&) = delete;
  LibraryMemory& operator=(const LibraryMemory&) = delete;
  ~LibraryMemory() { free_all(); }

  bool is_guarded() const { return guarded_; }
  // What to hand to `allocate` and `release` through the library.
  void* opaque() { return guarded_ ? this : nullptr; }
  static void* allocate(void* opaque, std::size_t count, std::size_t size) noexcept;
  static void release(void* opaque, void* block) noexcept;
  void free_all() noexcept;

 private:
  // In front of each block.
  struct alignas(std::max_align_t) Node {
    Node* previous;
    Node* next;
  };

  const bool guarded_;
  Node* first_ = nullptr;
};

}  // namespace ZipArchiveLib::internal
