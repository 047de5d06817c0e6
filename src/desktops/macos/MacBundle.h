#pragma once

#include "platform/Bundle.h"

namespace tessarok::macos {

/// The application bundle, or for a bare executable the folder that it lies in.
class MacBundle final : public platform::Bundle {
 public:
  std::optional<std::string> identifier() override;
  std::optional<std::filesystem::path> resource(std::string_view name,
                                                std::string_view extension) override;
  bool isApplication() override;
};

}  // namespace tessarok::macos
