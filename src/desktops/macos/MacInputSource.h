#pragma once

#include <Carbon/Carbon.h>
#include <utility>

#include "desktops/macos/CfRef.h"
#include "platform/InputSourceHandle.h"

namespace tessarok::macos {

/// One text input source.
class MacInputSource final : public platform::InputSourceHandle {
 public:
  explicit MacInputSource(CfRef<TISInputSourceRef> source) : source_(std::move(source)) {}

  [[nodiscard]] TISInputSourceRef get() const { return source_.get(); }

  std::optional<std::string> identifier() const override;
  bool hasLayoutData() const override;
  std::u16string translate(std::uint16_t keyCode, bool shift,
                           std::uint32_t keyboardType) const override;

 private:
  [[nodiscard]] const UCKeyboardLayout* layout() const;

  CfRef<TISInputSourceRef> source_;
};

}  // namespace tessarok::macos
