// A value, or why there is none.
#pragma once

#include <optional>
#include <string>
#include <utility>

namespace zol_v2::colorimetry {

// Why something can't be computed, as a sentence for people without a full stop, in UTF-8.
struct Refusal {
  std::string reason;
};

template <class T>
class [[nodiscard]] Outcome {
 public:
  Outcome(T value) : value_(std::move(value)) {}
  Outcome(Refusal refusal) : reason_(std::move(refusal.reason)) {}

  explicit operator bool() const { return value_.has_value(); }
  // Only where there is a value.
  const T& operator*() const { return *value_; }
  const T* operator->() const { return &*value_; }
  T& operator*() { return *value_; }
  T* operator->() { return &*value_; }

  // Empty where there is a value.
  const std::string& reason() const { return reason_; }
  Refusal refusal() const { return {reason_}; }

 private:
  std::optional<T> value_;
  std::string reason_;
};

}  // namespace zol_v2::colorimetry
