#include "desktops/ibus/ShellOutlet.h"

#include <algorithm>
#include <utility>

namespace tessarok::ibus {

namespace {

/// What remains of the slowest answer's time with every answer.
constexpr double kForgetting = 0.9;

}  // namespace

bool ShellOutlet::mayAnswer() const {
  const auto state = extension_.state();
  return state == ShellExtension::State::on || state == ShellExtension::State::unknown;
}

void ShellOutlet::noteSent() {
  const auto now = clock_.uptime();
  if (!mayAnswer() || now < deafUntil_) return;
  sentAt_ = now;
  isToBeAsked_ = true;
}

void ShellOutlet::flush() {
  if (!std::exchange(isToBeAsked_, false)) return;
  auto message = extension_.call("Sync");
  if (!message) return answered(true);
  askedAt_ = clock_.uptime();
  // Of several questions the last one counts.
  call_ = session_->call(std::move(message), [this](sd_bus_message& reply) {
    answered(sd_bus_message_is_method_error(&reply, nullptr) != 0);
  });
  if (!call_) answered(true);
}

void ShellOutlet::answered(bool isError) {
  isAnswering_ = !isError;
  slowest_ = std::max(clock_.uptime() - askedAt_, slowest_ * kForgetting);
  if (isError) deafUntil_ = clock_.uptime() + kAskAgain;
  if (isToBeAsked_ && !isError) return;
  sentAt_.reset();
  if (onDelivered) onDelivered();
}

std::optional<double> ShellOutlet::undeliveredUntil(double now) const {
  if (!sentAt_ || now >= *sentAt_ + kPatience) return std::nullopt;
  return *sentAt_ + kPatience;
}

}  // namespace tessarok::ibus
