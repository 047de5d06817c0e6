#pragma once

#include <functional>
#include <gio/gio.h>
#include <string>
#include <utility>
#include <vector>

namespace tessarok::ibus {

/// The list of input sources in GNOME's settings. Main thread.
class SourceList final {
 public:
  /// A kind, "xkb" or "ibus", and its name of the source.
  using Source = std::pair<std::string, std::string>;

  SourceList();
  SourceList(const SourceList&) = delete;
  SourceList& operator=(const SourceList&) = delete;
  ~SourceList();

  /// In the person's order; none where the system has no such settings.
  [[nodiscard]] std::vector<Source> sources() const;

  /// The person has changed the list.
  std::function<void()> onChange;

 private:
  /// Null when there are none.
  GSettings* settings_ = nullptr;
};

}  // namespace tessarok::ibus
