#pragma once

#include <optional>
#include <string>
#include <utility>

#include "desktops/layouts/KeyTable.h"
#include "platform/InputSourceHandle.h"

namespace tessarok::layouts {

/// A keyboard layout whose keys are those of a table. One without a table has no layout data.
class TableLayout final : public platform::InputSourceHandle {
 public:
  explicit TableLayout(std::string identifier)
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

}  // namespace tessarok::layouts
