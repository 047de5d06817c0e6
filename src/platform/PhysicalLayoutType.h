#pragma once

namespace tessarok::platform {

/// The three shapes of keyboard. Only ISO has the extra key beside the left Shift (code 10).
enum class PhysicalLayoutType { ansi, iso, jis };

}  // namespace tessarok::platform
