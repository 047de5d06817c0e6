#pragma once

#include <initializer_list>
#include <string>
#include <utility>

namespace tessarok::posix {

/// The message with the values in the places {1}, {2} …; a place without a value stays. What a
/// value holds is not looked at.
[[nodiscard]] std::string withValues(const std::string& message,
                                     std::initializer_list<std::string> values);

/// A sentence as a message with the place {1} and the value that stood there: the text in the first
/// quotation marks, or what follows the last "among". Without either the sentence and nothing.
[[nodiscard]] std::pair<std::string, std::string> messageOf(const std::string& sentence);

}  // namespace tessarok::posix
