#pragma once

#include <fcitx-utils/handlertable.h>
#include <fcitx/instance.h>
#include <functional>
#include <map>
#include <memory>
#include <string>

struct wl_display;

namespace tessarok::fcitx5 {

/// Sends on its way what was said to text fields on Wayland. Fcitx does that itself only when it
/// has been told something, and the corrector also speaks when a timer is due. Main thread.
class WaylandOutlet final {
 public:
  /// `instance` outlives this object. Without Wayland there is nothing to do.
  explicit WaylandOutlet(fcitx::Instance& instance);
  WaylandOutlet(const WaylandOutlet&) = delete;
  WaylandOutlet& operator=(const WaylandOutlet&) = delete;
  ~WaylandOutlet();

  void flush();

 private:
  struct Watchers;

  std::map<std::string, wl_display*> displays_;
  std::unique_ptr<Watchers> watchers_;
};

}  // namespace tessarok::fcitx5
