#pragma once

#include <array>
#include <string_view>

/// The identifiers of the layouts that Tessarok types in, as macOS names them. Every other desktop
/// calls its layouts so, too.
namespace tessarok::platform::layoutIdentifiers {

inline constexpr std::string_view kUs = "com.apple.keylayout.US";
inline constexpr std::string_view kAbc = "com.apple.keylayout.ABC";
inline constexpr std::string_view kInternational = "com.apple.keylayout.USInternational-PC";
inline constexpr std::string_view kBritish = "com.apple.keylayout.British";
/// The layout of Apple's keyboards.
inline constexpr std::string_view kRussian = "com.apple.keylayout.Russian";
/// The layout of every other keyboard.
inline constexpr std::string_view kRussianWin = "com.apple.keylayout.RussianWin";

inline constexpr std::array kAllEnglish = {kUs, kAbc, kInternational, kBritish};
inline constexpr std::array kAllRussian = {kRussian, kRussianWin};

}  // namespace tessarok::platform::layoutIdentifiers
