#include "desktops/freedesktop/StatusSymbol.h"

#include "desktops/posix/Translation.h"

namespace tessarok::freedesktop {

namespace {

#include "desktops/freedesktop/StatusDrawings.inc"

struct Entry {
  std::string_view name;
  StatusSymbol symbol;
};

constexpr Entry kSymbols[] = {
    {"keyboard.badge.ellipsis",
     {"tessarok-attention", posix::translatable("needs attention"), {kAttentionCoverage}}},
    {"pause.circle", {"tessarok-paused", posix::translatable("paused"), {kPausedCoverage}}},
    {"keyboard", {"tessarok-on", posix::translatable("on"), {kOnCoverage}}},
    {"keyboard.chevron.compact.down", {"tessarok-off", posix::translatable("off"), {kOffCoverage}}},
};

static_assert([] {
  constexpr auto kPixels = std::size_t{StatusDrawing::kSize} * StatusDrawing::kSize;
  for (const auto& entry : kSymbols) {
    if (entry.symbol.drawing.coverage.size() != kPixels) {
      return false;
    }
  }
  return true;
}());

}  // namespace

std::optional<StatusSymbol> StatusSymbol::named(std::string_view name) {
  for (const auto& entry : kSymbols) {
    if (entry.name == name) return entry.symbol;
  }
  return std::nullopt;
}

std::vector<StatusSymbol> StatusSymbol::all() {
  std::vector<StatusSymbol> symbols;
  for (const auto& entry : kSymbols)
    symbols.push_back(entry.symbol);
  return symbols;
}

}  // namespace tessarok::freedesktop
