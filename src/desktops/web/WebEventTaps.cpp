#include "desktops/web/WebEventTaps.h"

#include "typing/KeyCodes.h"

namespace tessarok::web {

const FieldEdit& WebEventTaps::send(WebEvent& event, std::u16string_view keyText) {
  edit_.erase = 0;
  edit_.text.clear();
  edit_.keyText = keyText;
  edit_.keyPasses = show(event);
  showPosted([this](const WebEvent& posted) { addPosted(posted); });
  return edit_;
}

void WebEventTaps::addPosted(const WebEvent& event) {
  if (event.type != platform::EventType::keyDown) return;
  if (event.isText) {
    edit_.text += event.payload;
  } else if (event.code == keyCodes::backspace) {
    ++edit_.erase;
  } else {
    // The key that ended the word, again: it goes on as it came, behind the new word.
    edit_.keyPasses = true;
  }
}

}  // namespace tessarok::web
