// Character input: sources of raw bytes, and the getter that turns them into UTF-8 with line feeds
// for line ends and a count of lines.
//
// A source hands over blocks. A getter is in the plain state when the next character stands in the
// current block, with nothing pushed back or kept of the one before. It then opens a window: it
// shows the rest of the block to the stages above, which take names and text out of it in runs; of
// a block in another encoding it shows a piece that it has turned into UTF-8. Everything else goes
// character by character through get(), and both roads agree.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <memory>
#include <string>
#include <string_view>

#include "lmx/errors.h"
#include "lmx/text.h"
#include "port/export.h"

namespace lmx {

// A source of bytes. A subclass needs read() and rewind() alone.
class ZOL_API c_read {
 public:
  c_read() = default;
  // Can it be read? The default says so.
  virtual bool is_open() const;
  // The next byte as 0 to 255, -1 at the end.
  virtual int read() = 0;
  // A name for messages, or null.
  virtual const char* get_source_id();
  // Starts again.
  virtual void rewind() = 0;
  virtual ~c_read();

  // The next bytes as a block that stays good until the next call of any operation here; 0 at the
  // end. The bytes count as read. The default asks read() for one.
  virtual std::size_t read_block(const char** begin);
  // Makes the last `count` bytes of the last block unread. The default keeps them read.
  virtual void give_back(std::size_t count);
  // The same as read_block, but only if the block can be all that there is, from the beginning.
  // The default cannot.
  virtual bool read_whole(const char** begin, std::size_t* size);

 protected:
  // For subclasses that can be copied. A block that read_block gave stays that of the original.
  c_read(const c_read&) = default;
  c_read& operator=(const c_read&) = default;

 private:
  char single_ = 0;
};

// Reads memory that the caller keeps alive. A class derived from this one that overrides read()
// alone is asked for every byte.
class ZOL_API c_read_memory : public c_read {
 public:
  // `size` is in bytes; null counts as no bytes.
  c_read_memory(const char* data, std::size_t size)
      : start_(data), at_(data), end_(data == nullptr ? data : data + size) {}
  c_read_memory(const c_read_memory&) = default;
  c_read_memory& operator=(const c_read_memory&) = default;

  int read() override;
  void rewind() override;
  std::size_t read_block(const char** begin) override;
  void give_back(std::size_t count) override;
  bool read_whole(const char** begin, std::size_t* size) override;

 protected:
  c_read_memory() = default;

 private:
  const char* start_ = nullptr;
  const char* at_ = nullptr;
  const char* end_ = nullptr;
};

// Reads a string in place, which must outlive it.
class ZOL_API c_read_string : public c_read_memory {
 public:
  // Borrows the text.
  explicit c_read_string(const std::string& text) : c_read_memory(text.data(), text.size()) {}
};

// Reads a file. Whether it opened, is_open() tells; read() gives -1 if it did not. A directory
// does not open.
class ZOL_API c_read_file : public c_read {
 public:
  // A path in the encoding of the system's own calls.
  explicit c_read_file(const char* path);
  // A path in UTF-16, one unit a wchar_t.
  explicit c_read_file(const wchar_t* path);
  // Takes the file from its present position, and closes it unless told otherwise.
  explicit c_read_file(std::FILE* file);
  c_read_file(const c_read_file&) = delete;
  c_read_file& operator=(const c_read_file&) = delete;
  ~c_read_file() override;

  // Is there a file?
  bool is_open() const override { return file_ != nullptr; }
  int read() override;
  // The path in UTF-8, "" for a file that was handed in.
  const char* get_source_id() override;
  // Seeks to the start of the file. What is left of the piece of 512 bytes that is being read comes
  // first, and the file from its start follows. Whoever wants the document again after a look at
  // its beginning reads it with a new source.
  void rewind() override;
  std::size_t read_block(const char** begin) override;
  void give_back(std::size_t count) override;
  // A regular file that was opened by its name is read, never mapped: others may cut it.
  bool read_whole(const char** begin, std::size_t* size) override;

  // Closes the file before its time, whoever opened it.
  void close();
  // Whether the destructor leaves the file to the caller.
  void leave_file_open_on_delete(bool leave_open) { close_on_delete_ = !leave_open; }

 private:
  bool refill();

  std::string source_id_;
  std::FILE* file_ = nullptr;
  bool close_on_delete_ = true;
  std::size_t capacity_;
  std::unique_ptr<char[]> buffer_;  // made by the first read
  std::size_t count_ = 0;
  std::size_t index_ = 0;
};

// The characters pushed back, the last one first. Three are as many as the stages above need; a
// fourth is dropped.
class ZOL_API c_unget_buffer {
 public:
  // Forgets them.
  void clear() { count_ = 0; }
  // Is there none?
  bool empty() const { return count_ == 0; }
  // How many there are, 3 at most.
  int size() const { return count_; }
  // The last one, which is taken out; -1 if there is none.
  int get() { return count_ == 0 ? -1 : values_[--count_]; }
  // Pushes a character back, of which at most three can wait. -1 is one too.
  void unget(int value) {
    if (count_ < k_depth) values_[count_++] = value;
  }

 private:
  static constexpr int k_depth = 3;
  int values_[k_depth] = {};
  int count_ = 0;
};

namespace internal {

// What was read of a source as a whole, without the getter.
struct SourceBytes {
  std::size_t size;  // with a mark
  // One of c_get_as_utf8::Encoding. The line ends of UTF-8 are counted when somebody asks: `lines`
  // are then those that count twice, and all of them in another encoding.
  int encoding;
  int lines;
};

// The unread rest of the current block or piece, in the plain state.
struct Window {
  const char* at;
  const char* end;
};

}  // namespace internal

// Turns bytes in any accepted encoding into UTF-8 with line feeds for line ends.
//
// The encoding is found from the first bytes and may be refined once by the XML declaration.
// Ill-formed UTF-8 is the end of the input, without a report and for good, until rewind(). After a
// fatal report get() gives -1 as well.
class ZOL_API c_get_as_utf8 {
 public:
  // Borrows both, for its whole life.
  c_get_as_utf8(c_read& source, c_error& error);
  c_get_as_utf8(const c_get_as_utf8&) = delete;
  c_get_as_utf8& operator=(const c_get_as_utf8&) = delete;
  virtual ~c_get_as_utf8();

  // The next byte, 0 to 255, or -1 at the end.
  int get();
  // Pushes a character back, of which at most three can wait. -1 is one too.
  void unget(int value) {
    unget_.unget(value);
    is_window_open_ = false;
  }

  // False, after a fatal report of 6 for an unknown name or of 15 for one that does not agree with
  // the bytes seen. Names are compared without regard to case.
  bool set_encoding(const char* name);
  // The line of the next character, from 1.
  int get_line_num() const { return uncounted_.empty() ? line_ : line_ + count_lines(uncounted_); }
  // As the source gives it; null if it has no name.
  const char* get_source_id() const { return source_->get_source_id(); }
  // Starts the source again, with its encoding to be found anew.
  void rewind();

  // Reports to the tally, with the source's name and the line.
  void error(elmx_error_type type, elmx_error code, const char* text);
  // The same.
  void error(elmx_error_type type, elmx_error code, const std::string& text) {
    error(type, code, text.c_str());
  }
  // The tally that it was made with.
  c_error& get_error_handler() const { return *error_; }

  // --- For the stages above -----------------------------------------------------------------

  // True in the plain state, with at least one byte in the window.
  bool open_window(internal::Window* window) const {
    if (!is_window_open_ || at_ == end_ || error_->is_fatal_errored()) return false;
    window->at = at_;
    window->end = end_;
    return true;
  }
  // Was the last character a carriage return? A line feed that follows it is no line of its own.
  bool is_after_cr() const { return last_ == '\r'; }
  // Takes the window's bytes before `at`, at least one, with `lines` line ends among them. The last
  // character taken is no lone carriage return.
  void take_window(const char* at, int lines) {
    at_ = at;
    line_ += lines;
    last_ = 0;
  }
  // How the bytes of the source are read.
  enum Encoding {
    k_unknown = 0,
    k_latin1 = 1,
    k_utf8 = 2,
    k_utf16_be = 3,
    k_utf16_le = 4,
    k_ucs2_be = 5,
    k_ucs2_le = 6
  };

  // The whole source as one window, before the first character was asked for. False, with nothing
  // changed, if there is no such window.
  bool peek_whole(std::string_view* bytes);
  // Takes the first bytes of it.
  void take_whole(const internal::SourceBytes& bytes);
  // Bytes of the source that were read and not pushed back.
  std::uint64_t bytes_read() const {
    const unsigned width = encoding_ >= k_utf16_be ? 2 : 1;
    return bytes_fetched_ - unread_in_block() - width * static_cast<std::uint64_t>(unget_.size());
  }

 protected:
  // Shuts the window, for as long as characters come from elsewhere.
  void leave_plain_state() { is_window_open_ = false; }

 private:
  static int count_lines(std::string_view text);
  bool fetch();
  int next_byte() {
    if (at_ == end_ && !fetch()) return -1;
    return static_cast<unsigned char>(*at_++);
  }
  int next_unit();
  int raw_get();
  int decode(int byte);
  int detect(int byte);
  int multi_byte(int lead);
  int code_point(int c);
  int refuse();
  int end_for_good();
  int hand_over(const char* sequence);

  // A piece of UTF-8 made of the block in another encoding. While there is one, at_ and end_ are in
  // the piece.
  bool has_piece() const { return raw_end_ != nullptr; }
  bool open_piece();
  void close_piece();
  bool piece_has_character();
  std::size_t unread_in_block() const {
    return has_piece() ? unread_behind_piece() : static_cast<std::size_t>(end_ - at_);
  }
  std::size_t unread_behind_piece() const;

  c_read* source_;
  c_error* error_;
  c_getter_error_binder binder_;
  bool is_window_open_ = false;  // found anew with each character
  bool has_ended_ = false;       // in the middle of the source
  int encoding_ = k_unknown;
  int last_ = 0;
  c_unget_buffer unget_;
  char pending_[5] = {};              // a sequence and a zero
  const char* pending_at_ = nullptr;  // into pending_, never at its zero
  int line_ = 1;
  const char* at_ = nullptr;  // the rest of the current block or piece
  const char* end_ = nullptr;
  std::unique_ptr<char[]> piece_;   // made by the first block that needs it
  const char* raw_next_ = nullptr;  // in the block, behind what the piece was made of
  const char* raw_end_ = nullptr;
  // A place in the piece up to which characters were counted, and its place in the block.
  mutable const char* counted_at_ = nullptr;
  mutable const char* raw_at_ = nullptr;
  std::uint64_t bytes_fetched_ = 0;
  std::string_view uncounted_;  // text in the current block whose line ends are not in line_ yet
};

}  // namespace lmx
