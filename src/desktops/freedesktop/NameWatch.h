#pragma once

#include <functional>
#include <optional>
#include <string>

#include "desktops/freedesktop/Bus.h"

namespace tessarok::freedesktop {

/// Whether somebody has a well-known name on a bus. Main thread.
class NameWatch final {
 public:
  /// `onChange` is called whenever that has become known or other. The bus outlives this object.
  NameWatch(Bus& bus, const std::string& name, std::function<void()> onChange);
  NameWatch(const NameWatch&) = delete;
  NameWatch& operator=(const NameWatch&) = delete;

  /// Absent until the bus has answered.
  [[nodiscard]] std::optional<bool> isOwned() const { return isOwned_; }

 private:
  void set(bool isOwned);

  std::function<void()> onChange_;
  std::optional<bool> isOwned_;
  BusSlot changes_;
  BusSlot question_;
};

}  // namespace tessarok::freedesktop
