#pragma once

#include <ibus.h>

/// What IBus knows of the engines before any runs, as in the component file.
namespace tessarok::ibus::component {

inline constexpr const char* kBusName = "org.freedesktop.IBus.Tessarok";

/// To be told to a daemon that has not read the file.
[[nodiscard]] IBusComponent* make();

}  // namespace tessarok::ibus::component
