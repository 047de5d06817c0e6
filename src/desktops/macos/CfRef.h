#pragma once

#include <CoreFoundation/CoreFoundation.h>
#include <utility>

namespace tessarok::macos {

/// Owns one reference to a Core Foundation object, or none.
template <typename Ref>
class CfRef final {
 public:
  CfRef() = default;
  CfRef(const CfRef&) = delete;
  CfRef& operator=(const CfRef&) = delete;
  CfRef(CfRef&& other) noexcept : object_(std::exchange(other.object_, nullptr)) {}
  CfRef& operator=(CfRef&& other) noexcept {
    std::swap(object_, other.object_);
    return *this;
  }
  ~CfRef() {
    // Releasing nothing stops the process.
    if (object_ != nullptr) CFRelease(object_);
  }

  /// Takes over the reference that a "Create" or "Copy" function has returned.
  [[nodiscard]] static CfRef adopt(Ref object) { return CfRef(object); }
  /// Adds a reference to an object that belongs to somebody else.
  [[nodiscard]] static CfRef retain(Ref object) {
    if (object != nullptr) CFRetain(object);
    return CfRef(object);
  }

  [[nodiscard]] Ref get() const { return object_; }
  explicit operator bool() const { return object_ != nullptr; }

 private:
  explicit CfRef(Ref object) : object_(object) {}

  Ref object_ = nullptr;
};

}  // namespace tessarok::macos
