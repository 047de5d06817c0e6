#pragma once

#include <atomic>

namespace tessarok {

/// Takes a flag down when a job is done, however that ends.
class ClearedFlag final {
 public:
  explicit ClearedFlag(std::atomic<bool>& flag) : flag_(flag) {}
  ClearedFlag(const ClearedFlag&) = delete;
  ClearedFlag& operator=(const ClearedFlag&) = delete;
  ~ClearedFlag() { flag_ = false; }

 private:
  std::atomic<bool>& flag_;
};

}  // namespace tessarok
