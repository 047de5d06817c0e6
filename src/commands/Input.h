#pragma once

#include <cstddef>
#include <istream>
#include <optional>
#include <string>
#include <string_view>

namespace tessarok::commands {

/// Everything on standard input; throws `CommandError` when it cannot be read or is not UTF-8.
[[nodiscard]] std::string readStandardInput();
/// Throws `CommandError` when the stream, read to where it gives no more, has failed before its
/// end; `what` names it.
void requireFullyRead(const std::istream& stream, const std::string& what);
/// The number of the first line that is not UTF-8, counted from 1; absent when all are.
[[nodiscard]] std::optional<std::size_t> lineWithoutUtf8(std::string_view text);
/// Throws `CommandError` when the text is not UTF-8; `what` names it.
void requireUtf8(std::string_view text, std::string_view what);

}  // namespace tessarok::commands
