#include "desktops/freedesktop/StatusDrawing.h"

#include <algorithm>

namespace tessarok::freedesktop {

namespace {

constexpr int kFull = 15;
constexpr int kInk = 0x2e;
constexpr int kEdge = 0xf4;
constexpr double kEdgeAlpha = 0.7;
constexpr double kDimmedAlpha = 0.45;

/// From 0 to 1; nothing is drawn beyond the border.
double coverageAt(std::string_view coverage, int column, int row) {
  constexpr int kSize = StatusDrawing::kSize;
  if (column < 0 || row < 0 || column >= kSize || row >= kSize) return 0;
  const int pixel = row * kSize + column;
  const char digit = coverage[static_cast<std::size_t>(pixel)];
  if (digit == '.') return 0;
  return static_cast<double>(digit >= 'a' ? digit - 'a' + 10 : digit - '0') / kFull;
}

/// The strongest coverage of a pixel and its neighbours: where the light edge goes.
double edgeAt(std::string_view coverage, int column, int row) {
  double strongest = 0;
  for (int y = row - 1; y <= row + 1; ++y) {
    for (int x = column - 1; x <= column + 1; ++x) {
      strongest = std::max(strongest, coverageAt(coverage, x, y));
    }
  }
  return strongest;
}

std::uint8_t byte(double value) {
  return static_cast<std::uint8_t>(std::clamp(value + 0.5, 0.0, 255.0));
}

}  // namespace

std::vector<std::uint8_t> StatusDrawing::pixels(bool dimmed) const {
  std::vector<std::uint8_t> bytes;
  bytes.reserve(static_cast<std::size_t>(kSize) * kSize * 4);
  for (int row = 0; row < kSize; ++row) {
    for (int column = 0; column < kSize; ++column) {
      const double ink = coverageAt(coverage, column, row);
      const double edge = (1 - ink) * kEdgeAlpha * edgeAt(coverage, column, row);
      const double alpha = ink + edge;
      const double grey = alpha > 0 ? (ink * kInk + edge * kEdge) / alpha : 0;
      bytes.push_back(byte(255 * alpha * (dimmed ? kDimmedAlpha : 1)));
      bytes.insert(bytes.end(), 3, byte(grey));
    }
  }
  return bytes;
}

}  // namespace tessarok::freedesktop
