#pragma once

namespace tessarok {

/// An optional record that keeps its storage when it is cleared, so that setting it again and
/// again, as every typed word does, allocates nothing once its strings have grown.
template <typename Record>
class ReusableOptional {
 public:
  explicit operator bool() const { return present_; }
  [[nodiscard]] Record& operator*() { return record_; }
  [[nodiscard]] const Record& operator*() const { return record_; }
  [[nodiscard]] Record* operator->() { return &record_; }
  [[nodiscard]] const Record* operator->() const { return &record_; }

  void reset() { present_ = false; }
  /// Makes the record present. Its fields still hold what they last did: assign every one.
  Record& renew() {
    present_ = true;
    return record_;
  }

 private:
  Record record_;
  bool present_ = false;
};

}  // namespace tessarok
