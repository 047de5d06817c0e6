#include "desktops/x11/X11Desktop.h"

#include <X11/XKBlib.h>
#include <X11/Xlib.h>
#include <X11/extensions/XInput2.h>
#include <poll.h>
#include <utility>
#include <vector>

#include "desktops/posix/Translation.h"
#include "desktops/xkb/KeySetting.h"

namespace tessarok::x11 {

namespace {

/// Seconds in which all messages about one change of the keymap have come.
constexpr double kSettle = 0.05;
/// So many keys may keep the loop from its timers, and the watchdog from a sign of life.
constexpr int kEventsPerTurn = 32;

std::optional<std::filesystem::path> lockFileOf(platform::Files& files) {
  const auto folder = files.applicationSupportDirectory();
  return folder ? std::optional(*folder / "Tessarok" / "instance.lock") : std::nullopt;
}

/// The devices that were enabled or disabled.
KeyboardChanges changesOf(const XIHierarchyEvent& event) {
  KeyboardChanges changes{.serial = event.serial};
  for (int i = 0; i < event.num_info; ++i) {
    const bool isOne = (event.info[i].flags & (XIDeviceEnabled | XIDeviceDisabled)) != 0;
    if (isOne) changes.devices.push_back(event.info[i].deviceid);
  }
  return changes;
}

}  // namespace

X11Desktop::X11Desktop(std::unique_ptr<XConnection> connection, std::unique_ptr<LifeLine> lifeLine,
                       std::optional<std::filesystem::path> resources,
                       const MakeSessionServices& makeServices)
    : lifeLine_(std::move(lifeLine)),
      connection_(std::move(connection)),
      application_(runLoop_, lockFileOf(*files_)),
      bundle_(std::move(resources)),
      userDefaults_(posix::SettingsFile::locationFor(files_->homeDirectory()), *files_, systemLog_),
      layouts_(*connection_),
      focus_(*connection_),
      keyboards_(*connection_),
      typist_(*connection_, layouts_, runLoop_),
      eventTaps_(std::make_unique<X11EventTaps>(
          X11EventTaps::Parts{keyboards_, layouts_, typist_, runLoop_},
          xkb::keySetting<xkb::ManualKey>(userDefaults_, systemLog_),
          xkb::keySetting<xkb::PauseKey>(userDefaults_, systemLog_))),
      keyboard_(clock_, layouts_),
      services_(makeServices
                    ? makeServices({runLoop_, environment_, systemLog_, workspaceNotifications_})
                    : SessionServices{}),
      secureInput_(focus_, services_.secureInput),
      source_(
          connection_->descriptor(),
          [this] { return connection_->isLost() ? short{0} : short{POLLIN}; },
          [this](short) { serve(); }, [this] { return hasEvents(); }) {
  connect();
}

X11Desktop::~X11Desktop() {
  keyboards_.onLettingGo = nullptr;
  connection_->onLost = nullptr;
  runLoop_.remove(source_);
}

void X11Desktop::connect() {
  layouts_.onSelected = [this] {
    runLoop_.async([this] {
      inputSourceNotifications_.announce(platform::Notification::selectedInputSourceChanged);
    });
  };
  layouts_.onEnabledChanged = [this] {
    runLoop_.async([this] {
      inputSourceNotifications_.announce(platform::Notification::enabledInputSourcesChanged);
    });
  };
  layouts_.onKeymapChanged = [this] { keymapChanged(); };
  layouts_.onControlsChanged = [this] { keyboards_.silenceSyntheticRepeats(); };
  focus_.onChange = [this] {
    workspaceNotifications_.announce(platform::Notification::applicationActivated);
  };
  keyboards_.onLettingGo = [this] { passOnWhatHasCome(); };
  eventTaps_->onRefused = [this](const std::string& reason) { report(reason); };
  eventTaps_->onHeld = [this](bool held) { keyboardsHeld(held); };
  // It may have gone before anybody was to be told of it.
  if (connection_->isLost()) serverLost();
  connection_->onLost = [this] { serverLost(); };
  runLoop_.add(source_);
  if (lifeLine_) lifeLine_->watch(runLoop_, [this] { watchdogEnded(); });
}

void X11Desktop::serverLost() {
  systemLog_.write("Tessarok: " + posix::translated("the X server has gone"));
  runLoop_.stop();
}

platform::StatusBar& X11Desktop::statusBar() {
  if (services_.statusBar != nullptr) return *services_.statusBar;
  return noStatusBar_;
}

platform::Workspace& X11Desktop::workspace() {
  if (services_.workspace != nullptr) return *services_.workspace;
  return noWorkspace_;
}

void X11Desktop::keyboardsHeld(bool held) {
  if (held) copiedKeymap_ = layouts_.keymap().source();
  if (!lifeLine_) return;
  if (!held) return lifeLine_->letGo();
  if (!lifeLine_->hold()) watchdogEnded();
}

void X11Desktop::passOnWhatHasCome() {
  if (connection_->isLost()) return;
  auto* display = connection_->display();
  // What the server has sent until now is here then.
  XSync(display, False);
  const auto isKey = [](Display*, XEvent* event, XPointer opcode) -> Bool {
    const auto& cookie = event->xcookie;
    return event->type == GenericEvent && cookie.extension == *reinterpret_cast<int*>(opcode) &&
           (cookie.evtype == XI_KeyPress || cookie.evtype == XI_KeyRelease);
  };
  int opcode = connection_->inputOpcode();
  XEvent event;
  while (XCheckIfEvent(display, &event, isKey, reinterpret_cast<XPointer>(&opcode)) != 0) {
    if (XGetEventData(display, &event.xcookie) == 0) continue;
    const auto& key = *static_cast<const XIDeviceEvent*>(event.xcookie.data);
    const bool isDown = event.xcookie.evtype == XI_KeyPress;
    if (!isDown || !keyboards_.isPassedOn(key.deviceid, key.serial)) {
      eventTaps_->passOn(static_cast<std::uint8_t>(key.detail), isDown);
    }
    XFreeEventData(display, &event.xcookie);
  }
  // Before the keyboards are back, so that nothing comes between.
  typist_.releaseAll();
}

void X11Desktop::watchdogEnded() {
  eventTaps_->close();
  report(posix::translatable(
      "the watchdog process has ended, so the keyboards are not held any more"));
  runLoop_.stop();
}

void X11Desktop::report(const std::string& problem) {
  // Without a server everything fails.
  if (connection_->isLost()) return;
  if (std::exchange(reported_, problem) == problem) return;
  systemLog_.write("Tessarok: " + posix::translatedSentence(problem));
}

void X11Desktop::keymapChanged() {
  // One change is told in many messages.
  if (std::exchange(isCopyDue_, true)) return;
  runLoop_.after(kSettle, [this] {
    isCopyDue_ = false;
    copyKeymap();
  });
}

void X11Desktop::copyKeymap() {
  // The server also speaks of a new keymap when another keyboard is used than before, and a copy
  // ends the repetition of a key that is being held.
  auto source = layouts_.keymap().source();
  if (source == copiedKeymap_) return;
  copiedKeymap_ = std::move(source);
  keyboards_.copyKeymap();
  keyboards_.silenceSyntheticRepeats();
}

bool X11Desktop::hasEvents() const {
  // Waiting for an answer may have brought events in: of those the descriptor tells nothing. They
  // must not be served from the loop's queue, which is run in the middle of an event as well: the
  // events after it would overtake it.
  return !connection_->isLost() && XPending(connection_->display()) > 0;
}

void X11Desktop::serve() {
  auto* display = connection_->display();
  for (int i = 0; i < kEventsPerTurn && !connection_->isLost() && XPending(display) > 0; ++i) {
    XEvent event;
    XNextEvent(display, &event);
    if (lifeLine_) lifeLine_->wind();
    dispatch(event);
    runLoop_.runQueue();
  }
}

void X11Desktop::dispatch(XEvent& event) {
  if (event.type == connection_->xkbEvent()) return dispatchXkb(event);
  switch (event.type) {
    case GenericEvent:
      return dispatchInput(event);
    case PropertyNotify:
      layouts_.handleProperty(event);
      return focus_.handle(event);
    case FocusIn:
    case FocusOut:
    case UnmapNotify:
    case DestroyNotify:
      return focus_.handle(event);
    case MappingNotify:
      XRefreshKeyboardMapping(&event.xmapping);
      return;
    default:
      return;
  }
}

void X11Desktop::dispatchXkb(const XEvent& event) {
  const auto device = static_cast<int>(reinterpret_cast<const XkbEvent&>(event).any.device);
  if (!keyboards_.contains(device)) return layouts_.handleXkb(event);
  if (!keyboards_.adoptKeys(event)) return;
  layouts_.markKeymapStale();
  // The keyboard has it already. A copy in a moment would take away what it gets until then.
  copiedKeymap_ = layouts_.keymap().source();
}

void X11Desktop::dispatchInput(XEvent& event) {
  auto* display = connection_->display();
  auto& cookie = event.xcookie;
  if (cookie.extension != connection_->inputOpcode()) return;
  if (XGetEventData(display, &cookie) == 0) return;
  const auto* key = static_cast<const XIDeviceEvent*>(cookie.data);
  const auto* raw = static_cast<const XIRawEvent*>(cookie.data);
  switch (cookie.evtype) {
    case XI_KeyPress:
      if (keyboards_.isPassedOn(key->deviceid, key->serial)) {
        // The word that is followed is not the one that stands there.
        workspaceNotifications_.announce(platform::Notification::applicationActivated);
        break;
      }
      eventTaps_->keyDown(key->deviceid, static_cast<std::uint8_t>(key->detail),
                          (key->flags & XIKeyRepeat) != 0);
      break;
    case XI_KeyRelease:
      eventTaps_->keyUp(key->deviceid, static_cast<std::uint8_t>(key->detail));
      break;
    case XI_RawKeyPress:
      keyboard_.noteKeyDown();
      break;
    case XI_RawButtonPress:
      eventTaps_->buttonDown(raw->detail);
      break;
    case XI_HierarchyChanged:
      eventTaps_->updateKeyboards(changesOf(*static_cast<const XIHierarchyEvent*>(cookie.data)));
      break;
    default:
      break;
  }
  XFreeEventData(display, &cookie);
  // The key is on its way before anything else is done.
  connection_->flush();
}

}  // namespace tessarok::x11
