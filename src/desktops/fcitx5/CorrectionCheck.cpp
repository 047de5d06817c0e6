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
  witnesses_ = 0;
  typed_.clear();
}

void CorrectionCheck::reported(std::string_view before) {
  if (!stays_ || words_.empty()) return;
  std::optional<std::ptrdiff_t> found;
  for (auto end = words_.size(); end <= typed_.size(); ++end) {
    const auto seen = std::string_view(typed_).substr(0, end);
    if (!before.ends_with(seen)) continue;
    found = scalars(before.substr(0, before.size() - seen.size()));
    if (found == stays_) break;
  }
  if (!found || found == stays_) return isAsExpected();
  if (found_ != *found) witnesses_ = 0;
  found_ = *found;
  // The same report again is no further witness.
  if (witnesses_ == 0 || before != last_) ++witnesses_;
  last_ = before;
}

}  // namespace tessarok::fcitx5
