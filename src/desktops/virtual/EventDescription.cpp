#include "desktops/virtual/EventDescription.h"

#include "text/Text.h"
#include "typing/KeyCodes.h"

namespace tessarok::virtualdesktop {

namespace {

using platform::EventType;

std::string describeClick(EventType type) {
  if (type == EventType::leftMouseDown) return "click left";
  return type == EventType::rightMouseDown ? "click right" : "click other";
}

}  // namespace

std::string describe(const VirtualEvent& event) {
  if (event.type != EventType::keyDown && event.type != EventType::keyUp) {
    return describeClick(event.type);
  }
  std::string text = event.type == EventType::keyDown ? "down " : "up ";
  if (!event.posted || event.code == keyCodes::backspace) return text + std::to_string(event.code);
  if (event.code != 0) return text + std::to_string(event.code) + " posted";
  std::string payload;
  text::assignUtf16(event.payload, payload);
  return text + payload;
}

}  // namespace tessarok::virtualdesktop
