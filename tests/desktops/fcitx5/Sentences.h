#pragma once

#include <string>
#include <vector>

namespace tessarok::testing {

/// The keys, on a US keyboard, of sentences of words of both languages with no regard to the layout
/// in force, with capitals, signs and typing errors put right; each ends with Return. The same ones
/// in every run for a `seed`.
[[nodiscard]] std::vector<std::string> sentences(int count, unsigned seed);
/// What the virtual desktop makes of these keys.
[[nodiscard]] std::string onTheVirtualDesktop(const std::string& keys);

}  // namespace tessarok::testing
