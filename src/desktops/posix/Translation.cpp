#include "desktops/posix/Translation.h"

#include <clocale>
#include <langinfo.h>
#include <libintl.h>
#include <locale.h>
#include <system_error>
#include <unistd.h>

#include "desktops/posix/Processes.h"
#include "desktops/posix/TranslationValues.h"

namespace tessarok::posix {

namespace {

namespace fs = std::filesystem;

constexpr const char* kDomain = "tessarok";
constexpr const char* kCodeset = "UTF-8";

/// Whether the person's texts are in UTF-8; the process's own locale stays as it is.
bool isUtf8Locale() {
  const auto locale = ::newlocale(LC_CTYPE_MASK, "", nullptr);
  if (locale == nullptr) return false;
  const bool isUtf8 = std::string(::nl_langinfo_l(CODESET, locale)) == kCodeset;
  ::freelocale(locale);
  return isUtf8;
}

/// Installed beside bin, as word data are; where the program was built, beside itself.
fs::path translationsBesideExecutable() {
  const auto executable = programFileOf(::getpid());
  if (!executable) return {};
  const auto folder = executable->parent_path();
  return folder.filename() == "bin" ? folder.parent_path() / "share" / "locale" : folder / "locale";
}

/// The message of the catalogue; the same one where there is none.
std::string lookedUp(const std::string& message) {
  // The answer to an empty one would be the catalogue's own heading.
  return message.empty() ? message : ::dgettext(kDomain, message.c_str());
}

}  // namespace

void useLanguageOfLocale() {
  if (!isUtf8Locale()) return;
  // Messages alone: numbers are written and read by programs too.
  if (std::setlocale(LC_MESSAGES, "") == nullptr) return;
  const auto folder = translationsBesideExecutable();
  if (!folder.empty()) useTranslationsIn(folder);
  // The errors of the system are put into these messages; else they would be in the encoding of
  // the category that stays as it is, which has no Russian letters.
  ::bind_textdomain_codeset("libc", kCodeset);
}

void useTranslationsIn(const fs::path& folder) {
  ::bindtextdomain(kDomain, folder.c_str());
  ::bind_textdomain_codeset(kDomain, kCodeset);
}

std::string translated(const std::string& message) {
  return lookedUp(message);
}

std::string translated(const std::string& message, std::initializer_list<std::string> values) {
  return withValues(lookedUp(message), values);
}

std::string translatedSentence(const std::string& sentence) {
  const auto [message, value] = messageOf(sentence);
  const auto found = lookedUp(message);
  return found == message ? lookedUp(sentence) : withValues(found, {value});
}

}  // namespace tessarok::posix
