#include "desktops/ibus/IbusClient.h"

#include <algorithm>
#include <string_view>
#include <utility>

#include "desktops/xkb/HardwareKeys.h"

namespace tessarok::ibus {

namespace {

using inputmethod::Key;
using inputmethod::KeyAnswer;

/// A program that reports nothing gets so many times what the shell itself took, behind the moment
/// in which that has passed a key on; and so many seconds from the moment in which it was sent,
/// where that is not known.
constexpr double kSlower = 2;
constexpr double kSettleWithShell = 0.15;
constexpr double kMostSettle = 0.5;
/// How programs of GTK 4 begin that speak with IBus themselves.
constexpr std::string_view kGtk4 = "gtk4-im";

}  // namespace

inputmethod::Client::Habits IbusClient::habits() const {
  if (!isShell()) return {};
  const auto settle = std::clamp(kSlower * outlet_.slowest(), kSettleOfSilence, kMostSettle);
  // As everywhere on Wayland: bytes are counted in what is to be deleted, which GTK 4.8 does not
  // understand, and a key comes with the modifiers of the moment. And the shell keeps the last text
  // only of those that come before it has passed one on.
  return {.maySwapBytes = true,
          .readsModifiersLate = true,
          .takesOneTextAtATime = true,
          .reportsWhenAsked = true,
          .settle = outlet_.isAnswering() ? settle : kSettleWithShell};
}

bool IbusClient::takesNoKeysBack() const {
  return program_.starts_with(kGtk4);
}

void IbusClient::setContentType(guint purpose, guint hints) {
  isSecret_ = purpose == IBUS_INPUT_PURPOSE_PASSWORD || purpose == IBUS_INPUT_PURPOSE_PIN ||
              (hints & IBUS_INPUT_HINT_PRIVATE) != 0;
}

void IbusClient::forgetField() {
  report_.reset();
}

bool IbusClient::canDelete() const {
  return engine_ != nullptr && (engine_->client_capabilities & IBUS_CAP_SURROUNDING_TEXT) != 0;
}

void IbusClient::noteSent() {
  if (isShell()) outlet_.noteSent();
}

std::optional<double> IbusClient::undeliveredUntil(double now) const {
  return isShell() ? outlet_.undeliveredUntil(now) : std::nullopt;
}

void IbusClient::commit(const std::string& text) {
  noteSent();
  if (engine_ != nullptr) ibus_engine_commit_text(engine_, ibus_text_new_from_string(text.c_str()));
}

void IbusClient::askForReport() {
  if (engine_ != nullptr) ibus_engine_get_surrounding_text(engine_, nullptr, nullptr, nullptr);
}

void IbusClient::deleteBefore(std::size_t scalars) {
  if (engine_ == nullptr) return;
  noteSent();
  ibus_engine_delete_surrounding_text(engine_, -static_cast<gint>(scalars),
                                      static_cast<guint>(scalars));
}

void IbusClient::forward(const Key& key) {
  if (engine_ == nullptr) return;
  noteSent();
  // IBus has the kernel's key codes.
  constexpr int kOffset = xkb::hardwareKeys::kXOffset;
  const auto code = static_cast<guint>(key.code >= kOffset ? key.code - kOffset : 0);
  ibus_engine_forward_key_event(engine_, key.symbol, code, key.states);
  ibus_engine_forward_key_event(engine_, key.symbol, code,
                                key.states | static_cast<guint>(IBUS_RELEASE_MASK));
}

inputmethod::Client::Replayed IbusClient::replay(const Key&, const Key&, int,
                                                 const std::function<KeyAnswer()>& show) {
  // IBus has looked at it when it came.
  return {.isTaken = show() == KeyAnswer::take};
}

}  // namespace tessarok::ibus
