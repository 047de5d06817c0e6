#pragma once

#include <string_view>

#include "desktops/plain/PlainEventTaps.h"
#include "desktops/web/FieldEdit.h"
#include "desktops/web/WebEvent.h"

namespace tessarok::web {

/// The way of the keys of a page: through the tap to the field, with what the tap's callback posts
/// gathered into one change of the field. Main thread.
class WebEventTaps final : public plain::PlainEventTaps<WebEvent> {
 public:
  /// Sends an event on its way; what becomes of it stays until the next call. `keyText` is what the
  /// key types where it passes.
  const FieldEdit& send(WebEvent& event, std::u16string_view keyText);

 private:
  void addPosted(const WebEvent& event);

  FieldEdit edit_;
};

}  // namespace tessarok::web
