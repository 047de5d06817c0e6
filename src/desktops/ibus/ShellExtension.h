#pragma once

#include <functional>
#include <memory>

#include "desktops/freedesktop/Bus.h"
#include "desktops/freedesktop/NameWatch.h"

namespace tessarok::ibus {

/// The extension of GNOME's shell that comes with the corrector, as it is seen on the session bus:
/// it has a name there for as long as it is on. Main thread.
class ShellExtension final {
 public:
  enum class State {
    /// The bus has not told yet.
    unknown,
    /// Another desktop, or no bus.
    noShell,
    /// Not installed, off, or off while the screen is locked.
    off,
    on
  };

  /// `session` outlives this object and is null without a session bus.
  explicit ShellExtension(freedesktop::Bus* session);
  ShellExtension(const ShellExtension&) = delete;
  ShellExtension& operator=(const ShellExtension&) = delete;

  [[nodiscard]] State state() const;
  /// That is another one than before.
  std::function<void()> onChange;
  /// A call of one of its methods; null without a session bus. Nothing is started by it.
  [[nodiscard]] freedesktop::BusMessage call(const char* method);

 private:
  freedesktop::Bus* session_;
  std::unique_ptr<freedesktop::NameWatch> shell_;
  std::unique_ptr<freedesktop::NameWatch> extension_;
};

}  // namespace tessarok::ibus
