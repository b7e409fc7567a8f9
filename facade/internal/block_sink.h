// A stream buffer that hands a document on in large blocks.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <streambuf>

namespace zol_v2::internal {

class BlockSink : public std::streambuf {
 public:
  // Takes a block; false if it could not, and then it is not asked again. It must not throw: a
  // stream would swallow that.
  using Target = std::function<bool(const char* bytes, std::uint32_t size)>;

  explicit BlockSink(Target target);

  // Hands on the rest. False if anything was refused, now or before.
  bool finish();

 protected:
  int_type overflow(int_type byte) override;

 private:
  // As large as the blocks in which an archive takes a file.
  static constexpr std::uint32_t k_block_size = 0x10000;

  Target target_;
  std::unique_ptr<char[]> block_;
  bool failed_ = false;
};

}  // namespace zol_v2::internal
