#include "words/WordLines.h"

#include "text/Text.h"

namespace tessarok {

std::size_t WordLines::lineBreak() const {
  auto position = rest_.find('\n');
  if (split_ == Split::atEveryLf) return position;
  while (position != std::string_view::npos && position > 0 && rest_[position - 1] == '\r') {
    position = rest_.find('\n', position + 1);
  }
  return position;
}

bool WordLines::next() {
  while (!rest_.empty()) {
    const auto position = lineBreak();
    line_ = text::trimmed(rest_.substr(0, position));
    rest_ = position == std::string_view::npos ? std::string_view() : rest_.substr(position + 1);
    ++number_;
    if (!line_.empty()) return true;
  }
  return false;
}

}  // namespace tessarok
