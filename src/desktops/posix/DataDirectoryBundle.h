#pragma once

#include "platform/Bundle.h"

namespace tessarok::posix {

/// The installed form of the program for commands, and on a system without application bundles: a
/// directory of data files, either named by the person or found beside the executable
/// (PREFIX/bin/tessarok goes with PREFIX/share/tessarok, and Contents/MacOS/tessarok-cli of an
/// application with its Contents/Resources). A program that has such a directory takes data from
/// nowhere else.
class DataDirectoryBundle final : public platform::Bundle {
 public:
  /// `named` is the directory that the person asked for; absent to look beside the executable.
  explicit DataDirectoryBundle(std::optional<std::filesystem::path> named);

  std::optional<std::string> identifier() override { return std::nullopt; }
  std::optional<std::filesystem::path> resource(std::string_view name,
                                                std::string_view extension) override;
  bool isApplication() override { return directory_.has_value(); }

 private:
  std::optional<std::filesystem::path> directory_;
};

}  // namespace tessarok::posix
