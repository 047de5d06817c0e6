// Presses keys in a Wayland compositor that lets programs do so: KWin (org_kde_kwin_fake_input) or
// one of wlroots (zwp_virtual_keyboard_v1).
//
// Lines of standard input: "k CODE 0|1" releases or presses a key by its code in
// linux/input-event-codes.h; "f" sends what was pressed and answers "ok" when the compositor has
// it.

#include <cstdint>
#include <cstring>
#include <ctime>
#include <iostream>
#include <memory>
#include <sstream>
#include <string>
#include <string_view>
#include <sys/mman.h>
#include <unistd.h>
#include <wayland-client.h>
#include <xkbcommon/xkbcommon.h>

#include "fake-input-client-protocol.h"
#include "virtual-keyboard-client-protocol.h"

namespace {

struct Globals {
  wl_seat* seat = nullptr;
  org_kde_kwin_fake_input* fake = nullptr;
  zwp_virtual_keyboard_manager_v1* manager = nullptr;
};

void add(void* data, wl_registry* registry, std::uint32_t name, const char* interface,
         std::uint32_t version) {
  auto& globals = *static_cast<Globals*>(data);
  const auto bind = [&](const wl_interface& type, std::uint32_t most) {
    return wl_registry_bind(registry, name, &type, std::min(version, most));
  };
  const std::string_view offered = interface;
  if (offered == wl_seat_interface.name && globals.seat == nullptr) {
    globals.seat = static_cast<wl_seat*>(bind(wl_seat_interface, 1));
  } else if (offered == org_kde_kwin_fake_input_interface.name) {
    // Keys came with the fourth version.
    globals.fake =
        static_cast<org_kde_kwin_fake_input*>(bind(org_kde_kwin_fake_input_interface, 4));
  } else if (offered == zwp_virtual_keyboard_manager_v1_interface.name) {
    globals.manager = static_cast<zwp_virtual_keyboard_manager_v1*>(
        bind(zwp_virtual_keyboard_manager_v1_interface, 1));
  }
}

void remove(void*, wl_registry*, std::uint32_t) {}

constexpr wl_registry_listener kListener = {add, remove};

std::uint32_t milliseconds() {
  timespec now{};
  ::clock_gettime(CLOCK_MONOTONIC, &now);
  return static_cast<std::uint32_t>(now.tv_sec * 1000 + now.tv_nsec / 1'000'000);
}

/// The bit of a modifier key in the keymap; 0 for other keys.
std::uint32_t modifierOf(std::uint32_t code) {
  switch (code) {
    case 42:
    case 54:
      return 1;
    case 29:
    case 97:
      return 4;
    case 56:
    case 100:
      return 8;
    default:
      return 0;
  }
}

/// A keyboard of wlroots, which wants its keymap and its modifiers told.
class VirtualKeyboard final {
 public:
  explicit VirtualKeyboard(const Globals& globals)
      : keyboard_(zwp_virtual_keyboard_manager_v1_create_virtual_keyboard(globals.manager,
                                                                          globals.seat)) {
    auto* context = xkb_context_new(XKB_CONTEXT_NO_FLAGS);
    const xkb_rule_names names{"evdev", "pc105", "us", "", ""};
    auto* keymap = xkb_keymap_new_from_names(context, &names, XKB_KEYMAP_COMPILE_NO_FLAGS);
    const std::unique_ptr<char, decltype(&std::free)> text(
        xkb_keymap_get_as_string(keymap, XKB_KEYMAP_FORMAT_TEXT_V1), &std::free);
    const auto size = std::strlen(text.get()) + 1;
    const int file = ::memfd_create("keymap", MFD_CLOEXEC);
    if (::write(file, text.get(), size) != static_cast<ssize_t>(size)) std::exit(1);
    zwp_virtual_keyboard_v1_keymap(keyboard_, WL_KEYBOARD_KEYMAP_FORMAT_XKB_V1, file,
                                   static_cast<std::uint32_t>(size));
    ::close(file);
    xkb_keymap_unref(keymap);
    xkb_context_unref(context);
  }

  void key(std::uint32_t code, bool isDown) {
    zwp_virtual_keyboard_v1_key(keyboard_, milliseconds(), code, isDown ? 1 : 0);
    const auto modifier = modifierOf(code);
    if (modifier == 0) return;
    modifiers_ = isDown ? modifiers_ | modifier : modifiers_ & ~modifier;
    zwp_virtual_keyboard_v1_modifiers(keyboard_, modifiers_, 0, 0, 0);
  }

 private:
  zwp_virtual_keyboard_v1* keyboard_;
  std::uint32_t modifiers_ = 0;
};

}  // namespace

int main() {
  auto* display = wl_display_connect(nullptr);
  if (display == nullptr) {
    std::cerr << "keys: there is no compositor\n";
    return 1;
  }
  Globals globals;
  wl_registry_add_listener(wl_display_get_registry(display), &kListener, &globals);
  wl_display_roundtrip(display);
  std::unique_ptr<VirtualKeyboard> keyboard;
  if (globals.fake != nullptr) {
    org_kde_kwin_fake_input_authenticate(globals.fake, "keys", "tests");
  } else if (globals.manager != nullptr && globals.seat != nullptr) {
    keyboard = std::make_unique<VirtualKeyboard>(globals);
  } else {
    std::cerr << "keys: the compositor lets nobody press keys\n";
    return 1;
  }
  wl_display_roundtrip(display);
  for (std::string line; std::getline(std::cin, line);) {
    std::istringstream words(line);
    char what = 0;
    std::uint32_t code = 0;
    bool isDown = false;
    words >> what >> code >> isDown;
    if (what == 'k' && keyboard) {
      keyboard->key(code, isDown);
    } else if (what == 'k') {
      org_kde_kwin_fake_input_keyboard_key(globals.fake, code, isDown ? 1 : 0);
    } else {
      if (wl_display_roundtrip(display) < 0) return 1;
      std::cout << "ok" << std::endl;
    }
  }
  return 0;
}
