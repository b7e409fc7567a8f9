// The functions of the flat interface as data, so that a program can call any of them with whatever
// it has. The table is generated.
#pragma once

#include <cstddef>
#include <cstdint>
#include <type_traits>
#include <utility>
#include <vector>

namespace zol_fuzz {

// An argument or a result, in the member that its C type needs.
struct Value {
  const void* pointer = nullptr;  // a handle, a text, an array
  std::int64_t number = 0;        // also of a bool, an enumeration, a code
  double real = 0;
};

template <class T>
T as_argument(const Value& value) {
  if constexpr (std::is_pointer_v<T>) {
    return static_cast<T>(const_cast<void*>(value.pointer));
  } else if constexpr (std::is_floating_point_v<T>) {
    return static_cast<T>(value.real);
  } else {
    return static_cast<T>(value.number);
  }
}

template <class T>
Value as_result(T result) {
  Value value;
  if constexpr (std::is_pointer_v<T>) {
    value.pointer = result;
  } else if constexpr (std::is_floating_point_v<T>) {
    value.real = static_cast<double>(result);
  } else {
    value.number = static_cast<std::int64_t>(result);
  }
  return value;
}

using AnyFunction = void (*)();

// A function whose type is forgotten, with the one that remembers it.
struct Bound {
  AnyFunction function;
  Value (*call)(AnyFunction function, const Value* arguments);
};

template <class Result, class... Arguments, std::size_t... index>
Value call_with(Result (*function)(Arguments...), [[maybe_unused]] const Value* arguments,
                std::index_sequence<index...>) {
  if constexpr (std::is_void_v<Result>) {
    function(as_argument<Arguments>(arguments[index])...);
    return {};
  } else {
    return as_result(function(as_argument<Arguments>(arguments[index])...));
  }
}

template <class Result, class... Arguments>
Bound bound(Result (*function)(Arguments...)) {
  return {reinterpret_cast<AnyFunction>(function), [](AnyFunction any, const Value* arguments) {
            return call_with(reinterpret_cast<Result (*)(Arguments...)>(any), arguments,
                             std::index_sequence_for<Arguments...>());
          }};
}

enum class Given { borrowed, owned };  // whose a handle is that comes out
enum class Effect { query, change };   // whether handles out of the object stay good

struct Call {
  const char* name;
  Bound function;
  const char* result;  // a kind: "text" and "wide" are to be freed, of "handle" `gives` tells more
  const char* gives;   // the class of a handle
  Given given;
  Effect effect;
  // The kinds, one after the other. A handle's has its class behind a colon; where null raises
  // stands an asterisk at the end.
  const char* parameters;
};

const std::vector<Call>& all_calls();

}  // namespace zol_fuzz
