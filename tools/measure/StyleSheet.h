#pragma once

namespace tessarok::measure {

/// The look that the report shares with the page and the documentation.
extern const char* const kStyleSheet;

}  // namespace tessarok::measure
