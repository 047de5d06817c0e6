#pragma once

#include <string>
#include <string_view>
#include <vector>

/// The names of keyboard layouts: XKB's, and those by which the corrector knows them.
namespace tessarok::xkb::layoutNames {

/// A layout and its variant, such as "us" and "intl"; the variant may be empty.
struct Layout {
  std::string name;
  std::string variant;
};

/// The value of the root window's _XKB_RULES_NAMES: five strings, each with a zero byte behind it.
/// Empty when it is not that.
[[nodiscard]] std::vector<Layout> fromRules(std::string_view rulesNames);
/// A layout as a person writes it: "us", "us(intl)".
[[nodiscard]] std::string nameOf(const Layout& layout);
/// The identifier of a layout. Those whose letters are neither QWERTY nor ЙЦУКЕН, and all other
/// languages, get names of their own, which the corrector leaves alone.
[[nodiscard]] std::string identifierOf(const Layout& layout);
/// The identifier for the name that a keymap gives a group, such as "English (US)"; for keymaps
/// that were loaded without rules.
[[nodiscard]] std::string identifierOfName(std::string_view name);

}  // namespace tessarok::xkb::layoutNames
