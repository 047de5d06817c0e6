#pragma once

#include <functional>
#include <gio/gio.h>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "platform/RunLoop.h"

namespace tessarok::ibus {

/// The list of input sources in GNOME's settings. Main thread.
class SourceList final {
 public:
  /// A kind, "xkb" or "ibus", and its name of the source.
  using Source = std::pair<std::string, std::string>;

  /// `loop` outlives this object.
  explicit SourceList(platform::RunLoop& loop);
  SourceList(const SourceList&) = delete;
  SourceList& operator=(const SourceList&) = delete;
  ~SourceList();

  /// Whether the system has such settings.
  [[nodiscard]] bool exists() const { return settings_ != nullptr; }
  /// In the person's order.
  [[nodiscard]] std::vector<Source> sources() const;
  /// Has the shell make an engine of the list the current one, by a list for a moment in which what
  /// was current is missing; then the list is as it was. False when the engine is not in it.
  [[nodiscard]] bool bringForward(const std::string& engine);

  /// The person has changed the list.
  std::function<void()> onChange;

 private:
  void write(const std::vector<Source>& sources);
  void putBack();
  void changed();

  platform::RunLoop& loop_;
  /// Null when there are none.
  GSettings* settings_ = nullptr;
  /// What is to be put back; empty when nothing is.
  std::vector<Source> whole_;
  std::vector<Source> shortened_;
};

}  // namespace tessarok::ibus
