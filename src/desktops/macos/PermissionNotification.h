#pragma once

#include <functional>
#include <memory>

#include "desktops/macos/CfRef.h"
#include "desktops/macos/DistributedObserver.h"

namespace tessarok::macos {

/// Calls `look` when the list of programs with the Accessibility permission changes, until it is
/// destroyed. Main thread.
///
/// Operational notes: the system announces the change under a name that no header has, and the
/// answer about the permission may still be the old one when the announcement comes. So `look` is
/// called at once and twice more, a little later.
class PermissionNotification final {
 public:
  explicit PermissionNotification(std::function<void()> look);

 private:
  using Look = std::function<void()>;

  /// Shared only with calls that are still to come, which find it gone when this is destroyed.
  std::shared_ptr<const Look> look_;
  CfRef<CFStringRef> name_;
  std::unique_ptr<DistributedObserver> observer_;
};

}  // namespace tessarok::macos
