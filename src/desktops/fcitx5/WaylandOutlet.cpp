#include "desktops/fcitx5/WaylandOutlet.h"

#include <fcitx/addonmanager.h>
#include <fcitx/focusgroup.h>
#include <wayland-client.h>
#include <wayland_public.h>

namespace tessarok::fcitx5 {

struct WaylandOutlet::Watchers {
  std::unique_ptr<fcitx::HandlerTableEntry<fcitx::WaylandConnectionCreated>> created;
  std::unique_ptr<fcitx::HandlerTableEntry<fcitx::WaylandConnectionClosed>> closed;
};

WaylandOutlet::WaylandOutlet(fcitx::Instance& instance) {
  auto* wayland = instance.addonManager().addon("wayland");
  if (wayland == nullptr) return;
  watchers_ = std::make_unique<Watchers>();
  watchers_->created = wayland->call<fcitx::IWaylandModule::addConnectionCreatedCallback>(
      [this](const std::string& name, wl_display* display, fcitx::FocusGroup*) {
        displays_[name] = display;
      });
  watchers_->closed = wayland->call<fcitx::IWaylandModule::addConnectionClosedCallback>(
      [this](const std::string& name, wl_display*) { displays_.erase(name); });
}

WaylandOutlet::~WaylandOutlet() = default;

void WaylandOutlet::flush() {
  for (const auto& [name, display] : displays_)
    wl_display_flush(display);
}

}  // namespace tessarok::fcitx5
