#include "desktops/posix/TranslationValues.h"

#include <string_view>

namespace tessarok::posix {

namespace {

constexpr std::string_view kPlace = "{1}";

/// The sentence with the bytes from `start` to `end` as the value.
std::pair<std::string, std::string> taken(const std::string& sentence, std::size_t start,
                                          std::size_t end) {
  auto message = sentence;
  message.replace(start, end - start, kPlace);
  return {message, sentence.substr(start, end - start)};
}

}  // namespace

std::string withValues(const std::string& message, std::initializer_list<std::string> values) {
  std::string text;
  for (std::size_t i = 0; i < message.size(); ++i) {
    const bool isPlace = message[i] == '{' && i + 2 < message.size() && message[i + 2] == '}';
    const auto number = isPlace ? static_cast<std::size_t>(message[i + 1] - '0') : 0;
    if (number < 1 || number > values.size()) {
      text += message[i];
      continue;
    }
    text += *(values.begin() + (number - 1));
    i += 2;
  }
  return text;
}

std::pair<std::string, std::string> messageOf(const std::string& sentence) {
  if (const auto start = sentence.find('"'); start != std::string::npos) {
    const auto end = sentence.rfind('"');
    if (end > start) return taken(sentence, start + 1, end);
  }
  constexpr std::string_view kAmong = " among ";
  const auto among = sentence.rfind(kAmong);
  if (among == std::string::npos) return {sentence, {}};
  return taken(sentence, among + kAmong.size(), sentence.size());
}

}  // namespace tessarok::posix
