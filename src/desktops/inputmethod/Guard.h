#pragma once

#include <exception>
#include <functional>
#include <string>
#include <utility>

namespace tessarok::inputmethod {

/// Keeps exceptions from reaching the framework, which they would end together with all typing.
/// After one the corrector is in no known state: `onFailure` is told once, and nothing guarded runs
/// again. Main thread.
class Guard final {
 public:
  Guard() = default;
  Guard(const Guard&) = delete;
  Guard& operator=(const Guard&) = delete;

  template <typename Work>
  void operator()(Work&& work) noexcept {
    if (hasFailed_) return;
    try {
      work();
    } catch (const std::exception& error) {
      fail(error.what());
    } catch (...) {
      fail("an unknown error");
    }
  }

  [[nodiscard]] bool hasFailed() const { return hasFailed_; }

  std::function<void(const std::string& reason)> onFailure;

 private:
  void fail(const char* reason) noexcept {
    hasFailed_ = true;
    try {
      if (onFailure) onFailure(reason);
    } catch (...) {  // NOLINT(bugprone-empty-catch): there is nobody left to tell
    }
  }

  bool hasFailed_ = false;
};

}  // namespace tessarok::inputmethod
