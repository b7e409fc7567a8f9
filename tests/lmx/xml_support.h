// What the tests of the reading half share: sources of every kind, a tally that keeps the reports,
// and a walk through a document that writes down all it sees.
#pragma once

#include <pthread.h>

#include <cstddef>
#include <cstdio>
#include <functional>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "lmx/input.h"
#include "lmx/reader.h"
#include "lmx/text.h"
#include "lmx/tokeniser.h"

namespace lmx::test {

// A text that may hold zeros, from a literal.
template <std::size_t N>
std::string bytes(const char (&literal)[N]) {
  return std::string(literal, N - 1);
}

// Keeps each report as "severity code @line text".
class RecordingError : public c_error {
 public:
  void report_error(elmx_error_type type, elmx_error code, const char*, int line,
                    const char* text) override {
    log += std::to_string(type) + " " + std::to_string(code) + " @" + std::to_string(line) + " " +
           text + "\n";
  }
  std::string log;
};

// The least that a client's source can be.
class ByteSource : public c_read {
 public:
  explicit ByteSource(std::string data) : data_(std::move(data)) {}
  int read() override { return at_ < data_.size() ? static_cast<unsigned char>(data_[at_++]) : -1; }
  void rewind() override { at_ = 0; }

 protected:
  std::string data_;
  std::size_t at_ = 0;
};

// Hands over blocks of a given size, each in storage of its own that the next call frees.
class BlockSource : public ByteSource {
 public:
  BlockSource(std::string data, std::size_t size) : ByteSource(std::move(data)), size_(size) {}
  std::size_t read_block(const char** begin) override {
    const std::size_t count = std::min(size_, data_.size() - at_);
    block_ = std::make_unique<char[]>(count + 1);
    data_.copy(block_.get(), count, at_);
    at_ += count;
    *begin = block_.get();
    return count;
  }
  void give_back(std::size_t count) override { at_ -= count; }

 private:
  std::size_t size_;
  std::unique_ptr<char[]> block_;
};

// A file that holds the data, deleted with the object.
class TempFile {
 public:
  explicit TempFile(const std::string& data) : path_(::testing::TempDir() + "zol_reading_test") {
    // Test programs run side by side, and may have their objects at the same addresses.
    std::random_device random;
    path_ += std::to_string(random()) + '_' + std::to_string(random()) + ".xml";
    std::FILE* const file = std::fopen(path_.c_str(), "wb");
    std::fwrite(data.data(), 1, data.size(), file);
    std::fclose(file);
  }
  TempFile(const TempFile&) = delete;
  TempFile& operator=(const TempFile&) = delete;
  ~TempFile() { std::remove(path_.c_str()); }
  const char* path() const { return path_.c_str(); }

 private:
  std::string path_;
};

// Well-formed UTF-8 as UTF-16.
inline std::string to_utf16(const std::string& utf8, bool is_big_endian, bool has_mark) {
  std::wstring wide = has_mark ? L"\xFEFF" : L"";
  std::wstring body;
  wide += convert(&body, utf8);
  std::string result;
  for (const wchar_t unit : wide) {
    const char high = static_cast<char>(unit >> 8 & 0xFF);
    const char low = static_cast<char>(unit & 0xFF);
    result += is_big_endian ? high : low;
    result += is_big_endian ? low : high;
  }
  return result;
}

inline std::string replace_all(std::string text, const std::string& from, const std::string& to) {
  for (std::size_t at = 0; (at = text.find(from, at)) != std::string::npos; at += to.size()) {
    text.replace(at, from.size(), to);
  }
  return text;
}

enum class Way { attributes, values, copy, detach, nested, skip };

// Walks through a document and writes down every event, value, line number and report.
class Tracer {
 public:
  Tracer(c_read& source, Way way, elmx_whitespace mode)
      : xml_(source, error_, true), way_(way), mode_(mode) {}

  std::string run() {
    int errors = 0;
    for (int event = -1; event != elxp_end_of_input && errors < 5 && ++steps_ < 3000;) {
      c_xml_local scope;
      std::string name;
      event = xml_.get_element_name(&scope, &name);
      note(event, name);
      if (event == elxp_error) ++errors;
      if (event == elxp_name) {
        note_scope(scope);
        enter(scope, name);
      }
    }
    return out_ + error_.log;
  }

 private:
  void note(int event, const std::string& text) {
    out_ +=
        std::to_string(event) + " [" + text + "] @" + std::to_string(xml_.get_line_num()) + "\n";
  }
  void note_scope(const c_xml_local& scope) {
    for (const char* prefix : {"", "p", "q"}) {
      out_ += std::to_string(scope.find_namespace_id(prefix)) + " ";
    }
  }
  void enter(const c_xml_local& scope, const std::string& name) {
    std::string text;
    std::string end_name;
    bool empty = false;
    switch (way_) {
      case Way::attributes:
        if (xml_.get_xsi_type(&scope, &steps_, &text)) note(-2, text);
        attributes();
        break;
      case Way::values:
        if (!xml_.skip_start_tag(&empty)) note(-3, "bad start tag");
        if (empty) break;
        note(-4, xml_.get_element_value(&text, mode_, true) ? text : text + " (failed)");
        note(-5, xml_.is_element_end_tag(name) ? "end" : "no end");
        break;
      case Way::copy:
        if (++depth_ < 2) return attributes();
        note(-6, xml_.get_any_element(name, &text, mode_, false) ? text : text + " (failed)");
        break;
      case Way::detach:
        if (++depth_ < 2) return attributes();
        note(-6, xml_.get_any_element(scope, name, &text) ? text : text + " (failed)");
        break;
      case Way::nested:
        if (++depth_ < 2) return attributes();
        if (!xml_.skip_start_tag(&empty)) note(-3, "bad start tag");
        if (empty) break;
        note(-7, xml_.get_nested_element_value(&text, &end_name, mode_, false) ? text : "failed");
        note(-7, end_name);
        break;
      case Way::skip:
        if (++depth_ < 2) return attributes();
        note(-8, xml_.skip_rest_of_element(name) ? "skipped" : "failed");
        break;
    }
  }
  void attributes() {
    std::string name;
    std::string value;
    while (true) {
      const int event = xml_.get_attribute_name(&name, false);
      note(event, name);
      if (event != elxp_name) return;
      note(-9, xml_.get_attribute_value(&value, mode_) ? value : value + " (failed)");
    }
  }

  RecordingError error_;
  c_xml xml_;
  Way way_;
  elmx_whitespace mode_;
  int depth_ = 0;
  int steps_ = 0;
  std::string out_;
};

inline std::string trace(c_read& source, Way way = Way::attributes,
                         elmx_whitespace mode = elmx_preserve) {
  return Tracer(source, way, mode).run();
}

inline std::string trace(const std::string& document, Way way = Way::attributes,
                         elmx_whitespace mode = elmx_preserve) {
  c_read_string source(document);
  return trace(source, way, mode);
}

// Runs `work` on a thread whose stack has 1 MiB.
inline void on_small_stack(std::function<void()> work) {
  pthread_attr_t attributes;
  pthread_attr_init(&attributes);
  pthread_attr_setstacksize(&attributes, 1 << 20);
  pthread_t thread;
  const auto body = [](void* argument) -> void* {
    (*static_cast<std::function<void()>*>(argument))();
    return nullptr;
  };
  ASSERT_EQ(pthread_create(&thread, &attributes, body, &work), 0);
  pthread_join(thread, nullptr);
  pthread_attr_destroy(&attributes);
}

}  // namespace lmx::test
