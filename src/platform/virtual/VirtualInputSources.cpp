#include "platform/virtual/VirtualInputSources.h"

#include <algorithm>
#include <utility>

namespace tessarok::virtualdesktop {

namespace {

class Layout final : public platform::InputSourceHandle {
 public:
  explicit Layout(std::string identifier)
      : identifier_(std::move(identifier)), table_(KeyTable::ofLayout(identifier_)) {}

  std::optional<std::string> identifier() const override { return identifier_; }
  bool hasLayoutData() const override { return table_ != nullptr; }
  std::u16string translate(std::uint16_t keyCode, bool shift, std::uint32_t) const override {
    const auto character =
        table_ == nullptr ? std::optional<char16_t>() : table_->character(keyCode, shift);
    return character ? std::u16string(1, *character) : std::u16string();
  }

 private:
  std::string identifier_;
  const KeyTable* table_;
};

}  // namespace

VirtualInputSources::VirtualInputSources()
    : enabled_{"com.apple.keylayout.US", "com.apple.keylayout.RussianWin"} {
  setCurrent(enabled_.front());
}

std::vector<std::shared_ptr<platform::InputSourceHandle>> VirtualInputSources::enabledLayouts() {
  std::vector<std::shared_ptr<platform::InputSourceHandle>> layouts;
  for (const auto& identifier : enabled_)
    layouts.push_back(std::make_shared<Layout>(identifier));
  return layouts;
}

bool VirtualInputSources::select(platform::InputSourceHandle& source) {
  if (std::exchange(failsNextSelection_, false)) return false;
  const auto identifier = source.identifier();
  if (!identifier || !isEnabled(*identifier)) return false;
  setCurrent(*identifier);
  if (onSelected) onSelected();
  return true;
}

bool VirtualInputSources::isEnabled(const std::string& identifier) const {
  return std::find(enabled_.begin(), enabled_.end(), identifier) != enabled_.end();
}

void VirtualInputSources::setCurrent(std::string identifier) {
  const auto* own = KeyTable::ofLayout(identifier);
  table_ = own != nullptr ? own : &KeyTable::english();
  current_ = std::move(identifier);
}

}  // namespace tessarok::virtualdesktop
