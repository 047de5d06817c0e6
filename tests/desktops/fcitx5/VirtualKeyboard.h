#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "tests/desktops/fcitx5/Hands.h"

struct wl_display;
struct wl_seat;
struct zwp_virtual_keyboard_v1;
struct zwp_virtual_keyboard_manager_v1;

namespace tessarok::testing {

/// A US keyboard of a Wayland compositor.
class VirtualKeyboard final : public Hands {
 public:
  /// `socket` is the path of the compositor's socket. Null while nobody listens there; throws when
  /// the compositor takes no keyboards.
  [[nodiscard]] static std::unique_ptr<VirtualKeyboard> connect(const std::string& socket);
  VirtualKeyboard(const VirtualKeyboard&) = delete;
  VirtualKeyboard& operator=(const VirtualKeyboard&) = delete;
  ~VirtualKeyboard() override;

  /// What the compositor offers; for its answers.
  struct Globals {
    wl_seat* seat = nullptr;
    zwp_virtual_keyboard_manager_v1* manager = nullptr;
  };

 protected:
  void key(unsigned xKey, bool isDown) override;
  void flush() override;

 private:
  explicit VirtualKeyboard(wl_display* display);
  void sendKeymap();

  wl_display* display_ = nullptr;
  Globals globals_;
  zwp_virtual_keyboard_v1* keyboard_ = nullptr;
  std::uint32_t time_ = 0;
};

}  // namespace tessarok::testing
