#pragma once

#include "platform/RunLoopSource.h"

namespace tessarok::posix {

/// A file descriptor that a `PollLoop` serves. Main thread.
class PollSource : public platform::RunLoopSource {
 public:
  [[nodiscard]] virtual int descriptor() const = 0;
  /// What to wait for, as poll's events; 0 to be left alone, even when the other end hangs up.
  /// Asked on every turn, so that a source can hold its input back.
  [[nodiscard]] virtual short events() const = 0;
  /// There is something to do already, of which the descriptor tells nothing: input that was read
  /// while waiting for something else. Asked on every turn.
  [[nodiscard]] virtual bool isReady() const { return false; }
  /// Called with poll's answer when there is one, or with 0 for a source that `isReady`. Never
  /// called while a call of it is under way.
  virtual void ready(short events) = 0;
};

}  // namespace tessarok::posix
