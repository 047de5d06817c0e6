#pragma once

#include <CoreGraphics/CoreGraphics.h>
#include <utility>

#include "desktops/macos/CfRef.h"
#include "platform/Event.h"

namespace tessarok::macos {

/// A Quartz event, shared with whoever else holds it.
class MacEvent final : public platform::Event {
 public:
  explicit MacEvent(CfRef<CGEventRef> event) : event_(std::move(event)) {}

  [[nodiscard]] CGEventRef get() const { return event_.get(); }

  std::int64_t keyCode() const override;
  std::uint64_t flags() const override;
  bool isAutorepeat() const override;
  std::int64_t sourceUserData() const override;
  std::size_t unicodeString(std::span<char16_t> units) const override;

  std::unique_ptr<platform::Event> copy() const override;
  void setSource(platform::EventSource& source) override;
  void setType(platform::EventType type) override;
  void setFlags(std::uint64_t flags) override;
  void setAutorepeat(bool autorepeat) override;
  void setSourceUserData(std::int64_t userData) override;
  void setUnicodeString(std::u16string_view units) override;

 private:
  CfRef<CGEventRef> event_;
};

}  // namespace tessarok::macos
