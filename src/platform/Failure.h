#pragma once

#include <optional>
#include <string>
#include <utility>

namespace tessarok::platform {

/// How something went that is done rather than asked for: true when it failed, and then why.
class [[nodiscard]] Failure {
 public:
  /// It went well.
  [[nodiscard]] static Failure none() { return {}; }
  /// `reason` is for a log or a person, without a full stop.
  explicit Failure(std::string reason) : reason_(std::move(reason)) {}

  explicit operator bool() const { return reason_.has_value(); }
  /// Only of a failure.
  [[nodiscard]] const std::string& reason() const { return *reason_; }

  bool operator==(const Failure&) const = default;

 private:
  Failure() = default;

  std::optional<std::string> reason_;
};

}  // namespace tessarok::platform
