#pragma once

#include <functional>
#include <memory>
#include <utility>

namespace tessarok::macos {

/// A job as Dispatch's functions without blocks take it: `call` is given the context once, on the
/// queue's thread, and frees it.
class DispatchWork final {
 public:
  [[nodiscard]] static void* context(std::function<void()> work) {
    return new std::function<void()>(std::move(work));
  }
  static void call(void* context) {
    const std::unique_ptr<std::function<void()>> work(static_cast<std::function<void()>*>(context));
    (*work)();
  }
};

}  // namespace tessarok::macos
