#pragma once

#include <memory>

#include "tests/desktops/x11/Applications.h"

namespace tessarok::testing {

/// A text entry of the Qt toolkit.
class QtEntry final : public Application {
 public:
  explicit QtEntry(XServer& server);
};

/// A text entry on a page in the browser Chromium, which has a toolkit of its own.
class Chromium final : public Application {
 public:
  explicit Chromium(XServer& server);

 private:
  /// Writes down what the page says.
  std::unique_ptr<Subprocess> page_;
};

}  // namespace tessarok::testing
