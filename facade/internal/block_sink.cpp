#include "facade/internal/block_sink.h"

#include <utility>

namespace zol_v2::internal {

BlockSink::BlockSink(Target target) : target_(std::move(target)), block_(new char[k_block_size]) {
  setp(block_.get(), block_.get() + k_block_size);
}

bool BlockSink::finish() {
  const auto size = static_cast<std::uint32_t>(pptr() - pbase());
  if (!failed_ && size != 0) failed_ = !target_(pbase(), size);
  setp(pbase(), epptr());
  return !failed_;
}

BlockSink::int_type BlockSink::overflow(int_type byte) {
  if (!finish()) return traits_type::eof();
  if (traits_type::eq_int_type(byte, traits_type::eof())) return traits_type::not_eof(byte);
  return sputc(traits_type::to_char_type(byte));
}

}  // namespace zol_v2::internal
