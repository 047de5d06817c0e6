#pragma once

#include <ibus.h>

#include "desktops/ibus/ShellOutlet.h"
#include "desktops/inputmethod/Client.h"

namespace tessarok::ibus {

/// A text field that IBus serves, or all those of the programs that GNOME's shell speaks for. Main
/// thread.
class IbusClient final : public inputmethod::Client {
 public:
  /// `outlet` outlives this object.
  IbusClient(std::string program, ShellOutlet& outlet)
      : program_(std::move(program)), outlet_(outlet) {}

  /// The engine through which it is reached; null when IBus has taken it away. It outlives its
  /// being that.
  void setEngine(IBusEngine* engine) { engine_ = engine; }
  [[nodiscard]] IBusEngine* engine() const { return engine_; }
  void setFocus(bool hasFocus) { hasFocus_ = hasFocus; }
  void setContentType(guint purpose, guint hints);
  void setReport(std::optional<Report> report) { report_ = std::move(report); }
  /// The field may be another one: nothing is known of it.
  void forgetField();

  Habits habits() const override;
  std::string program() const override { return program_; }
  bool hasFocus() const override { return hasFocus_; }
  /// A program to which no key can be handed back is left alone as well: a held-back Return would
  /// be lost.
  bool isSecret() const override { return isSecret_ || takesNoKeysBack(); }
  /// The engines compose nothing.
  bool isComposing() const override { return false; }
  bool canDelete() const override;
  std::optional<Report> report() const override { return report_; }
  void commit(const std::string& text) override;
  void deleteBefore(std::size_t scalars) override;
  void forward(const inputmethod::Key& key) override;
  void askForReport() override;
  std::optional<double> undeliveredUntil(double now) const override;
  Replayed replay(const inputmethod::Key& key, const inputmethod::Key& translated, int time,
                  const std::function<inputmethod::KeyAnswer()>& show) override;

 private:
  /// IBus's own part for GTK 4 shows a key that it is handed to its input method only.
  [[nodiscard]] bool takesNoKeysBack() const;
  /// Whether it stands for the programs on GNOME's Wayland, or may do so.
  [[nodiscard]] bool isShell() const { return program_.empty() || program_ == "gnome-shell"; }

  void noteSent();

  std::string program_;
  ShellOutlet& outlet_;
  IBusEngine* engine_ = nullptr;
  bool hasFocus_ = false;
  bool isSecret_ = false;
  std::optional<Report> report_;
};

}  // namespace tessarok::ibus
