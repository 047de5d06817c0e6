#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace tessarok::platform {

/// The installed form of the program. Main thread.
class Bundle {
 public:
  virtual ~Bundle() = default;
  /// The application's identifier; absent for a bare executable.
  [[nodiscard]] virtual std::optional<std::string> identifier() = 0;
  /// Where a data file lies in the installed application; absent when it is not there.
  [[nodiscard]] virtual std::optional<std::filesystem::path> resource(
      std::string_view name, std::string_view extension) = 0;
  /// Whether the program runs from its installed form, which then is the only place that its
  /// data may come from.
  [[nodiscard]] virtual bool isApplication() = 0;
};

}  // namespace tessarok::platform
