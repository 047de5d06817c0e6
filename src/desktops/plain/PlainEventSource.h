#pragma once

#include "platform/EventSource.h"

namespace tessarok::plain {

/// Of desktops on which it makes no difference where an event comes from.
class PlainEventSource final : public platform::EventSource {};

}  // namespace tessarok::plain
