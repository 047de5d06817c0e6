#include "desktops/ibus/IbusDesktop.h"

#include <utility>

#include "desktops/ibus/Engine.h"
#include "desktops/ibus/SourceObstacles.h"
#include "desktops/inputmethod/Scalars.h"
#include "desktops/posix/Translation.h"
#include "desktops/xkb/HardwareKeys.h"
#include "desktops/xkb/KeySetting.h"

namespace tessarok::ibus {

namespace {

using inputmethod::KeyAnswer;
using inputmethod::KeyEvent;
using platform::Notification;
using xkb::ManualKey;
using xkb::PauseKey;
namespace keyStates = inputmethod::keyStates;

/// The modifiers, without buttons and what IBus notes there for itself.
constexpr std::uint32_t kModifiers =
    0xFF | keyStates::superToo | keyStates::hyper | keyStates::meta;
/// Of so many text fields it is known whether a correction has damaged them.
constexpr std::size_t kMostClients = 64;
/// GNOME's shell, which speaks for all programs on Wayland by one input context.
constexpr const char* kShell = "gnome-shell";

}  // namespace

IbusDesktop::IbusDesktop(IBusBus& bus, inputmethod::Guard& guard,
                         std::optional<std::filesystem::path> resources)
    : guard_(guard),
      runLoop_(guard),
      bundle_(std::move(resources)),
      userDefaults_(posix::SettingsFile::locationFor(files_->homeDirectory()), *files_, systemLog_),
      sessionBus_(freedesktop::Bus::openSession(runLoop_)),
      systemBus_(freedesktop::Bus::openSystem(runLoop_)),
      shellExtension_(sessionBus_.get()),
      engineSwitch_(sessionBus_.get(), shellExtension_, bus),
      shellOutlet_(sessionBus_.get(), shellExtension_, clock_),
      inputMethods_(engineSwitch_, sourceList_, clock_),
      keyFlow_({.taps = eventTaps_,
                .inputSources = inputSources_,
                .keyboard = keyboard_,
                .runLoop = runLoop_,
                .clock = clock_,
                .runQueue = [this] { runLoop_.runQueue(); },
                .flush = [this] { shellOutlet_.flush(); },
                .log = systemLog_},
               {}),
      secureInput_(keyFlow_),
      sessionWatch_(systemBus_.get(), sessionBus_.get(),
                    {environment_, workspaceNotifications_, systemLog_}),
      notice_(sessionBus_.get(), systemLog_),
      programs_(runLoop_),
      statusBar_(sessionBus_.get(), runLoop_, systemLog_, freedesktop::IconTheme(environment_)),
      workspace_(programs_, environment_, notice_) {
  keyFlow_.onOtherPlace = [this] {
    workspaceNotifications_.announce(Notification::applicationActivated);
  };
  keyFlow_.setManualKey(xkb::keySetting<ManualKey>(userDefaults_, systemLog_));
  keyFlow_.setPauseKey(xkb::keySetting<PauseKey>(userDefaults_, systemLog_));
  inputMethods_.onInVain = [this] { sayThatNobodySwitches(); };
  inputMethods_.onSettled = [this] { keyFlow_.inputMethodSettled(); };
  shellExtension_.onChange = [this] {
    inputMethods_.encourage();
    shellOutlet_.extensionChanged();
  };
  shellOutlet_.onDelivered = [this] { keyFlow_.delivered(); };
  sourceList_.onChange = [this] { announceLater(Notification::enabledInputSourcesChanged); };
  engine::setListener(this);
}

IbusDesktop::~IbusDesktop() {
  engine::setListener(nullptr);
}

std::shared_ptr<IbusClient> IbusDesktop::clientFor(const std::string& context,
                                                   const std::string& program) {
  // Every time it has the keys they may be meant for another program.
  if (program == kShell) return std::make_shared<IbusClient>(program, shellOutlet_);
  if (clients_.size() >= kMostClients) {
    for (const auto& [path, client] : clients_)
      keyFlow_.destroyed(*client);
    clients_.clear();
  }
  auto& client = clients_[context];
  if (!client) client = std::make_shared<IbusClient>(program, shellOutlet_);
  return client;
}

std::shared_ptr<IbusClient> IbusDesktop::clientOf(const IBusEngine& engine) const {
  return client_ && client_->engine() == &engine ? client_ : nullptr;
}

void IbusDesktop::adopt(IBusEngine& engine) {
  const auto& type = contentTypes_[&engine];
  client_->setEngine(&engine);
  client_->setContentType(type.purpose, type.hints);
  client_->setFocus(true);
}

void IbusDesktop::focusIn(IBusEngine& engine, const std::string& context,
                          const std::string& program) {
  guard_([&] {
    const std::string name = ibus_engine_get_name(&engine);
    const bool maySame = context.empty() || context == context_;
    // The same field goes on behind a switch that was asked for.
    if (client_ && maySame && inputMethods_.isSwitching()) {
      adopt(engine);
      return engineEnabled(name);
    }
    leave();
    client_ = clientFor(context, program);
    context_ = context;
    client_->forgetField();
    adopt(engine);
    engineEnabled(name);
    if (isOpen_) keyFlow_.focusIn(client_);
  });
}

void IbusDesktop::engineEnabled(const std::string& engine) {
  static_cast<void>(inputMethods_.enabled(engine));
  announceLater(Notification::selectedInputSourceChanged);
}

void IbusDesktop::focusOut(IBusEngine& engine) {
  guard_([&] {
    // The old engine of a switch that was asked for leaves before the new one comes.
    if (!clientOf(engine) || inputMethods_.isSwitching()) return;
    leave();
  });
}

void IbusDesktop::leave() {
  const auto client = std::exchange(client_, nullptr);
  if (!client) return;
  client->setFocus(false);
  if (isOpen_) keyFlow_.focusOut(*client);
  client->setEngine(nullptr);
  if (client->program() == kShell) keyFlow_.destroyed(*client);
}

bool IbusDesktop::keyEvent(IBusEngine& engine, guint symbol, guint code, guint states) {
  const bool isForwarded = (states & static_cast<guint>(IBUS_FORWARD_MASK)) != 0;
  if (!isOpen_ || isForwarded) return false;
  if (!clientOf(engine)) focusIn(engine, "", "");
  auto answer = KeyAnswer::pass;
  guard_([&] {
    KeyEvent event;
    event.key = {.symbol = symbol,
                 .states = states & kModifiers,
                 .code = static_cast<int>(code + xkb::hardwareKeys::kXOffset)};
    event.translated = event.key;
    event.isRelease = (states & static_cast<guint>(IBUS_RELEASE_MASK)) != 0;
    answer = keyFlow_.keyEvent(client_, event);
  });
  return answer == KeyAnswer::take;
}

void IbusDesktop::reset(IBusEngine& engine) {
  guard_([&] {
    if (const auto client = clientOf(engine); client && isOpen_) keyFlow_.reset(*client);
  });
}

void IbusDesktop::surroundingText(IBusEngine& engine, const std::string& text, guint caret,
                                  guint anchor) {
  guard_([&] {
    const auto client = clientOf(engine);
    if (!client) return;
    client->setReport(inputmethod::Client::Report{
        .before = text.substr(0, inputmethod::bytesOfScalars(text, caret)),
        .isSelected = caret != anchor});
    if (isOpen_) keyFlow_.textReported(*client);
  });
}

void IbusDesktop::contentType(IBusEngine& engine, guint purpose, guint hints) {
  guard_([&] {
    contentTypes_[&engine] = {purpose, hints};
    if (const auto client = clientOf(engine)) client->setContentType(purpose, hints);
  });
}

void IbusDesktop::destroyed(IBusEngine& engine) {
  guard_([&] {
    contentTypes_.erase(&engine);
    if (const auto client = clientOf(engine)) client->setEngine(nullptr);
  });
}

void IbusDesktop::setOpen(bool isOpen) {
  isOpen_ = isOpen;
  if (isOpen && client_) keyFlow_.focusIn(client_);
}

std::vector<std::string> IbusDesktop::obstacles() const {
  const auto shell = shellExtension_.state();
  // Elsewhere the list is not what counts.
  const bool isGnome = shell == ShellExtension::State::on || shell == ShellExtension::State::off;
  auto all = isGnome ? obstaclesIn(sourceList_.sources()) : std::vector<std::string>();
  if (shell == ShellExtension::State::off) {
    all.emplace_back(posix::translatable(
        "GNOME's shell has no Tessarok extension switched on, so switching the layout is left to "
        "you: gnome-extensions enable tessarok@app.tessarok, on GNOME 43 and 44 "
        "tessarok-43@app.tessarok"));
  }
  return all;
}

void IbusDesktop::sayThatNobodySwitches() {
  if (std::exchange(saidThatNobodySwitches_, true)) return;
  notice_.show("Tessarok",
               posix::translated("Words are put right here, but the layout is left to you: nothing "
                                 "in this session switches it for a program"));
}

void IbusDesktop::announceLater(Notification notification) {
  runLoop_.async([this, notification] { inputSourceNotifications_.announce(notification); });
}

}  // namespace tessarok::ibus
