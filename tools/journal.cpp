#include "tools/journal.h"

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <cstring>
#include <functional>
#include <system_error>
#include <tuple>

#include "tools/output.h"
#include "tools/text.h"

namespace {

namespace port = zol::port;

constexpr std::string_view k_title = "zol journal 1: ";
constexpr std::size_t k_block = 1 << 20;

std::string on_one_line(const std::string& text) {
  std::string line;
  for (const char c : text) {
    if (c == '\\' || c == '\n') line += '\\';
    line += c == '\n' ? 'n' : c;
  }
  return line;
}

// The file, from wherever the next run is started.
std::string spelled(const std::string& path) { return on_one_line(absolute_path(path)); }

std::uint64_t key_of(std::string_view spelled_path) {
  return std::hash<std::string_view>()(spelled_path);
}

struct Line {
  ExitStatus status = ExitStatus::ok;
  FileStamp stamp;
  std::string_view path;
};

template <class Number>
bool take_number(std::string_view* text, Number* number) {
  const char* const end = text->data() + text->size();
  const auto [at, error] = std::from_chars(text->data(), end, *number);
  if (error != std::errc() || at == end || *at != ' ') return false;
  text->remove_prefix(static_cast<std::size_t>(at - text->data()) + 1);
  return true;
}

// "STATUS SIZE TIME PATH".
bool parse(std::string_view text, Line* line) {
  int status = 0;
  if (!take_number(&text, &status) || status < 0 || status > 1 ||
      !take_number(&text, &line->stamp.size) || !take_number(&text, &line->stamp.time) ||
      text.empty()) {
    return false;
  }
  line->status = static_cast<ExitStatus>(status);
  line->stamp.is_known = true;
  line->path = text;
  return true;
}

}  // namespace

Journal::~Journal() {
  if (is_open()) port::close_handle(file_);
}

bool Journal::complain_of(const std::string& reason) {
  if (!has_failed_) complain(path_, reason);
  has_failed_ = true;
  return false;
}

bool Journal::open(const std::string& path, const std::string& task) {
  path_ = path;
  port::OpenOptions options;
  options.access = port::Access::read_write;
  options.share = port::Share::deny_read;
  options.create = true;
  options.mode = 0666;
  file_ = port::open_handle(wide_path(path), options);
  if (is_open()) return read(std::string(k_title) + on_one_line(task) + '\n');
  return complain_of(errno == EACCES ? "can't be written, or is in use by another run"
                                     : std::strerror(errno));
}

bool Journal::read(const std::string& header) {
  std::string text;
  std::uint64_t offset = 0;  // of the text in the file
  bool is_titled = false;
  for (bool is_over = false; !is_over;) {
    const std::size_t begin = text.size();
    text.resize(begin + k_block);
    const std::size_t count = port::read_handle(file_, &text[begin], k_block);
    if (count < k_block && errno != 0) return complain_of(std::strerror(errno));
    is_over = count < k_block;
    text.resize(begin + count);
    std::size_t at = 0;
    if (!is_titled) {
      // A title that was cut off is that of a run that had done nothing.
      if (text.size() < header.size() && header.compare(0, text.size(), text) == 0) break;
      if (text.compare(0, header.size(), header) != 0) {
        const bool is_journal = text.compare(0, k_title.size(), k_title) == 0;
        return complain_of(is_journal
                               ? "belongs to another task: " +
                                     text.substr(k_title.size(), text.find('\n') - k_title.size())
                               : "is no journal");
      }
      is_titled = true;
      at = header.size();
    }
    for (std::size_t end; (end = text.find('\n', at)) != std::string::npos; at = end + 1) {
      Line line;
      if (parse(std::string_view(text).substr(at, end - at), &line)) {
        places_.push_back({key_of(line.path), offset + at});
      }
    }
    text.erase(0, at);
    offset += at;
  }
  std::sort(places_.begin(), places_.end(), [](const Place& a, const Place& b) {
    return std::tie(a.key, a.offset) < std::tie(b.key, b.offset);
  });
  const bool is_cut = port::resize_handle(file_, static_cast<std::int64_t>(offset)) &&
                      port::seek_handle(file_, 0, port::Origin::end) >= 0;
  if (!is_cut || (!is_titled && !port::write_handle(file_, header.data(), header.size()))) {
    return complain_of(std::strerror(errno));
  }
  return true;
}

bool Journal::read_line(std::uint64_t offset, std::string* line) const {
  constexpr std::size_t k_usual = 512;
  if (port::seek_handle(file_, static_cast<std::int64_t>(offset), port::Origin::begin) < 0) {
    return false;
  }
  line->clear();
  while (true) {
    const std::size_t begin = line->size();
    line->resize(begin + k_usual);
    const std::size_t count = port::read_handle(file_, &(*line)[begin], k_usual);
    line->resize(begin + count);
    const std::size_t end = line->find('\n', begin);
    if (end != std::string::npos) {
      line->resize(end);
      return true;
    }
    if (count < k_usual) return false;
  }
}

std::optional<ExitStatus> Journal::find(const std::string& path, const FileStamp& stamp) {
  if (!stamp.is_known) return std::nullopt;
  const std::string name = spelled(path);
  const std::uint64_t key = key_of(name);
  auto at = std::upper_bound(places_.begin(), places_.end(), key,
                             [](std::uint64_t k, const Place& place) { return k < place.key; });
  const std::lock_guard<std::mutex> lock(mutex_);
  // What was noted last counts.
  while (at != places_.begin() && (--at)->key == key) {
    std::string text;
    Line line;
    if (!read_line(at->offset, &text) || !parse(text, &line) || line.path != name) continue;
    if (line.stamp == stamp) return line.status;
    return std::nullopt;
  }
  return std::nullopt;
}

bool Journal::add(const std::string& path, const FileStamp& stamp, ExitStatus status) {
  if (!stamp.is_known) return true;
  const std::string line = std::to_string(static_cast<int>(status)) + ' ' +
                           std::to_string(stamp.size) + ' ' + std::to_string(stamp.time) + ' ' +
                           spelled(path) + '\n';
  const std::lock_guard<std::mutex> lock(mutex_);
  if (!has_failed_ && port::seek_handle(file_, 0, port::Origin::end) >= 0 &&
      port::write_handle(file_, line.data(), line.size())) {
    return true;
  }
  return complain_of(std::strerror(errno));
}

bool has_journal(const std::string& path) { return stamp_of(path).size != 0; }
