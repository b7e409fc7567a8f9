// What the generated wrappers are made of: casts of handles, tests for null, texts in and out.
// conventions.h tells the client's side of it.
#pragma once

#include <string>

#include "lmx/errors.h"

namespace zol::bridge {

// The object behind a handle, which must not be null.
template <class T>
T& as(void* handle) {
  return *static_cast<T*>(handle);
}

// The handle of an object that the library gives as const; a handle knows no const.
template <class T>
void* handle_of(const T& object) {
  return const_cast<T*>(&object);
}

// Whether the argument is null, in which case the exception of the message is pending.
bool is_null(const void* argument, const char* message);

// Wide text that comes in, one unit to a wchar_t. Null is empty.
std::wstring wide(const char16_t* text);

// A null array has no bytes.
inline unsigned size_of(const void* bytes, unsigned size) { return bytes != nullptr ? size : 0; }

inline const char* or_empty(const char* text) { return text != nullptr ? text : ""; }

// Texts that go out as blocks of their own. Null only if there is no memory.
char16_t* returned(const std::wstring& text);
char* returned(const std::string& text);

// A copy that is never freed, for an identity that may have been handed out; null stays null.
const char* kept_for_ever(const char* text);

// Where a code goes that the client may not want.
class CodeSlot {
 public:
  // Of where the client wants it; null if it does not.
  explicit CodeSlot(void* wanted) : code_(static_cast<lmx::elmx_error*>(wanted)) {}
  // Where the code goes; lives as long as the slot.
  operator lmx::elmx_error*() { return code_ != nullptr ? code_ : &ignored_; }

 private:
  lmx::elmx_error ignored_ = lmx::elmx_ok;
  lmx::elmx_error* code_;
};

}  // namespace zol::bridge
