#pragma once

#include "tests/desktops/x11/XServer.h"

struct _XDisplay;

namespace tessarok::testing {

/// Another program that holds the keyboard of a server, for as long as the object lives.
class KeyboardGrab {
 public:
  /// `server` outlives this object. Throws when the keyboard cannot be had.
  explicit KeyboardGrab(const XServer& server);
  KeyboardGrab(const KeyboardGrab&) = delete;
  KeyboardGrab& operator=(const KeyboardGrab&) = delete;
  ~KeyboardGrab();

 private:
  _XDisplay* display_;
};

}  // namespace tessarok::testing
