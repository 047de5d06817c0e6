#include "desktops/inputmethod/ClientField.h"

#include <algorithm>

namespace tessarok::inputmethod {

namespace {

using Verdict = FieldHistory::Verdict;

/// So often may a program fail to report before it is not waited for as if it did: a busy machine
/// is no fault of the program.
constexpr int kMaxUnanswered = 2;
/// What remains of the slowest report's time with every report.
constexpr double kForgetting = 0.99;

}  // namespace

void ClientField::reset(double settle) {
  *this = ClientField();
  settle_ = settle;
}

void ClientField::forgetText() {
  history_.forget();
  check_.forget();
}

int& ClientField::unanswered(Effect effect) {
  return unanswered_[static_cast<std::size_t>(effect)];
}

int ClientField::unanswered(Effect effect) const {
  return unanswered_[static_cast<std::size_t>(effect)];
}

void ClientField::sent(const Sending& sending) {
  last_ = sending;
  isGivenUp_ = false;
}

void ClientField::correctionBegins(std::size_t characters) {
  check_.forget();
  const auto stays = history_.lengthWithout(characters);
  if (stays) check_.begin(*stays);
}

void ClientField::typed(std::string_view text, const Sending& sending) {
  history_.typed(text, sending.now);
  check_.typed(text);
  sent(sending);
}

void ClientField::erased(std::size_t characters, const Sending& sending) {
  history_.erased(characters, sending.now);
  if (!sending.isOwn) check_.forget();
  sent(sending);
}

void ClientField::keyOfUnknownEffect(const Sending& sending) {
  history_.unknownKey(sending.now);
  check_.forget();
  sent(sending);
}

bool ClientField::reported(std::string_view before, bool isSelected, double now) {
  reports_ = true;
  isReportEmpty_ = before.empty();
  isSelected_ = isSelected;
  if (isSelected) {
    // The next text will replace what is selected.
    if (history_.awaited()) return true;
    history_.forget();
    return false;
  }
  const auto verdict = history_.reported(before);
  noteArrival(now);
  if (verdict == Verdict::fits) {
    check_.isAsExpected();
  } else {
    check_.reported(before);
    isDamaged_ = isDamaged_ || check_.isDamaged();
  }
  // As long as something is on its way, a report may be of a text between the two.
  if (!history_.awaited()) check_.forget();
  if (verdict != Verdict::unclear) return verdict == Verdict::fits;
  // What is not known to have arrived by now never will be.
  if (!isGivenUp_ || now < last_.now + kPatience) return true;
  history_.restart(before);
  check_.forget();
  return false;
}

void ClientField::noteArrival(double now) {
  const auto& arrival = history_.arrival();
  if (!arrival) return;
  unanswered(arrival->effect) = 0;
  if (arrival->effect != Effect::text) return;
  // Other effects may be reported only with the next key.
  slowest_ = std::max(now - arrival->sentAt, slowest_ * kForgetting);
  reportsFollow_ = true;
}

void ClientField::reportedNothing() {
  reports_ = false;
  isSelected_ = false;
  history_.reportsEnded();
  check_.forget();
}

double ClientField::patience(Effect effect) const {
  if (!reports_) return settle_;
  const bool isTried = unanswered(effect) < kMaxUnanswered;
  if (reportsFollow_) {
    if (!isTried) return std::clamp(kSlower * slowest_, kLeastPatience, kMostPatience);
    return effect == Effect::unknown ? kUnknownPatience : kPatience;
  }
  // An empty report is what programs give that report nothing, and empty fields.
  if (isReportEmpty_)
    return unanswered(Effect::text) == 0 ? std::max(kFirstSettle, settle_) : settle_;
  if (!isTried) return settle_;
  return unanswered(effect) == 0 && effect != Effect::unknown ? kPatience : kUnknownPatience;
}

bool ClientField::isStillOnItsWay(double now) {
  if (!history_.awaited() || isGivenUp_) return false;
  last_.now = std::max(last_.now, now);
  return true;
}

std::optional<double> ClientField::unsettledUntil(double now) {
  const auto awaited = history_.awaited();
  if (!awaited || isGivenUp_) return std::nullopt;
  const auto until = last_.now + patience(*awaited);
  if (now < until) return until;
  isGivenUp_ = true;
  if (!reports_) return std::nullopt;
  if (++unanswered(*awaited) >= kMaxUnanswered && *awaited == Effect::text) reportsFollow_ = false;
  return std::nullopt;
}

}  // namespace tessarok::inputmethod
