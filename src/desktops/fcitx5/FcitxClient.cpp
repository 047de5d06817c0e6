#include "desktops/fcitx5/FcitxClient.h"

#include <algorithm>
#include <fcitx-utils/utf8.h>
#include <fcitx/candidatelist.h>
#include <fcitx/inputpanel.h>
#include <string_view>

#include "desktops/fcitx5/FcitxKeys.h"

namespace tessarok::fcitx5 {

namespace {

using fcitx::CapabilityFlag;
using inputmethod::Key;
using inputmethod::KeyAnswer;

/// Fcitx's part for KWin and Weston: the first version of the input method protocol. KWin tells a
/// program the modifiers of the moment in which it hands a key back, and by then Shift may be up:
/// "сайт!" became "сайт1" with keys 15 ms apart.
constexpr std::string_view kKwinFrontend = "wayland";
/// Fcitx's part for programs with a part of its own in their toolkit.
constexpr std::string_view kBusFrontend = "dbus";

}  // namespace

bool FcitxClient::isWayland() const {
  const auto* context = context_.get();
  return context != nullptr && std::string_view(context->frontend()).starts_with("wayland");
}

inputmethod::Client::Habits FcitxClient::habits() const {
  const auto* context = context_.get();
  Habits habits;
  // Wayland counts bytes where it is asked to delete, and GTK 4.8 takes them for characters: of a
  // Russian word it would delete twice as much, the person's text before it as well.
  habits.maySwapBytes = isWayland();
  habits.readsModifiersLate = isWayland();
  habits.settle = kSettleOfSilence;
  habits.handsKeysOn = !isWayland();
  // The terminal foot forgets a text that comes before the compositor has heard where the caret is
  // behind the one before, about a millisecond later: a letter in four of fifty lines.
  habits.takesOneTextAtATime = isWayland() && !context->surroundingText().isValid();
  habits.losesShift = context != nullptr && context->frontend() == kKwinFrontend;
  // Of Fcitx's parts of toolkits only that of GTK 4 cannot put keys in their order, and it shows
  // one that it is handed back to nobody: lines ran together.
  habits.takesNoKeysBack = context != nullptr && context->frontend() == kBusFrontend &&
                           !context->capabilityFlags().test(CapabilityFlag::KeyEventOrderFix);
  return habits;
}

std::string FcitxClient::program() const {
  const auto* context = context_.get();
  return context == nullptr ? std::string() : context->program();
}

bool FcitxClient::hasFocus() const {
  const auto* context = context_.get();
  return context != nullptr && context->hasFocus();
}

bool FcitxClient::isSecret() const {
  const auto* context = context_.get();
  const fcitx::CapabilityFlags secret{CapabilityFlag::Password, CapabilityFlag::Disable};
  return context != nullptr && context->capabilityFlags().testAny(secret);
}

bool FcitxClient::isComposing() const {
  auto* context = context_.get();
  if (context == nullptr) return false;
  if (instance_.isComposing(context)) return true;
  const auto& panel = context->inputPanel();
  return !panel.preedit().empty() || !panel.clientPreedit().empty() ||
         (panel.candidateList() && !panel.candidateList()->empty());
}

bool FcitxClient::canDelete() const {
  const auto* context = context_.get();
  return context != nullptr && context->capabilityFlags().test(CapabilityFlag::SurroundingText);
}

std::optional<inputmethod::Client::Report> FcitxClient::report() const {
  const auto* context = context_.get();
  if (context == nullptr || !context->surroundingText().isValid()) return std::nullopt;
  const auto& surrounding = context->surroundingText();
  const auto& text = surrounding.text();
  const auto cursor = std::min<std::size_t>(surrounding.cursor(), fcitx::utf8::length(text));
  const auto bytes = fcitx::utf8::ncharByteLength(text.begin(), cursor);
  return Report{.before = text.substr(0, static_cast<std::size_t>(bytes)),
                .isSelected = surrounding.cursor() != surrounding.anchor()};
}

void FcitxClient::commit(const std::string& text) {
  if (auto* context = context_.get()) context->commitString(text);
}

void FcitxClient::deleteBefore(std::size_t scalars) {
  auto* context = context_.get();
  if (context == nullptr) return;
  context->deleteSurroundingText(-static_cast<int>(scalars), static_cast<unsigned>(scalars));
}

void FcitxClient::forward(const Key& key) {
  auto* context = context_.get();
  if (context == nullptr) return;
  const auto forwarded = fcitxKeys::fcitxKeyOf(key);
  context->forwardKey(forwarded, false);
  // On Wayland one call is a press with its release.
  if (!isWayland()) context->forwardKey(forwarded, true);
}

inputmethod::Client::Replayed FcitxClient::replay(const Key& key, const Key& translated, int time,
                                                  const std::function<KeyAnswer()>& show) {
  auto* context = context_.get();
  if (context == nullptr) return {.isTaken = true};
  fcitx::KeyEvent event(context, fcitxKeys::fcitxKeyOf(key), false, time);
  const Replay replay{translated, show};
  replay_ = &replay;
  const bool isAccepted = context->keyEvent(event);
  replay_ = nullptr;
  return {.isTaken = isAccepted, .isHidden = event.filtered()};
}

bool FcitxClient::answerReplayed(fcitx::KeyEvent& event) const {
  if (replay_ == nullptr) return false;
  // Fcitx has translated it by the modifiers of this moment, which belong to later keys.
  if (event.forward()) event.setRawKey(fcitxKeys::fcitxKeyOf(replay_->translated));
  fcitxKeys::answer(event, replay_->show());
  return true;
}

}  // namespace tessarok::fcitx5
