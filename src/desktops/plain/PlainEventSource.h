#pragma once

#include "platform/EventSource.h"

namespace tessarok::platform {

/// Of desktops on which it makes no difference where an event comes from.
class PlainEventSource final : public EventSource {};

}  // namespace tessarok::platform
