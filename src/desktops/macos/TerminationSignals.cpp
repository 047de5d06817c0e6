#include "desktops/macos/TerminationSignals.h"

#include <csignal>
#include <utility>

namespace tessarok::macos {

namespace {

/// From `kill` and launchd, from a terminal's ⌃C, and from a terminal that is closed.
constexpr int kSignals[] = {SIGTERM, SIGINT, SIGHUP};

}  // namespace

TerminationSignals::TerminationSignals(std::function<void()> terminate)
    : terminate_(std::move(terminate)) {
  for (const int signal : kSignals) {
    // Dispatch is told of ignored signals too; with the default action there would be no process
    // left to tell.
    if (std::signal(signal, SIG_IGN) == SIG_IGN) continue;
    auto* const source = dispatch_source_create(
        DISPATCH_SOURCE_TYPE_SIGNAL, static_cast<uintptr_t>(signal), 0, dispatch_get_main_queue());
    if (source == nullptr) {
      std::signal(signal, SIG_DFL);
      continue;
    }
    dispatch_set_context(source, this);
    dispatch_source_set_event_handler_f(source, &TerminationSignals::receive);
    dispatch_resume(source);
    sources_.push_back({signal, source});
  }
}

TerminationSignals::~TerminationSignals() {
  for (const auto& [signal, source] : sources_) {
    dispatch_source_cancel(source);
    dispatch_release(source);
    std::signal(signal, SIG_DFL);
  }
}

void TerminationSignals::receive(void* context) {
  static_cast<TerminationSignals*>(context)->terminate_();
}

}  // namespace tessarok::macos
