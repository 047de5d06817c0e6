#include "desktops/inputmethod/CorrectionCheck.h"

#include "desktops/inputmethod/Scalars.h"

namespace tessarok::inputmethod {

void CorrectionCheck::begin(std::ptrdiff_t stays) {
  forget();
  stays_ = stays;
}

void CorrectionCheck::typed(std::string_view text) {
  if (!stays_) return;
  if (typed_.empty()) words_ = text.size();
  typed_ += text;
  if (typed_.size() > kMostTyped) forget();
}

void CorrectionCheck::forget() {
  stays_.reset();
  typed_.clear();
  witnesses_ = 0;
}

void CorrectionCheck::reported(std::string_view before) {
  if (!stays_ || typed_.empty()) return;
  std::optional<std::ptrdiff_t> found;
  for (auto end = words_; end <= typed_.size(); ++end) {
    const auto seen = std::string_view(typed_).substr(0, end);
    if (!before.ends_with(seen)) continue;
    found = scalars(before.substr(0, before.size() - seen.size()));
    if (found == stays_) break;
  }
  if (!found || found == stays_) return isAsExpected();
  if (found_ != *found) witnesses_ = 0;
  found_ = *found;
  // The same report again is no further witness.
  if (witnesses_ == 0 || before.size() != witnessed_) ++witnesses_;
  witnessed_ = before.size();
}

}  // namespace tessarok::inputmethod
