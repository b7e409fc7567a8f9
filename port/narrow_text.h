// Arguments in UTF-8, for functions that take a std::wstring too. Neither is made of anything that
// could be the wide text, so that a call is never ambiguous.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>

#include "port/export.h"

namespace zol::port {

// Result, where a T cannot be taken for the wide text of another overload.
template <class T, class Result>
using IfNoWideText = std::enable_if_t<!std::is_convertible_v<const T&, std::wstring>, Result>;

// Does T have the two forms of a path that a std::filesystem::path has? Asked of the type, so that
// only those who have paths include that header.
template <class T, class = void>
struct IsPath : std::false_type {};
template <class T>
struct IsPath<T, std::void_t<decltype(std::declval<const T&>().native()),
                             decltype(std::declval<const T&>().string())>> : std::true_type {};

// Text in UTF-8: a literal, a std::string, a std::string_view, and what C++20 has of char8_t.
// Borrows it for the call. A null pointer is not allowed.
class Utf8Text {
 public:
  // Of whatever is a std::string_view or, in C++20, a std::u8string_view.
  template <class Text,
            IfNoWideText<Text, std::enable_if_t<
                                   std::is_convertible_v<const Text&, std::string_view>, int>> = 0>
  Utf8Text(const Text& text) : view_(text) {}
#if defined(__cpp_lib_char8_t)
  template <class Text,
            std::enable_if_t<std::is_convertible_v<const Text&, std::u8string_view>, long> = 0>
  Utf8Text(const Text& text) : Utf8Text(std::u8string_view(text), nullptr) {}
#endif

  // The caller's own bytes.
  std::string_view view() const { return view_; }

 private:
#if defined(__cpp_lib_char8_t)
  Utf8Text(std::u8string_view text, std::nullptr_t)
      : view_(reinterpret_cast<const char*>(text.data()), text.size()) {}
#endif

  std::string_view view_;
};

// A path: as text in UTF-8, or as a std::filesystem::path. Borrows it for the call.
class FilePath {
 public:
  // As text, or as a std::filesystem::path, whose own form must be UTF-8.
  template <
      class Text,
      IfNoWideText<Text, std::enable_if_t<std::is_convertible_v<const Text&, Utf8Text>, int>> = 0>
  FilePath(const Text& text) : utf8_(Utf8Text(text).view()) {}
  template <class Path, IfNoWideText<Path, std::enable_if_t<IsPath<Path>::value, long>> = 0>
  FilePath(const Path& path) : utf8_(path.native()) {}

  // The path as the rest of the library has it. One that is no UTF-8 has no wide form, and becomes
  // one that names no file. Throws std::bad_alloc.
  ZOL_API std::wstring wide() const;

 private:
  std::string_view utf8_;
};

}  // namespace zol::port
