#pragma once

#include <fcitx/event.h>
#include <fcitx/inputcontext.h>
#include <fcitx/instance.h>

#include "desktops/inputmethod/Client.h"

namespace tessarok::fcitx5 {

/// A text field that Fcitx serves. Main thread.
class FcitxClient final : public inputmethod::Client {
 public:
  /// `instance` outlives this object.
  FcitxClient(fcitx::Instance& instance, fcitx::InputContext& context)
      : instance_(instance), context_(context.watch()) {}

  /// Null when Fcitx has it no more.
  [[nodiscard]] fcitx::InputContext* context() const { return context_.get(); }
  /// Whether `event` is of the key that is being shown to Fcitx anew. It gets its answer then.
  [[nodiscard]] bool answerReplayed(fcitx::KeyEvent& event) const;

  Habits habits() const override;
  std::string program() const override;
  bool hasFocus() const override;
  bool isSecret() const override;
  bool isComposing() const override;
  bool canDelete() const override;
  std::optional<Report> report() const override;
  void commit(const std::string& text) override;
  void deleteBefore(std::size_t scalars) override;
  void forward(const inputmethod::Key& key) override;
  Replayed replay(const inputmethod::Key& key, const inputmethod::Key& translated, int time,
                  const std::function<inputmethod::KeyAnswer()>& show) override;

 private:
  struct Replay {
    inputmethod::Key translated;
    const std::function<inputmethod::KeyAnswer()>& show;
  };

  [[nodiscard]] bool isWayland() const;

  fcitx::Instance& instance_;
  fcitx::TrackableObjectReference<fcitx::InputContext> context_;
  /// Null when none is being replayed.
  const Replay* replay_ = nullptr;
};

}  // namespace tessarok::fcitx5
