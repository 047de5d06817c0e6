#pragma once

namespace tessarok::ibus {

/// IBus has the kernel's key codes, X those plus this (the X protocol leaves the first eight out).
inline constexpr int kFirstXKey = 8;

}  // namespace tessarok::ibus
