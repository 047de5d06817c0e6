#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace tessarok::web {

/// Files in one piece for the way to a page. Of a sorted list each word is written as the letters
/// that it shares with the word above it, counted, and one byte for each further letter; what is
/// left compresses to a thirtieth. Other files are taken as they are. Pure functions, any thread.
class PackedFiles {
 public:
  struct File {
    std::string name;
    std::string text;

    bool operator==(const File&) const = default;
  };

  PackedFiles() = delete;

  /// Unpacked, all files together are no larger; a piece that says otherwise is damaged. In bytes:
  /// 128 MiB.
  static constexpr std::size_t kMostText = std::size_t{128} * 1024 * 1024;

  /// Names of up to 255 bytes, texts of up to 4 GiB.
  [[nodiscard]] static std::string pack(const std::vector<File>& files);
  /// The files of a piece; none when it was cut short or damaged so that it shows.
  [[nodiscard]] static std::vector<File> unpack(std::string_view piece);
};

}  // namespace tessarok::web
