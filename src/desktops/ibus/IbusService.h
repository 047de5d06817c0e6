#pragma once

#include <filesystem>
#include <glib.h>
#include <ibus.h>
#include <memory>
#include <optional>

#include "desktops/ibus/IbusDesktop.h"
#include "desktops/inputmethod/CorrectorLife.h"
#include "desktops/inputmethod/Guard.h"

namespace tessarok::ibus {

/// The corrector as a program of IBus: its engines, from the daemon's call until the daemon or the
/// session ends. One in a process. Main thread.
class IbusService final {
 public:
  /// How the daemon knows of the engines: by the component file that it has read, or by what it is
  /// told now.
  enum class Registration { componentFile, now };

  explicit IbusService(std::optional<std::filesystem::path> resources);
  IbusService(const IbusService&) = delete;
  IbusService& operator=(const IbusService&) = delete;
  ~IbusService();

  /// Runs to the end. The exit status; an error is said.
  [[nodiscard]] int run(Registration registration);

 private:
  void connect(Registration registration);
  void fail(const std::string& reason);
  [[nodiscard]] inputmethod::CorrectorLife::Framework framework();

  std::optional<std::filesystem::path> resources_;
  GMainLoop* loop_;
  IBusBus* bus_;
  IBusFactory* factory_ = nullptr;
  inputmethod::Guard guard_;
  std::unique_ptr<IbusDesktop> desktop_;
  std::unique_ptr<inputmethod::CorrectorLife> life_;
};

}  // namespace tessarok::ibus
