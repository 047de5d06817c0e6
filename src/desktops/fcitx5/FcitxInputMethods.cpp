#include "desktops/fcitx5/FcitxInputMethods.h"

#include <fcitx/inputmethodentry.h>
#include <fcitx/inputmethodgroup.h>
#include <fcitx/inputmethodmanager.h>
#include <string_view>

#include "desktops/fcitx5/FcitxClient.h"

namespace tessarok::fcitx5 {

namespace {

using xkb::layoutNames::Layout;

constexpr std::string_view kKeyboard = "keyboard-";

fcitx::InputContext* contextOf(const inputmethod::Client* client) {
  const auto* ours = dynamic_cast<const FcitxClient*>(client);
  return ours == nullptr ? nullptr : ours->context();
}

}  // namespace

bool FcitxInputMethods::hasGroup() const {
  return instance_.inputMethodManager().groupCount() > 0;
}

std::vector<std::string> FcitxInputMethods::chosen() const {
  std::vector<std::string> names;
  if (!hasGroup()) return names;
  for (const auto& item : instance_.inputMethodManager().currentGroup().inputMethodList())
    names.push_back(item.name());
  return names;
}

std::string FcitxInputMethods::current(const inputmethod::Client* client) const {
  if (!hasGroup()) return {};
  if (auto* context = contextOf(client)) return instance_.inputMethod(context);
  const auto& list = instance_.inputMethodManager().currentGroup().inputMethodList();
  return list.empty() ? std::string() : list.front().name();
}

std::optional<Layout> FcitxInputMethods::layoutOf(const std::string& inputMethod) const {
  if (!std::string_view(inputMethod).starts_with(kKeyboard)) return std::nullopt;
  // A person may have given the input method another layout than its own.
  auto name = instance_.inputMethodManager().currentGroup().layoutFor(inputMethod);
  if (name.empty()) name = inputMethod.substr(kKeyboard.size());
  const auto dash = name.find('-');
  if (dash == std::string::npos) return Layout{name, ""};
  return Layout{name.substr(0, dash), name.substr(dash + 1)};
}

bool FcitxInputMethods::select(inputmethod::Client& client, const std::string& inputMethod) {
  auto* context = contextOf(&client);
  if (context == nullptr || !hasGroup()) return false;
  instance_.setCurrentInputMethod(context, inputMethod, true);
  return instance_.inputMethod(context) == inputMethod;
}

}  // namespace tessarok::fcitx5
