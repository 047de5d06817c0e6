#include "desktops/inputmethod/FieldInputSources.h"

#include <algorithm>
#include <utility>

namespace tessarok::inputmethod {

/// One of the chosen input methods.
class FieldInputSources::Handle final : public platform::InputSourceHandle {
 public:
  Handle(std::string inputMethod, std::string identifier, std::string name,
         std::shared_ptr<const XkbLayout> layout)
      : inputMethod_(std::move(inputMethod)),
        identifier_(std::move(identifier)),
        name_(std::move(name)),
        layout_(std::move(layout)) {}

  std::optional<std::string> identifier() const override { return identifier_; }
  std::string name() const override { return name_; }
  bool hasLayoutData() const override { return layout_ != nullptr; }
  std::u16string translate(std::uint16_t keyCode, bool shift, std::uint32_t) const override {
    return layout_ == nullptr ? std::u16string() : layout_->shown(keyCode, shift);
  }
  [[nodiscard]] const std::string& inputMethod() const { return inputMethod_; }

 private:
  std::string inputMethod_;
  std::string identifier_;
  std::string name_;
  std::shared_ptr<const XkbLayout> layout_;
};

std::string FieldInputSources::identifierOf(const std::string& inputMethod) const {
  const auto layout = methods_.layoutOf(inputMethod);
  return layout ? xkb::layoutNames::identifierOf(*layout) : methods_.identifierOf(inputMethod);
}

std::vector<std::shared_ptr<platform::InputSourceHandle>> FieldInputSources::enabledLayouts() {
  std::vector<std::shared_ptr<platform::InputSourceHandle>> handles;
  for (const auto& name : methods_.chosen()) {
    const auto layout = methods_.layoutOf(name);
    handles.push_back(std::make_shared<Handle>(name, identifierOf(name),
                                               layout ? xkb::layoutNames::nameOf(*layout) : name,
                                               layout ? XkbLayout::named(*layout) : nullptr));
  }
  return handles;
}

const std::optional<std::string>& FieldInputSources::current() {
  const auto inputMethod = pending_ ? *pending_ : methods_.current(client_.get());
  current_ = inputMethod.empty() ? std::optional<std::string>() : identifierOf(inputMethod);
  return current_;
}

bool FieldInputSources::select(platform::InputSourceHandle& source) {
  const auto* handle = dynamic_cast<const Handle*>(&source);
  if (handle == nullptr || !client_) return false;
  if (!putsOff_) return selectNow(*client_, handle->inputMethod());
  const auto chosen = methods_.chosen();
  if (std::find(chosen.begin(), chosen.end(), handle->inputMethod()) == chosen.end()) return false;
  pending_ = handle->inputMethod();
  isTaken_ = false;
  return true;
}

std::optional<std::string> FieldInputSources::takePutOff() {
  if (!pending_ || std::exchange(isTaken_, true)) return std::nullopt;
  return pending_;
}

bool FieldInputSources::selectNow(Client& client, const std::string& inputMethod) {
  pending_.reset();
  return methods_.select(client, inputMethod);
}

void FieldInputSources::forgetPutOff() {
  pending_.reset();
}

std::shared_ptr<const XkbLayout> FieldInputSources::layoutOf(const Client& client) const {
  const auto layout = methods_.layoutOf(methods_.current(&client));
  return layout ? XkbLayout::named(*layout) : nullptr;
}

bool FieldInputSources::isKeyboard(const Client& client) const {
  return methods_.layoutOf(methods_.current(&client)).has_value();
}

}  // namespace tessarok::inputmethod
