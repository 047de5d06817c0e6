#pragma once

#include <chrono>

#include "tests/desktops/fcitx5/Session.h"

namespace tessarok::testing {

/// Types so many sentences into the session's entry, keys so far apart, and expects what comes out
/// on the virtual desktop.
void expectSentences(Session& session, int count, std::chrono::milliseconds interval);

}  // namespace tessarok::testing
