// A value, or why there is none.
#pragma once

#include <optional>
#include <string>
#include <utility>

namespace zol_v2::colorimetry {

// Why something can't be computed, as a sentence for people without a full stop, in UTF-8.
struct Refusal {
  std::string reason;  // UTF-8, without a full stop
};

// A value, or the reason why there is none.
template <class T>
class [[nodiscard]] Outcome {
 public:
  // With the value.
  Outcome(T value) : value_(std::move(value)) {}
  // Without a value.
  Outcome(Refusal refusal) : reason_(std::move(refusal.reason)) {}

  // Whether there is a value.
  explicit operator bool() const { return value_.has_value(); }
  // Only where there is a value.
  const T& operator*() const { return *value_; }
  const T* operator->() const { return &*value_; }
  T& operator*() { return *value_; }
  T* operator->() { return &*value_; }

  // Empty where there is a value.
  const std::string& reason() const { return reason_; }
  // The reason, to be handed on.
  Refusal refusal() const { return {reason_}; }

 private:
  std::optional<T> value_;
  std::string reason_;
};

}  // namespace zol_v2::colorimetry
