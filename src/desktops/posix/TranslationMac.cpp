// A Mac's application has its texts in its own folder; the commands speak English there.

#include "desktops/posix/Translation.h"
#include "desktops/posix/TranslationValues.h"

namespace tessarok::posix {

void useLanguageOfLocale() {}

void useTranslationsIn(const std::filesystem::path&) {}

std::string translated(const std::string& message) {
  return message;
}

std::string translated(const std::string& message, std::initializer_list<std::string> values) {
  return withValues(message, values);
}

std::string translatedSentence(const std::string& sentence) {
  return sentence;
}

}  // namespace tessarok::posix
