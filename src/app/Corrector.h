#pragma once

#include <memory>

#include "app/AppDelegate.h"
#include "typing/DiagnosticLog.h"

namespace tessarok {

/// The corrector from launch to quit. However it ends, by an exception too, what was learned is
/// on the disk and no queue has work left when it is gone: the desktop, which the queues write
/// through, may go next. Main thread.
class Corrector {
 public:
  Corrector(AppDelegate::Instances instances, AppDelegate::Keys keys)
      : delegate_(std::make_shared<AppDelegate>(instances, keys)) {}
  Corrector(const Corrector&) = delete;
  Corrector& operator=(const Corrector&) = delete;
  ~Corrector() {
    if (isLaunched_) delegate_->applicationWillTerminate();
    DiagnosticLog::drain();
  }

  void launch() {
    isLaunched_ = true;
    delegate_->applicationDidFinishLaunching();
  }
  [[nodiscard]] AppDelegate& delegate() { return *delegate_; }

 private:
  std::shared_ptr<AppDelegate> delegate_;
  bool isLaunched_ = false;
};

}  // namespace tessarok
