#include "platform/fcitx5/ClientField.h"

#include <algorithm>
#include <utility>

#include "Text.h"

namespace tessarok::fcitx5 {

namespace {

/// As much as a few words put right together, in Characters and in bytes.
constexpr std::size_t kLongestTail = 256;
constexpr std::size_t kTailLimit = 2048;
/// So often may a program fail to report before it is not waited for any more, and so many good
/// reports make up for it: a busy machine is no fault of the program.
constexpr int kMaxFailures = 2;
constexpr int kForgiven = 10;

std::ptrdiff_t scalars(std::string_view text) {
  return std::count_if(text.begin(), text.end(),
                       [](char byte) { return (static_cast<unsigned char>(byte) & 0xC0) != 0x80; });
}

}  // namespace

void ClientField::reset() {
  *this = ClientField();
}

void ClientField::forgetText() {
  tail_.clear();
  offset_.reset();
  isConfirmed_ = false;
}

void ClientField::startCounting() {
  offset_.reset();
  if (!report_ || isReportSelected_ || !isReportCurrent_) return;
  offset_ = static_cast<std::ptrdiff_t>(reportLength_);
}

void ClientField::typed(std::string_view text) {
  if (tail_.empty()) startCounting();
  tail_ += text;
  isConfirmed_ = false;
  if (tail_.size() <= kTailLimit) return;
  const auto before = scalars(tail_);
  tail_ = std::string(text::last(tail_, kLongestTail));
  if (offset_) *offset_ += before - scalars(tail_);
}

void ClientField::erased(std::size_t characters) {
  isConfirmed_ = false;
  tail_.resize(text::withoutLast(tail_, characters).size());
  if (tail_.empty()) offset_.reset();
}

void ClientField::keyOfUnknownEffect() {
  before_.reset();
  if (report_) {
    before_ = BeforeKey{.text = tail_, .length = expectedLength(), .shown = *report_};
    before_->isShown = tail_.empty() || matches();
  }
  forgetText();
}

std::optional<std::ptrdiff_t> ClientField::expectedLength() const {
  return offset_ ? std::optional(*offset_ + scalars(tail_)) : std::nullopt;
}

void ClientField::noteReportBeforeKey() {
  if (!before_ || before_->isShown) return;
  const auto length = static_cast<std::ptrdiff_t>(reportLength_);
  if (before_->length.value_or(length) != length || !report_->ends_with(before_->text)) return;
  before_->isShown = true;
  before_->shown = *report_;
}

bool ClientField::showsEffectOfKey() const {
  if (!before_ || !report_ || !tail_.empty()) return false;
  if (before_->isShown) return *report_ != before_->shown;
  // The reports of what was typed before the key are still coming in, and grow.
  const auto length = static_cast<std::ptrdiff_t>(reportLength_);
  return length < before_->length.value_or(0) && length < scalars(before_->shown);
}

void ClientField::sent(Way way, bool own, double now) {
  isUnsettled_ = true;
  isReportCurrent_ = false;
  way_ = way;
  isOwn_ = own;
  sentAt_ = now;
}

bool ClientField::reported(std::string_view before, bool isSelected) {
  report_ = std::string(before);
  reportLength_ = static_cast<std::size_t>(scalars(before));
  isReportSelected_ = isSelected;
  noteReportBeforeKey();
  if (tail_.empty()) return true;
  if (!matches()) return !std::exchange(isConfirmed_, false);
  isConfirmed_ = true;
  if (++confirmations_ >= kForgiven) failures_ = 0;
  reportsFollow_ = failures_ < kMaxFailures;
  offset_ = static_cast<std::ptrdiff_t>(reportLength_) - scalars(tail_);
  return true;
}

void ClientField::reportedNothing() {
  report_.reset();
  isConfirmed_ = false;
}

bool ClientField::matches() const {
  if (!report_ || isReportSelected_ || tail_.empty() || !report_->ends_with(tail_)) return false;
  return !offset_ || *offset_ + scalars(tail_) == static_cast<std::ptrdiff_t>(reportLength_);
}

std::optional<std::string_view> ClientField::last(std::size_t characters) const {
  const auto slice = text::last(tail_, characters);
  if (text::count(slice) < characters) return std::nullopt;
  return slice;
}

double ClientField::patience() const {
  if (reportsFollow_ && tail_.empty()) {
    return unanswered_ < kMaxFailures ? kUnknownEffectPatience : kUnansweredPatience;
  }
  if (reportsFollow_) return kPatience;
  if (failures_ >= kMaxFailures || !report_) return kSettle;
  if (failures_ > 0) return report_->empty() ? kSettle : kUnansweredPatience;
  // An empty report is what programs give that report nothing, and empty fields.
  return report_->empty() ? kFirstSettle : kPatience;
}

std::optional<double> ClientField::unsettledUntil(double now) {
  if (!isUnsettled_) return std::nullopt;
  const bool isDone = matches() || showsEffectOfKey();
  const auto until = sentAt_ + patience();
  if (!isDone && now < until) return until;
  if (!isDone && report_ && !tail_.empty() && (reportsFollow_ || failures_ == 0)) {
    ++failures_;
    confirmations_ = 0;
    reportsFollow_ = false;
  }
  if (before_ && tail_.empty()) unanswered_ = isDone ? 0 : unanswered_ + 1;
  isUnsettled_ = false;
  isReportCurrent_ = isDone;
  before_.reset();
  return std::nullopt;
}

}  // namespace tessarok::fcitx5
