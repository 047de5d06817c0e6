#include "desktops/virtual/VirtualInputSources.h"

#include <algorithm>
#include <utility>

#include "desktops/layouts/TableLayout.h"
#include "platform/LayoutIdentifiers.h"

namespace tessarok::virtualdesktop {

namespace {

using platform::layoutIdentifiers::kRussianWin;
using platform::layoutIdentifiers::kUs;

}  // namespace

VirtualInputSources::VirtualInputSources() : enabled_{std::string(kUs), std::string(kRussianWin)} {
  setCurrent(enabled_.front());
}

std::vector<std::shared_ptr<platform::InputSourceHandle>> VirtualInputSources::enabledLayouts() {
  std::vector<std::shared_ptr<platform::InputSourceHandle>> handles;
  for (const auto& identifier : enabled_) {
    handles.push_back(std::make_shared<layouts::TableLayout>(identifier));
  }
  return handles;
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

void VirtualInputSources::setCurrent(Language language) {
  setCurrent(std::string(language == Language::russian ? kRussianWin : kUs));
}

void VirtualInputSources::setCurrent(std::string identifier) {
  const auto* own = KeyTable::ofLayout(identifier);
  table_ = own != nullptr ? own : &KeyTable::english();
  current_ = std::move(identifier);
}

}  // namespace tessarok::virtualdesktop
