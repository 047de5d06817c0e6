#include "desktops/posix/EnglishMessages.h"

#include <clocale>
// For LC_MESSAGES, which the C++ standard does not know.
#include <locale.h>

namespace tessarok::posix {

EnglishMessages::EnglishMessages() : before_(std::setlocale(LC_MESSAGES, nullptr)) {
  static_cast<void>(std::setlocale(LC_MESSAGES, "C"));
}

EnglishMessages::~EnglishMessages() {
  static_cast<void>(std::setlocale(LC_MESSAGES, before_.c_str()));
}

}  // namespace tessarok::posix
