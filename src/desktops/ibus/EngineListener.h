#pragma once

#include <ibus.h>
#include <string>

namespace tessarok::ibus {

/// What IBus tells the engines. A text field's program is an input context of IBus; the daemon
/// hands it an engine whenever it gets the keys, and another one when the person switches. Main
/// thread.
class EngineListener {
 public:
  EngineListener() = default;
  EngineListener(const EngineListener&) = delete;
  EngineListener& operator=(const EngineListener&) = delete;
  virtual ~EngineListener() = default;

  /// Whether the key is not to go to its program. The code is the kernel's.
  [[nodiscard]] virtual bool keyEvent(IBusEngine& engine, guint symbol, guint code,
                                      guint states) = 0;
  /// `context` is the path of the input context, `program` what it calls itself; both are empty
  /// when the daemon does not tell.
  virtual void focusIn(IBusEngine& engine, const std::string& context,
                       const std::string& program) = 0;
  virtual void focusOut(IBusEngine& engine) = 0;
  virtual void reset(IBusEngine& engine) = 0;
  /// The text around the caret; positions count characters.
  virtual void surroundingText(IBusEngine& engine, const std::string& text, guint caret,
                               guint anchor) = 0;
  virtual void contentType(IBusEngine& engine, guint purpose, guint hints) = 0;
  virtual void destroyed(IBusEngine& engine) = 0;
};

}  // namespace tessarok::ibus
