#include "desktops/ibus/IbusService.h"

#include <algorithm>
#include <iostream>
#include <iterator>
#include <signal.h>
#include <unistd.h>
#include <utility>

#include "desktops/freedesktop/Obstacles.h"
#include "desktops/freedesktop/SessionKind.h"
#include "desktops/ibus/Component.h"
#include "desktops/ibus/Engine.h"
#include "desktops/posix/Processes.h"
#include "desktops/posix/SignalPipe.h"
#include "desktops/posix/Translation.h"
#include "platform/Desktop.h"

namespace tessarok::ibus {

namespace {

constexpr int kNoDaemon = 1;

void say(const std::string& message) {
  std::cerr << "tessarok-ibus: " << message << std::endl;
}

}  // namespace

IbusService::IbusService(std::optional<std::filesystem::path> resources)
    : resources_(std::move(resources)), loop_(g_main_loop_new(nullptr, FALSE)) {
  ibus_init();
  bus_ = ibus_bus_new();
  g_object_ref_sink(bus_);
}

IbusService::~IbusService() {
  guard_.onFailure = nullptr;
  life_.reset();
  desktop_.reset();
  if (factory_ != nullptr) g_object_unref(factory_);
  g_object_unref(bus_);
  g_main_loop_unref(loop_);
}

int IbusService::run(Registration registration) {
  if (ibus_bus_is_connected(bus_) == FALSE) {
    say(posix::translated("there is no IBus daemon to work for"));
    return kNoDaemon;
  }
  // To the very end: who is impatient must not keep the program from writing down what it has
  // learned.
  // In a loop of their own, because the corrector's serves nothing behind a failure.
  inputmethod::Guard ofSignals;
  GlibRunLoop signalLoop(ofSignals);
  posix::SignalPipe signals({SIGTERM, SIGINT, SIGHUP, SIGQUIT},
                            [this](int) { g_main_loop_quit(loop_); });
  guard_.onFailure = [this](const std::string& reason) { fail(reason); };
  desktop_ = std::make_unique<IbusDesktop>(*bus_, guard_, resources_);
  platform::setDesktop(*desktop_);
  signalLoop.add(signals);
  life_ = std::make_unique<inputmethod::CorrectorLife>(
      inputmethod::CorrectorLife::Parts{.desktop = *desktop_,
                                        .application = desktop_->application(),
                                        .flow = desktop_->keyFlow(),
                                        .session = desktop_->sessionBus()},
      framework());
  g_signal_connect_swapped(bus_, "disconnected", G_CALLBACK(&g_main_loop_quit), loop_);
  connect(registration);
  guard_([this] { life_->launch(); });
  g_main_loop_run(loop_);
  guard_([this] { desktop_->keyFlow().finish(); });
  desktop_->setOpen(false);
  signalLoop.remove(signals);
  return 0;
}

void IbusService::connect(Registration registration) {
  factory_ = ibus_factory_new(ibus_bus_get_connection(bus_));
  g_object_ref_sink(factory_);
  engine::offer(*factory_);
  if (registration == Registration::componentFile) {
    ibus_bus_request_name(bus_, component::kBusName, 0);
  } else {
    ibus_bus_register_component(bus_, component::make());
  }
}

void IbusService::fail(const std::string& reason) {
  say(posix::translated("switched off until IBus starts again: {1}", {reason}));
}

inputmethod::CorrectorLife::Framework IbusService::framework() {
  return {.name = "ibus",
          .obstacles =
              [this] {
                auto all = freedesktop::obstaclesToCorrection();
                std::ranges::move(desktop_->obstacles(), std::back_inserter(all));
                return all;
              },
          .program = posix::programFileOf(::getpid()),
          // There programs speak with IBus themselves, each by a part of its toolkit's, and those
          // lose letters in switches of the layout. The corrector for X11 needs none of them.
          .isReady = [this] { return !freedesktop::isX11Session(desktop_->environment()); },
          .onStarted = [this] { desktop_->setOpen(true); },
          .onEnding = [this] { desktop_->setOpen(false); },
          .onFailure = [this](const std::string& reason) { fail(reason); }};
}

}  // namespace tessarok::ibus
