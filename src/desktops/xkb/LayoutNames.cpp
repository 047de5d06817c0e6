#include "desktops/xkb/LayoutNames.h"

#include <algorithm>
#include <array>

#include "platform/LayoutIdentifiers.h"

namespace tessarok::xkb::layoutNames {

namespace {

using namespace platform::layoutIdentifiers;

struct Known {
  std::string_view layout;
  std::string_view variant;
  std::string_view identifier;
};

/// The plain layouts first. Variants that only add signs with AltGr are another English layout, so
/// that a person who has both can tell them apart.
constexpr Known kKnown[] = {
    {"us", "", kUs},
    {"us", "basic", kUs},
    {"us", "euro", kAbc},
    {"us", "altgr-intl", kAbc},
    {"us", "altgr-weur", kAbc},
    {"us", "mac", kAbc},
    {"us", "symbolic", kAbc},
    {"us", "intl", kInternational},
    {"us", "alt-intl", kInternational},
    {"gb", "", kBritish},
    {"gb", "basic", kBritish},
    {"gb", "extd", kBritish},
    {"gb", "intl", kBritish},
    {"gb", "mac", kBritish},
    {"gb", "mac_intl", kBritish},
    {"ru", "", kRussianWin},
    {"ru", "winkeys", kRussianWin},
    {"ru", "legacy", kRussianWin},
    {"ru", "os_legacy", kRussianWin},
    {"ru", "os_winkeys", kRussianWin},
    {"ru", "typewriter", kRussianWin},
    {"ru", "typewriter-legacy", kRussianWin},
    {"ru", "mac", kRussian},
};

struct KnownName {
  std::string_view name;
  std::string_view identifier;
};

constexpr KnownName kKnownNames[] = {
    {"English (US)", kUs},
    {"English (US, euro on 5)", kAbc},
    {"English (intl., with AltGr dead keys)", kAbc},
    {"English (US, intl., with dead keys)", kInternational},
    {"English (US, alt. intl.)", kInternational},
    {"English (UK)", kBritish},
    {"Russian", kRussianWin},
    {"Russian (legacy)", kRussianWin},
    {"Russian (Macintosh)", kRussian},
};

std::vector<std::string> split(std::string_view text, char separator) {
  std::vector<std::string> parts(1);
  for (const char byte : text) {
    if (byte == separator) {
      parts.emplace_back();
    } else {
      parts.back() += byte;
    }
  }
  return parts;
}

}  // namespace

std::vector<Layout> fromRules(std::string_view rulesNames) {
  // Rules, model, layouts, variants, options.
  const auto strings = split(rulesNames, '\0');
  if (strings.size() < 4 || strings[2].empty()) return {};
  const auto variants = split(strings[3], ',');
  std::vector<Layout> layouts;
  for (const auto& name : split(strings[2], ',')) {
    const auto place = layouts.size();
    layouts.push_back({name, place < variants.size() ? variants[place] : ""});
  }
  return layouts;
}

std::string nameOf(const Layout& layout) {
  return layout.name + (layout.variant.empty() ? "" : "(" + layout.variant + ")");
}

std::string identifierOf(const Layout& layout) {
  const auto* known = std::find_if(std::begin(kKnown), std::end(kKnown), [&](const Known& entry) {
    return entry.layout == layout.name && entry.variant == layout.variant;
  });
  if (known != std::end(kKnown)) return std::string(known->identifier);
  return "xkb." + nameOf(layout);
}

std::string identifierOfName(std::string_view name) {
  for (const auto& known : kKnownNames) {
    if (known.name == name) return std::string(known.identifier);
  }
  return "xkb." + std::string(name);
}

}  // namespace tessarok::xkb::layoutNames
