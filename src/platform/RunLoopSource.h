#pragma once

namespace tessarok::platform {

/// Something that a run loop serves, such as a tap. Opaque; added to and removed from `RunLoop`.
class RunLoopSource {
 public:
  RunLoopSource() = default;
  RunLoopSource(const RunLoopSource&) = delete;
  RunLoopSource& operator=(const RunLoopSource&) = delete;
  virtual ~RunLoopSource() = default;
};

}  // namespace tessarok::platform
