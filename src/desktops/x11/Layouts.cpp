#include "desktops/x11/Layouts.h"

#include <X11/XKBlib.h>
#include <X11/Xlib.h>
#include <stdexcept>
#include <utility>

#include "desktops/posix/Translation.h"

namespace tessarok::x11 {

/// A group of one keymap.
class Layouts::Handle final : public platform::InputSourceHandle {
 public:
  Handle(std::shared_ptr<const Keymap> keymap, unsigned group)
      : keymap_(std::move(keymap)), group_(group) {}

  std::optional<std::string> identifier() const override { return keymap_->identifier(group_); }
  std::string name() const override { return keymap_->name(group_); }
  bool hasLayoutData() const override { return true; }
  std::u16string translate(std::uint16_t keyCode, bool shift, std::uint32_t) const override {
    return keymap_->shown(keyCode, shift, group_);
  }
  [[nodiscard]] unsigned group() const { return group_; }

 private:
  std::shared_ptr<const Keymap> keymap_;
  unsigned group_;
};

Layouts::Layouts(XConnection& connection)
    : connection_(connection),
      rulesNames_(XInternAtom(connection.display(), "_XKB_RULES_NAMES", False)) {
  auto* display = connection_.display();
  XkbSelectEvents(display, XkbUseCoreKbd, XkbNewKeyboardNotifyMask, XkbNewKeyboardNotifyMask);
  XkbSelectEvents(display, XkbUseCoreKbd, XkbMapNotifyMask, XkbMapNotifyMask);
  XkbSelectEvents(display, XkbUseCoreKbd, XkbControlsNotifyMask, XkbControlsNotifyMask);
  constexpr unsigned long kState = XkbModifierStateMask | XkbModifierLockMask |
                                   XkbModifierLatchMask | XkbGroupStateMask | XkbGroupLockMask;
  XkbSelectEventDetails(display, XkbUseCoreKbd, XkbStateNotify, kState, kState);
  keymap_ = Keymap::read(connection_);
  if (!keymap_) {
    throw std::runtime_error(connection_.isLost()
                                 ? posix::translated("the X server has gone")
                                 : posix::translated("the X server does not tell its keymap"));
  }
  announced_ = current();
}

std::vector<std::shared_ptr<platform::InputSourceHandle>> Layouts::enabledLayouts() {
  static_cast<void>(keymap());
  std::vector<std::shared_ptr<platform::InputSourceHandle>> handles;
  for (unsigned group = 0; group < keymap_->groups(); ++group) {
    if (keymap_->name(group).empty()) continue;
    handles.push_back(std::make_shared<Handle>(keymap_, group));
  }
  return handles;
}

const std::optional<std::string>& Layouts::current() {
  const auto group = state().group;
  return keymap().optionalIdentifier(group);
}

bool Layouts::select(platform::InputSourceHandle& source) {
  const auto* handle = dynamic_cast<const Handle*>(&source);
  if (handle == nullptr) return false;
  // Layouts may have been moved since the list was made.
  const auto identifier = handle->identifier();
  auto group = handle->group();
  for (unsigned other = 0; keymap().optionalIdentifier(group) != identifier; ++other) {
    if (other == keymap_->groups()) return false;
    group = other;
  }
  lockGroup(group);
  announceChanges();
  return true;
}

const KeyboardState& Layouts::state() {
  if (!std::exchange(isStateStale_, false) || connection_.isLost()) return state_;
  XkbStateRec server{};
  if (XkbGetState(connection_.display(), XkbUseCoreKbd, &server) != Success) return state_;
  // Base and latched groups may be negative, whatever Xlib's types say.
  const auto number = [](unsigned short value) {
    return static_cast<unsigned>(static_cast<std::int16_t>(value));
  };
  state_ = {.baseModifiers = server.base_mods,
            .latchedModifiers = server.latched_mods,
            .lockedModifiers = server.locked_mods,
            .group = server.group,
            .baseGroup = number(server.base_group),
            .latchedGroup = number(server.latched_group),
            .lockedGroup = server.locked_group};
  return state_;
}

const Keymap& Layouts::keymap() {
  if (std::exchange(isKeymapStale_, false)) readKeymap();
  return *keymap_;
}

void Layouts::readKeymap() {
  isStateStale_ = true;
  auto keymap = Keymap::read(connection_);
  // Then the next change brings another chance.
  if (!keymap) return;
  if (keymap->signature() != keymap_->signature()) {
    ++generation_;
    hasNewLayouts_ = true;
  }
  keymap_ = std::move(keymap);
}

std::uint32_t Layouts::generation() {
  static_cast<void>(keymap());
  return generation_;
}

void Layouts::lockGroup(unsigned group) {
  const auto& now = state();
  if (now.group == group || connection_.isLost()) return;
  const int count = static_cast<int>(keymap().groups());
  // A group held or latched by a key adds to the locked one.
  const int other = static_cast<int>(now.baseGroup) + static_cast<int>(now.latchedGroup);
  const int locked = ((static_cast<int>(group) - other) % count + count) % count;
  XkbLockGroup(connection_.display(), XkbUseCoreKbd, static_cast<unsigned>(locked));
  isStateStale_ = true;
}

void Layouts::announceChanges() {
  const auto& now = current();
  if (std::exchange(hasNewLayouts_, false) && onEnabledChanged) onEnabledChanged();
  if (announced_ == now) return;
  announced_ = now;
  if (onSelected) onSelected();
}

void Layouts::handleProperty(const XEvent& event) {
  if (event.xproperty.atom != rulesNames_) return;
  isKeymapStale_ = true;
  announceChanges();
}

void Layouts::handleXkb(const XEvent& event) {
  const auto& xkb = reinterpret_cast<const XkbEvent&>(event);
  switch (xkb.any.xkb_type) {
    case XkbStateNotify:
      isStateStale_ = true;
      break;
    case XkbNewKeyboardNotify:
    case XkbMapNotify:
      isKeymapStale_ = true;
      if (onKeymapChanged) onKeymapChanged();
      break;
    case XkbControlsNotify:
      if (onControlsChanged) onControlsChanged();
      return;
    default:
      return;
  }
  announceChanges();
}

}  // namespace tessarok::x11
