#include "desktops/fcitx5/FcitxInputSources.h"

#include <algorithm>
#include <fcitx/inputcontext.h>
#include <fcitx/inputmethodentry.h>
#include <fcitx/inputmethodgroup.h>
#include <fcitx/inputmethodmanager.h>
#include <string_view>
#include <utility>

namespace tessarok::fcitx5 {

namespace {

using xkb::layoutNames::Layout;

constexpr std::string_view kKeyboard = "keyboard-";

}  // namespace

/// An input method of the group.
class FcitxInputSources::Handle final : public platform::InputSourceHandle {
 public:
  Handle(std::string inputMethod, std::string identifier, std::shared_ptr<const XkbLayout> layout)
      : inputMethod_(std::move(inputMethod)),
        identifier_(std::move(identifier)),
        layout_(std::move(layout)) {}

  std::optional<std::string> identifier() const override { return identifier_; }
  bool hasLayoutData() const override { return layout_ != nullptr; }
  std::u16string translate(std::uint16_t keyCode, bool shift, std::uint32_t) const override {
    return layout_ == nullptr ? std::u16string() : layout_->shown(keyCode, shift);
  }
  [[nodiscard]] const std::string& inputMethod() const { return inputMethod_; }

 private:
  std::string inputMethod_;
  std::string identifier_;
  std::shared_ptr<const XkbLayout> layout_;
};

std::optional<Layout> FcitxInputSources::xkbLayout(const std::string& inputMethod) {
  if (!std::string_view(inputMethod).starts_with(kKeyboard)) return std::nullopt;
  // A person may have given the input method another layout than its own.
  auto name = instance_.inputMethodManager().currentGroup().layoutFor(inputMethod);
  if (name.empty()) name = inputMethod.substr(kKeyboard.size());
  const auto dash = name.find('-');
  if (dash == std::string::npos) return Layout{name, ""};
  return Layout{name.substr(0, dash), name.substr(dash + 1)};
}

std::string FcitxInputSources::identifierOf(const std::string& inputMethod) {
  const auto layout = xkbLayout(inputMethod);
  return layout ? xkb::layoutNames::identifierOf(*layout) : "fcitx." + inputMethod;
}

std::vector<std::shared_ptr<platform::InputSourceHandle>> FcitxInputSources::enabledLayouts() {
  std::vector<std::shared_ptr<platform::InputSourceHandle>> handles;
  auto& manager = instance_.inputMethodManager();
  // Before Fcitx has read its groups there is no current one to ask for.
  if (manager.groupCount() == 0) return handles;
  for (const auto& item : manager.currentGroup().inputMethodList()) {
    const auto layout = xkbLayout(item.name());
    handles.push_back(std::make_shared<Handle>(item.name(), identifierOf(item.name()),
                                               layout ? XkbLayout::named(*layout) : nullptr));
  }
  return handles;
}

void FcitxInputSources::setContext(fcitx::InputContext* context) {
  if (context == nullptr) {
    context_.unwatch();
  } else {
    context_ = context->watch();
  }
}

std::string FcitxInputSources::inputMethodOf(fcitx::InputContext* context) {
  auto& manager = instance_.inputMethodManager();
  if (manager.groupCount() == 0) return {};
  if (context != nullptr) return instance_.inputMethod(context);
  const auto& list = manager.currentGroup().inputMethodList();
  return list.empty() ? std::string() : list.front().name();
}

const std::optional<std::string>& FcitxInputSources::current() {
  const auto inputMethod = pending_ ? *pending_ : inputMethodOf(context_.get());
  current_ = inputMethod.empty() ? std::optional<std::string>() : identifierOf(inputMethod);
  return current_;
}

bool FcitxInputSources::select(platform::InputSourceHandle& source) {
  const auto* handle = dynamic_cast<const Handle*>(&source);
  auto* context = context_.get();
  auto& manager = instance_.inputMethodManager();
  if (handle == nullptr || context == nullptr || manager.groupCount() == 0) return false;
  if (!putsOff_) return selectNow(*context, handle->inputMethod());
  const auto& list = manager.currentGroup().inputMethodList();
  const bool isThere = std::any_of(list.begin(), list.end(), [&](const auto& item) {
    return item.name() == handle->inputMethod();
  });
  if (!isThere) return false;
  pending_ = handle->inputMethod();
  isTaken_ = false;
  return true;
}

std::optional<std::string> FcitxInputSources::takePutOff() {
  if (!pending_ || std::exchange(isTaken_, true)) return std::nullopt;
  return pending_;
}

bool FcitxInputSources::selectNow(fcitx::InputContext& context, const std::string& inputMethod) {
  pending_.reset();
  if (instance_.inputMethodManager().groupCount() == 0) return false;
  instance_.setCurrentInputMethod(&context, inputMethod, true);
  return instance_.inputMethod(&context) == inputMethod;
}

void FcitxInputSources::forgetPutOff() {
  pending_.reset();
}

std::shared_ptr<const XkbLayout> FcitxInputSources::layoutOf(fcitx::InputContext& context) {
  const auto layout = xkbLayout(inputMethodOf(&context));
  return layout ? XkbLayout::named(*layout) : nullptr;
}

bool FcitxInputSources::isKeyboard(fcitx::InputContext& context) {
  return std::string_view(inputMethodOf(&context)).starts_with(kKeyboard);
}

}  // namespace tessarok::fcitx5
