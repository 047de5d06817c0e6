#pragma once

#include <ibus.h>

#include "desktops/ibus/EngineListener.h"

/// The engines of IBus as objects of GLib, which say everything to one listener. Main thread.
namespace tessarok::ibus::engine {

/// The names under which the component file lists them.
inline constexpr const char* kEnglish = "tessarok:us";
inline constexpr const char* kRussian = "tessarok:ru";

/// Null for none; then keys pass. It outlives its being the listener.
void setListener(EngineListener* listener);
/// Makes the engines that IBus asks `factory` for.
void offer(IBusFactory& factory);

}  // namespace tessarok::ibus::engine
