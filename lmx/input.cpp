#include "lmx/input.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <new>
#include <string_view>
#include <typeinfo>

#include "lmx/internal/runs.h"
#include "lmx/internal/transcode.h"
#include "port/files.h"

namespace lmx {

namespace {

// The piece in which a file is read as far as anybody can see; see c_read_file::rewind.
constexpr std::size_t k_piece = 512;
// Files that we opened ourselves are read in blocks of many pieces.
constexpr std::size_t k_own_block = 128 * k_piece;

constexpr int k_next_line = 133;
constexpr int k_line_separator = 8232;

// One unit after another, so that the name is only that: a pair of surrogates becomes two
// sequences.
std::string source_name(const wchar_t* path) {
  std::string result;
  char sequence[5];
  for (; *path != L'\0'; ++path) {
    result += unicode_char_to_utf8(static_cast<int>(*path), sequence);
  }
  return result;
}

}  // namespace

// The getter's place is known here and not where the tally lives.
void c_error::error(elmx_error_type type, elmx_error code, const char* text) {
  if (current_getter_ != nullptr) {
    error(type, code, current_getter_->get_source_id(), current_getter_->get_line_num(), text);
  } else {
    error(type, code, nullptr, -1, text);
  }
}

// --- Sources ----------------------------------------------------------------------------------

bool c_read::is_open() const { return true; }

const char* c_read::get_source_id() { return nullptr; }

c_read::~c_read() = default;

std::size_t c_read::read_block(const char** begin) {
  const int byte = read();
  if (byte < 0) return 0;
  single_ = static_cast<char>(byte);
  *begin = &single_;
  return 1;
}

void c_read::give_back(std::size_t) {}

bool c_read::read_whole(const char**, std::size_t*) { return false; }

int c_read_memory::read() { return at_ == end_ ? -1 : static_cast<unsigned char>(*at_++); }

void c_read_memory::rewind() { at_ = start_; }

std::size_t c_read_memory::read_block(const char** begin) {
  if (typeid(*this) != typeid(c_read_memory) && typeid(*this) != typeid(c_read_string)) {
    return c_read::read_block(begin);
  }
  *begin = at_;
  const std::size_t size = static_cast<std::size_t>(end_ - at_);
  at_ = end_;
  return size;
}

void c_read_memory::give_back(std::size_t count) {
  at_ -= std::min(count, static_cast<std::size_t>(at_ - start_));
}

bool c_read_memory::read_whole(const char** begin, std::size_t* size) {
  if (at_ != start_ ||
      (typeid(*this) != typeid(c_read_memory) && typeid(*this) != typeid(c_read_string))) {
    return false;
  }
  *size = read_block(begin);
  return true;
}

c_read_file::c_read_file(const char* path)
    : source_id_(path != nullptr ? path : ""),
      file_(zol::port::open_file(source_id_.c_str(), "rb")),
      capacity_(k_own_block) {}

c_read_file::c_read_file(const wchar_t* path)
    : source_id_(source_name(path)),
      file_(zol::port::open_file(path, "rb")),
      capacity_(k_own_block) {}

c_read_file::c_read_file(std::FILE* file) : file_(file), capacity_(k_piece) {}

c_read_file::~c_read_file() {
  if (close_on_delete_) close();
}

void c_read_file::close() {
  if (file_ == nullptr) return;
  std::fclose(file_);
  file_ = nullptr;
}

const char* c_read_file::get_source_id() { return source_id_.c_str(); }

bool c_read_file::refill() {
  if (file_ == nullptr) return false;
  if (buffer_ == nullptr) buffer_ = std::make_unique<char[]>(capacity_);
  index_ = 0;
  count_ = zol::port::read_file(file_, buffer_.get(), capacity_);
  return count_ != 0;
}

int c_read_file::read() {
  if (index_ == count_ && !refill()) return -1;
  return static_cast<unsigned char>(buffer_[index_++]);
}

std::size_t c_read_file::read_block(const char** begin) {
  if (typeid(*this) != typeid(c_read_file)) return c_read::read_block(begin);
  if (index_ == count_ && !refill()) return 0;
  *begin = buffer_.get() + index_;
  const std::size_t size = count_ - index_;
  index_ = count_;
  return size;
}

bool c_read_file::read_whole(const char** begin, std::size_t* size) {
  std::uint64_t length = 0;
  if (file_ == nullptr || buffer_ != nullptr || capacity_ != k_own_block ||
      typeid(*this) != typeid(c_read_file) || !zol::port::regular_file_size(file_, &length) ||
      length >= std::numeric_limits<std::size_t>::max()) {
    return false;
  }
  // One byte more, so that a file that grows while it is read is noticed.
  const auto whole = static_cast<std::size_t>(length);
  buffer_.reset(new (std::nothrow) char[whole + 1]);
  if (buffer_ == nullptr) return false;
  capacity_ = whole + 1;
  const bool is_all = refill() && count_ == whole;
  index_ = is_all ? count_ : 0;
  *begin = buffer_.get();
  *size = count_;
  return is_all;
}

void c_read_file::give_back(std::size_t count) { index_ -= std::min(count, index_); }

void c_read_file::rewind() {
  // Blocks begin at multiples of the piece from where reading began, so the rest of the piece is
  // what a buffer of one piece would hold.
  count_ = std::min(count_, (index_ + k_piece - 1) / k_piece * k_piece);
  if (file_ != nullptr) std::fseek(file_, 0, SEEK_SET);
}

// --- The getter -------------------------------------------------------------------------------

c_get_as_utf8::c_get_as_utf8(c_read& source, c_error& error)
    : source_(&source), error_(&error), binder_(error) {
  binder_.bind(this);
}

c_get_as_utf8::~c_get_as_utf8() = default;

void c_get_as_utf8::error(elmx_error_type type, elmx_error code, const char* text) {
  error_->error(type, code, get_source_id(), get_line_num(), text);
}

bool c_get_as_utf8::fetch() {
  line_ = get_line_num();
  uncounted_ = {};
  const std::size_t size = source_->read_block(&at_);
  if (size == 0) {
    at_ = end_;
    return false;
  }
  end_ = at_ + size;
  bytes_fetched_ += size;
  return true;
}

bool c_get_as_utf8::peek_whole(std::string_view* bytes) {
  if (encoding_ != k_unknown || line_ != 1 || at_ != end_ || bytes_fetched_ != 0 ||
      !unget_.empty() || pending_at_ != nullptr || error_->is_fatal_errored()) {
    return false;
  }
  std::size_t size = 0;
  const char* begin = nullptr;
  if (!source_->read_whole(&begin, &size)) return false;
  at_ = begin;
  end_ = begin + size;
  bytes_fetched_ = size;
  *bytes = {begin, size};
  return true;
}

void c_get_as_utf8::take_whole(const internal::SourceBytes& bytes) {
  encoding_ = bytes.encoding;
  is_window_open_ = encoding_ == k_utf8;
  if (is_window_open_) uncounted_ = {at_, bytes.size};
  take_window(at_ + bytes.size, bytes.lines);
}

int c_get_as_utf8::count_lines(std::string_view text) {
  return internal::count_line_ends(text.data(), text.data() + text.size());
}

int c_get_as_utf8::get() {
  int c = raw_get();
  if (c == '\n' && last_ == '\r') c = raw_get();
  last_ = c;
  if (c == '\r') c = '\n';
  if (c == '\n') ++line_;
  is_window_open_ = pending_at_ == nullptr && unget_.empty() && !has_ended_ &&
                    (encoding_ == k_utf8 || piece_has_character());
  return c;
}

int c_get_as_utf8::raw_get() {
  if (error_->is_fatal_errored()) return -1;
  if (!unget_.empty()) return unget_.get();
  if (pending_at_ != nullptr) {
    const int c = static_cast<unsigned char>(*pending_at_++);
    if (*pending_at_ == '\0') pending_at_ = nullptr;
    return c;
  }
  if (has_ended_) return -1;
  if (encoding_ == k_utf8) {
    const int byte = next_byte();
    return byte > 127 ? multi_byte(byte) : byte;
  }
  if (has_piece()) {
    if (at_ != end_) return static_cast<unsigned char>(*at_++);
    close_piece();
  }
  const int byte = next_byte();
  return byte < 0 ? -1 : decode(byte);
}

// --- Pieces of blocks in other encodings ---------------------------------------------------------

std::size_t c_get_as_utf8::unread_behind_piece() const {
  if (at_ == end_) return static_cast<std::size_t>(raw_end_ - raw_next_);
  raw_at_ += internal::count_units(counted_at_, at_) * (encoding_ == k_latin1 ? 1 : 2);
  counted_at_ = at_;
  return static_cast<std::size_t>(raw_end_ - raw_at_);
}

// Goes on in the block itself, with what was not read of the piece.
void c_get_as_utf8::close_piece() {
  if (!has_piece()) return;
  at_ = raw_end_ - unread_behind_piece();
  end_ = raw_end_;
  raw_end_ = nullptr;
}

// Turns what comes next in the block into a piece. False if there is nothing that may be taken so.
bool c_get_as_utf8::open_piece() {
  constexpr std::size_t k_piece_size = 16384;
  close_piece();
  using internal::SourceEncoding;
  const SourceEncoding encoding = encoding_ == k_latin1     ? SourceEncoding::latin1
                                  : encoding_ == k_utf16_be ? SourceEncoding::utf16_be
                                  : encoding_ == k_utf16_le ? SourceEncoding::utf16_le
                                  : encoding_ == k_ucs2_be  ? SourceEncoding::ucs2_be
                                                            : SourceEncoding::ucs2_le;
  std::string_view rest(at_, static_cast<std::size_t>(end_ - at_));
  if (rest.empty()) return false;
  if (piece_ == nullptr) piece_ = std::make_unique<char[]>(k_piece_size);
  const std::size_t size = internal::transcode_some(&rest, encoding, piece_.get(), k_piece_size);
  if (size == 0) return false;
  raw_at_ = at_;
  raw_next_ = rest.data();
  raw_end_ = end_;
  at_ = piece_.get();
  end_ = at_ + size;
  counted_at_ = at_;
  return true;
}

// Does a piece go on with a character of its own?
bool c_get_as_utf8::piece_has_character() {
  if (encoding_ == k_unknown) return false;
  if (has_piece() && at_ != end_) return (*at_ & 0xC0) != 0x80;
  return open_piece();
}

int c_get_as_utf8::decode(int byte) {
  switch (encoding_) {
    case k_unknown:
      return detect(byte);
    case k_latin1:
      return byte > 126 ? code_point(byte) : byte;
    case k_utf8:
      return byte > 127 ? multi_byte(byte) : byte;
    default:
      break;
  }
  // Two bytes a unit, of which the first is there.
  const int second = next_byte();
  if (second < 0) return -1;
  const bool is_big_endian = encoding_ == k_utf16_be || encoding_ == k_ucs2_be;
  const int unit = is_big_endian ? byte << 8 | second : second << 8 | byte;
  const bool is_utf16 = encoding_ == k_utf16_be || encoding_ == k_utf16_le;
  if (!is_utf16 || unit < 0xD800 || unit > 0xDBFF) return code_point(unit);

  const int low = next_unit();
  if (low < 0) return -1;
  if (low < 0xDC00 || low > 0xDFFF) return refuse();
  return code_point(((unit & 0x3FF) << 10) + (low & 0x3FF) + 0x10000);
}

int c_get_as_utf8::next_unit() {
  const int first = next_byte();
  if (first < 0) return -1;
  const int second = next_byte();
  if (second < 0) return -1;
  return encoding_ == k_utf16_be ? first << 8 | second : second << 8 | first;
}

int c_get_as_utf8::refuse() {
  error(elmx_fatal, elmx_bad_char_encoding, "Unrecognised character encoding");
  return -1;
}

// The first byte of a document: a byte-order mark, white space or "<", anything else is refused.
int c_get_as_utf8::detect(int byte) {
  const auto is_ascii = [](int c) { return c >= 1 && c <= 127; };
  if (byte == 0xFF || byte == 0xFE) {
    const bool is_big_endian = byte == 0xFE;
    if (next_byte() != (is_big_endian ? 0xFF : 0xFE)) return refuse();
    const int x = next_byte();
    const int y = next_byte();
    if (!(is_big_endian ? x == 0 && is_ascii(y) : is_ascii(x) && y == 0)) return refuse();
    encoding_ = is_big_endian ? k_utf16_be : k_utf16_le;
    return is_big_endian ? y : x;
  }
  if (byte == 0xEF) {
    if (next_byte() != 0xBB || next_byte() != 0xBF) return refuse();
    encoding_ = k_utf8;
    const int next = next_byte();
    return next < 0 ? -1 : decode(next);
  }
  if (byte == 0) {
    const int second = next_byte();
    if (!xisspace(second) && second != '<') return refuse();
    encoding_ = k_utf16_be;
    return second;
  }
  if (!xisspace(byte) && byte != '<') return refuse();
  const int second = next_byte();
  if (second == 0) {
    encoding_ = k_utf16_le;
    return byte;
  }
  encoding_ = k_utf8;
  if (second >= 0) {
    // The second byte was only looked at; it comes back whole with what belongs to it.
    const int c = multi_byte(second);
    unget_.unget(c);
  }
  return byte;
}

// `lead` begins a UTF-8 sequence, whose other bytes follow.
int c_get_as_utf8::multi_byte(int lead) {
  const int length = lead < 192 ? 1 : lead < 224 ? 2 : lead < 240 ? 3 : 4;
  char sequence[5] = {static_cast<char>(lead)};
  for (int i = 1; i < length; ++i) {
    const int byte = next_byte();
    if ((byte & 0xC0) != 0x80) return end_for_good();  // the end of the source too
    sequence[i] = static_cast<char>(byte);
  }
  if (!is_valid_utf8_char_sequence(sequence)) return end_for_good();
  if (std::strcmp(sequence, "\xC2\x85") == 0 || std::strcmp(sequence, "\xE2\x80\xA8") == 0) {
    return '\n';
  }
  return hand_over(sequence);
}

// Not every stage above stops at an end, so there must be nothing behind it.
int c_get_as_utf8::end_for_good() {
  has_ended_ = true;
  return -1;
}

int c_get_as_utf8::code_point(int c) {
  if (c == k_next_line || c == k_line_separator) return '\n';
  char sequence[5];
  return hand_over(unicode_char_to_utf8(c, sequence));
}

// Gives the first byte, and leaves the others pending up to the first zero.
int c_get_as_utf8::hand_over(const char* sequence) {
  if (sequence[0] == '\0' || sequence[1] == '\0') return static_cast<unsigned char>(sequence[0]);
  std::strcpy(pending_, sequence);
  pending_at_ = pending_ + 1;
  return static_cast<unsigned char>(sequence[0]);
}

bool c_get_as_utf8::set_encoding(const char* name) {
  if (name == nullptr) name = "";
  is_window_open_ = false;
  close_piece();
  const auto is_named = [name](std::string_view known) {
    return internal::is_same_encoding_name(name, known);
  };
  bool agrees = false;
  if (is_named("ISO-10646-UCS-2")) {
    agrees = encoding_ == k_utf16_be || encoding_ == k_utf16_le;
    if (agrees) encoding_ = encoding_ == k_utf16_be ? k_ucs2_be : k_ucs2_le;
  } else if (is_named("ISO-8859-1") || is_named("US-ASCII")) {
    agrees = encoding_ == k_utf8;
    encoding_ = k_latin1;
  } else if (is_named("UTF-8")) {
    agrees = encoding_ == k_utf8;
  } else if (is_named("UTF-16")) {
    agrees = encoding_ == k_utf16_be || encoding_ == k_utf16_le;
  } else {
    error(elmx_fatal, elmx_bad_char_encoding, "Unknown character encoding specified");
    return false;
  }
  if (!agrees) {
    // The spelling is what clients compare with.
    error(elmx_fatal, elmx_encoding_mismatch,
          "Mis-match between specfied encoding and byte format");
  }
  return agrees;
}

void c_get_as_utf8::rewind() {
  is_window_open_ = false;
  has_ended_ = false;
  close_piece();
  encoding_ = k_unknown;
  last_ = 0;
  unget_.clear();
  pending_at_ = nullptr;
  line_ = 1;
  uncounted_ = {};
  source_->give_back(static_cast<std::size_t>(end_ - at_));
  at_ = end_;
  bytes_fetched_ = 0;
  source_->rewind();
}

}  // namespace lmx
