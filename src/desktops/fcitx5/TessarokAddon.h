#pragma once

#include <fcitx/addoninstance.h>
#include <fcitx/instance.h>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "desktops/fcitx5/AddonConfig.h"
#include "desktops/fcitx5/FcitxDesktop.h"
#include "desktops/inputmethod/CorrectorLife.h"
#include "desktops/inputmethod/Guard.h"

namespace tessarok::fcitx5 {

/// The corrector as an addon of Fcitx. One in a process: the corrector's state is the process's.
/// Main thread.
class TessarokAddon final : public fcitx::AddonInstance {
 public:
  /// `instance` outlives this object.
  explicit TessarokAddon(fcitx::Instance& instance);
  ~TessarokAddon() override;

  const fcitx::Configuration* getConfig() const override;
  void setConfig(const fcitx::RawConfig& raw) override;
  void reloadConfig() override;

 private:
  using Watcher = std::unique_ptr<fcitx::HandlerTableEntry<fcitx::EventHandler>>;

  void watch();
  template <typename Event, typename Work>
  void watch(fcitx::EventType type, fcitx::EventWatcherPhase phase, Work work);
  [[nodiscard]] inputmethod::CorrectorLife::Framework framework();
  [[nodiscard]] std::vector<std::string> obstacles() const;
  void fail(const std::string& reason);
  void readSettings() const;
  void applySettings();

  fcitx::Instance& instance_;
  inputmethod::Guard guard_;
  std::unique_ptr<FcitxDesktop> desktop_;
  std::unique_ptr<inputmethod::CorrectorLife> life_;
  std::vector<Watcher> watchers_;
  mutable AddonConfig config_;
};

}  // namespace tessarok::fcitx5
