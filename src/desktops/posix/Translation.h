#pragma once

#include <filesystem>
#include <initializer_list>
#include <string>

namespace tessarok::posix {

/// From here on messages are in the language of the person's locale, when there is a translation:
/// Russian, else English as they stand in the code. They stay English where the locale is not one
/// with UTF-8, which is how all of them are written. Once, on the main thread, before any other.
void useLanguageOfLocale();
/// For code that is loaded into another program, which has chosen the locale by itself: where the
/// translations are, a folder such as /usr/share/locale.
void useTranslationsIn(const std::filesystem::path& folder);

/// A message in the person's language. Any thread.
[[nodiscard]] std::string translated(const std::string& message);
/// The same with the values in the places {1}, {2} …
[[nodiscard]] std::string translated(const std::string& message,
                                     std::initializer_list<std::string> values);
/// A sentence that was made elsewhere, with values in it: these stand in quotation marks, or behind
/// "among" at its end.
[[nodiscard]] std::string translatedSentence(const std::string& sentence);

/// Marks a message that `translated` gets later: the scripts that collect messages look for it.
[[nodiscard]] constexpr const char* translatable(const char* message) {
  return message;
}

}  // namespace tessarok::posix
