#pragma once

#include <array>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "platform/Files.h"
#include "words/LearnedLists.h"

namespace tessarok::commands {

/// The person's dictionary and learned lists, as they lie in the folder of every desktop.
inline constexpr const char* kIgnoredName = "ignored.txt";
inline constexpr const char* kRejectsName = "rejects.txt";
inline constexpr std::array kListNames = {"dictionary.txt", kIgnoredName, kRejectsName};

/// Why a list of words cannot be used, in the person's language: the system's reason, or the line
/// that is not UTF-8. Absent when it can be, and when there is none.
[[nodiscard]] std::optional<std::string> faultOfList(platform::Files& files,
                                                     const std::filesystem::path& file);
/// The same as a sentence that names the file.
[[nodiscard]] std::optional<std::string> problemWithList(platform::Files& files,
                                                         const std::filesystem::path& file);
/// What the person took back, of those lists that can be used.
[[nodiscard]] LearnedLists learnedLists(platform::Files& files);
/// What of the person's settings, dictionary and learned lists is not used, a sentence each.
[[nodiscard]] std::vector<std::string> problemsWithFiles(platform::Files& files);

}  // namespace tessarok::commands
