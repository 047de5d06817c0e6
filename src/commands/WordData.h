#pragma once

namespace tessarok::commands {

/// Whether a command's answers depend on the packs of slang.
enum class Packs { needed, unused };

/// Throws `CommandError`, naming the file, when a data file that the answers depend on is
/// missing.
void requireWordData(Packs packs);

}  // namespace tessarok::commands
