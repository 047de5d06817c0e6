#pragma once

namespace tessarok::posix {

/// Gives standard input, output and error, where they were closed, a file that can be neither read
/// nor written: else the next file that is opened would take their place, and be written into. To
/// be called before anything is opened.
void occupyStandardStreams();

}  // namespace tessarok::posix
