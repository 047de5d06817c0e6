#include "desktops/fcitx5/CorrectionCheck.h"

#include <fcitx-utils/utf8.h>

namespace tessarok::fcitx5 {

namespace {

std::ptrdiff_t scalars(std::string_view text) {
  return static_cast<std::ptrdiff_t>(fcitx::utf8::length(text));
}

}  // namespace

void CorrectionCheck::begin(std::ptrdiff_t stays) {
  forget();
  stays_ = stays;
}

void CorrectionCheck::typed(std::string_view text) {
  if (!stays_) return;
  if (words_.empty()) words_ = text;
  typed_ += text;
  if (typed_.size() > kMostTyped) forget();
}

void CorrectionCheck::forget() {
  stays_.reset();
  words_.clear();
  typed_.clear();
}

bool CorrectionCheck::showsDamage(std::string_view before) const {
  if (!stays_ || words_.empty()) return false;
  bool isFound = false;
  for (auto end = words_.size(); end <= typed_.size(); ++end) {
    const auto seen = std::string_view(typed_).substr(0, end);
    if (!before.ends_with(seen)) continue;
    if (scalars(before.substr(0, before.size() - seen.size())) == *stays_) return false;
    isFound = true;
  }
  return isFound;
}

}  // namespace tessarok::fcitx5
