#pragma once

#include <CoreFoundation/CoreFoundation.h>
#include <utility>

#include "desktops/macos/CfRef.h"
#include "platform/RunLoopSource.h"

namespace tessarok::macos {

/// A source of Core Foundation for a run loop. Main thread.
class MacRunLoopSource final : public platform::RunLoopSource {
 public:
  explicit MacRunLoopSource(CfRef<CFRunLoopSourceRef> source) : source_(std::move(source)) {}

  [[nodiscard]] CFRunLoopSourceRef get() const { return source_.get(); }

 private:
  CfRef<CFRunLoopSourceRef> source_;
};

}  // namespace tessarok::macos
