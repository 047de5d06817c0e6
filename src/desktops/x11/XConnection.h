#pragma once

#include <functional>
#include <memory>
#include <string>
#include <variant>

struct _XDisplay;

namespace tessarok::x11 {

/// The connection to the X server: keyboards, synthetic keys and layouts all use this one, because
/// the order of requests on one connection is the order in which they take effect. Main thread.
///
/// Errors of single requests are ignored: a window or a device may always be gone by the time the
/// request arrives. `ErrorTrap` looks where it matters.
///
/// Operational notes. Once the server has gone, Xlib may crash in the next request: it knows of the
/// loss only if it has found out itself, and keymaps are read past it. So whoever is going to make
/// a request asks `isLost` first. It may also crash when the server goes while it closes a
/// connection, so none is ever closed: the end of the process does that.
class XConnection final {
 public:
  /// Ends the process.
  using End = void (*)();

  /// Opens the display that DISPLAY names. The string says why it is of no use. Xlib and its
  /// relatives know no way back from the middle of a question: when the server goes meanwhile,
  /// `serverGone` is called, and must not return.
  [[nodiscard]] static std::variant<std::unique_ptr<XConnection>, std::string> open(End serverGone);

  XConnection(const XConnection&) = delete;
  XConnection& operator=(const XConnection&) = delete;
  ~XConnection();

  [[nodiscard]] _XDisplay* display() const { return display_; }
  [[nodiscard]] unsigned long root() const { return root_; }
  [[nodiscard]] int descriptor() const;
  /// The extension number of XInput events.
  [[nodiscard]] int inputOpcode() const { return inputOpcode_; }
  /// The event number of XKB events.
  [[nodiscard]] int xkbEvent() const { return xkbEvent_; }

  /// The server has gone; nothing can be asked of it any more.
  [[nodiscard]] bool isLost();
  /// Called once when the server goes.
  std::function<void()> onLost;

  void flush();

 private:
  explicit XConnection(_XDisplay* display);
  /// What the server lacks; empty when nothing is missing.
  [[nodiscard]] std::string prepare();
  void watchForLoss();
  void lose();

  _XDisplay* display_;
  unsigned long root_ = 0;
  int inputOpcode_ = 0;
  int xkbEvent_ = 0;
  bool isLost_ = false;
};

/// Notes whether the server refused a request that was made while it exists. Main thread.
class ErrorTrap final {
 public:
  explicit ErrorTrap(XConnection& connection);
  ErrorTrap(const ErrorTrap&) = delete;
  ErrorTrap& operator=(const ErrorTrap&) = delete;
  /// Waits for the server to have dealt with everything so far.
  [[nodiscard]] bool failed();

 private:
  XConnection& connection_;
  unsigned long before_;
};

}  // namespace tessarok::x11
