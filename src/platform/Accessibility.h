#pragma once

namespace tessarok::platform {

/// The permission to see and post keys. Main thread.
class Accessibility {
 public:
  virtual ~Accessibility() = default;
  /// Whether the permission is given; with `prompt` the system asks the person when it is not.
  virtual bool isProcessTrusted(bool prompt) = 0;
};

}  // namespace tessarok::platform
