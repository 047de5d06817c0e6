// The names of keyboard layouts that an X server tells.

#include <algorithm>

#include "Check.h"
#include "Input.h"
#include "desktops/xkb/LayoutNames.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace tessarok;
  const auto text = fuzz::textOf(data, size);
  for (const auto& layout : xkb::layoutNames::fromRules(text)) {
    fuzz::check(text.find(layout.name) != std::string_view::npos, "names come from the server");
    fuzz::check(!xkb::layoutNames::identifierOf(layout).empty(), "every layout has an identifier");
  }
  fuzz::check(!xkb::layoutNames::identifierOfName(text).empty(), "every name has an identifier");
  // The same bytes as a list of layouts among the five strings.
  if (text.empty() || text.find('\0') != std::string_view::npos) return 0;
  std::string rules("evdev\0pc105\0", 12);
  rules.append(text).append("\0,winkeys\0\0", 11);
  const auto layouts = xkb::layoutNames::fromRules(rules);
  const auto commas = std::count(text.begin(), text.end(), ',');
  fuzz::check(layouts.size() == static_cast<std::size_t>(commas) + 1, "no layout is left out");
  return 0;
}
