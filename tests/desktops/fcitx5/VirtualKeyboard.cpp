#include "tests/desktops/fcitx5/VirtualKeyboard.h"

#include <cstdlib>
#include <cstring>
#include <stdexcept>
#include <string_view>
#include <sys/mman.h>
#include <unistd.h>
#include <virtual-keyboard-client-protocol.h>
#include <wayland-client.h>
#include <xkbcommon/xkbcommon.h>

#include "desktops/posix/FileDescriptor.h"

namespace tessarok::testing {

namespace {

constexpr unsigned kXOffset = 8;
constexpr unsigned kShiftKey = 50;
constexpr std::uint32_t kShiftMask = 1;

void announced(void* data, wl_registry* registry, std::uint32_t name, const char* interface,
               std::uint32_t) {
  auto& globals = *static_cast<VirtualKeyboard::Globals*>(data);
  if (std::string_view(interface) == wl_seat_interface.name && globals.seat == nullptr) {
    globals.seat = static_cast<wl_seat*>(wl_registry_bind(registry, name, &wl_seat_interface, 1));
  }
  if (std::string_view(interface) == zwp_virtual_keyboard_manager_v1_interface.name) {
    globals.manager = static_cast<zwp_virtual_keyboard_manager_v1*>(
        wl_registry_bind(registry, name, &zwp_virtual_keyboard_manager_v1_interface, 1));
  }
}

void withdrawn(void*, wl_registry*, std::uint32_t) {}

constexpr wl_registry_listener kListener{announced, withdrawn};

std::string usKeymap() {
  auto* context = xkb_context_new(XKB_CONTEXT_NO_FLAGS);
  const xkb_rule_names names{"evdev", "pc105", "us", "", ""};
  auto* keymap = xkb_keymap_new_from_names(context, &names, XKB_KEYMAP_COMPILE_NO_FLAGS);
  auto* text = xkb_keymap_get_as_string(keymap, XKB_KEYMAP_FORMAT_TEXT_V1);
  std::string copy = text;
  std::free(text);
  xkb_keymap_unref(keymap);
  xkb_context_unref(context);
  return copy;
}

}  // namespace

std::unique_ptr<VirtualKeyboard> VirtualKeyboard::connect(const std::string& socket) {
  auto* display = wl_display_connect(socket.c_str());
  if (display == nullptr) return nullptr;
  return std::unique_ptr<VirtualKeyboard>(new VirtualKeyboard(display));
}

VirtualKeyboard::VirtualKeyboard(wl_display* display) : display_(display) {
  auto* registry = wl_display_get_registry(display_);
  wl_registry_add_listener(registry, &kListener, &globals_);
  wl_display_roundtrip(display_);
  wl_registry_destroy(registry);
  if (globals_.seat == nullptr || globals_.manager == nullptr) {
    throw std::runtime_error("the compositor takes no keyboards");
  }
  keyboard_ =
      zwp_virtual_keyboard_manager_v1_create_virtual_keyboard(globals_.manager, globals_.seat);
  sendKeymap();
}

VirtualKeyboard::~VirtualKeyboard() {
  wl_display_disconnect(display_);
}

void VirtualKeyboard::sendKeymap() {
  const auto keymap = usKeymap();
  const auto size = keymap.size() + 1;
  const posix::FileDescriptor file(::memfd_create("keymap", MFD_CLOEXEC));
  if (::write(file.get(), keymap.c_str(), size) != static_cast<ssize_t>(size)) {
    throw std::runtime_error("cannot write the keymap");
  }
  zwp_virtual_keyboard_v1_keymap(keyboard_, WL_KEYBOARD_KEYMAP_FORMAT_XKB_V1, file.get(),
                                 static_cast<std::uint32_t>(size));
  wl_display_roundtrip(display_);
}

void VirtualKeyboard::key(unsigned xKey, bool isDown) {
  zwp_virtual_keyboard_v1_key(keyboard_, ++time_, xKey - kXOffset, isDown ? 1 : 0);
  if (xKey != kShiftKey) return;
  zwp_virtual_keyboard_v1_modifiers(keyboard_, isDown ? kShiftMask : 0, 0, 0, 0);
}

void VirtualKeyboard::flush() {
  // Waiting for the answer keeps the compositor's queue of a client from running over.
  wl_display_roundtrip(display_);
}

}  // namespace tessarok::testing
