#include "desktops/ibus/Engine.h"

#include <string_view>

namespace {

/// An engine as GLib knows it; it holds nothing of its own.
struct TessarokEngine {
  IBusEngine parent;
};
struct TessarokEngineClass {
  IBusEngineClass parent;
};

// The macro's own code.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wconversion"
#pragma GCC diagnostic ignored "-Wsign-conversion"
G_DEFINE_TYPE(TessarokEngine, tessarok_engine, IBUS_TYPE_ENGINE)
#pragma GCC diagnostic pop

tessarok::ibus::EngineListener* theListener = nullptr;

std::string textOf(const gchar* text) {
  return text == nullptr ? std::string() : text;
}

gboolean keyEvent(IBusEngine* engine, guint symbol, guint code, guint states) {
  return theListener != nullptr && theListener->keyEvent(*engine, symbol, code, states) ? TRUE
                                                                                        : FALSE;
}

void focusIn(IBusEngine* engine, const gchar* context, const gchar* program) {
  // Whoever asks is told the surrounding text from then on.
  ibus_engine_get_surrounding_text(engine, nullptr, nullptr, nullptr);
  if (theListener != nullptr) theListener->focusIn(*engine, textOf(context), textOf(program));
}

void focusOut(IBusEngine* engine, const gchar*) {
  if (theListener != nullptr) theListener->focusOut(*engine);
}

// The daemon calls these until it has found out that the engine takes the other two.

void plainFocusIn(IBusEngine* engine) {
  focusIn(engine, nullptr, nullptr);
}

void plainFocusOut(IBusEngine* engine) {
  focusOut(engine, nullptr);
}

void enable(IBusEngine* engine) {
  ibus_engine_get_surrounding_text(engine, nullptr, nullptr, nullptr);
}

void reset(IBusEngine* engine) {
  if (theListener != nullptr) theListener->reset(*engine);
}

void surroundingText(IBusEngine* engine, IBusText* text, guint caret, guint anchor) {
  IBUS_ENGINE_CLASS(tessarok_engine_parent_class)
      ->set_surrounding_text(engine, text, caret, anchor);
  if (theListener == nullptr) return;
  theListener->surroundingText(*engine, textOf(ibus_text_get_text(text)), caret, anchor);
}

void contentType(IBusEngine* engine, guint purpose, guint hints) {
  if (theListener != nullptr) theListener->contentType(*engine, purpose, hints);
}

void destroy(IBusObject* object) {
  if (theListener != nullptr) theListener->destroyed(*IBUS_ENGINE(object));
  IBUS_OBJECT_CLASS(tessarok_engine_parent_class)->destroy(object);
}

void tessarok_engine_init(TessarokEngine*) {}

void tessarok_engine_class_init(TessarokEngineClass* type) {
  auto* engine = &type->parent;
  engine->process_key_event = &keyEvent;
  engine->focus_in = &plainFocusIn;
  engine->focus_out = &plainFocusOut;
  engine->focus_in_id = &focusIn;
  engine->focus_out_id = &focusOut;
  engine->enable = &enable;
  engine->reset = &reset;
  engine->set_surrounding_text = &surroundingText;
  engine->set_content_type = &contentType;
  IBUS_OBJECT_CLASS(type)->destroy = &destroy;
}

IBusEngine* create(IBusFactory* factory, const gchar* name, gpointer) {
  static guint number = 0;
  const std::string_view wanted = name;
  if (wanted != tessarok::ibus::engine::kEnglish && wanted != tessarok::ibus::engine::kRussian) {
    return nullptr;
  }
  const auto path = "/org/freedesktop/IBus/Engine/Tessarok/" + std::to_string(++number);
  // With the identity of the context, which stays the same when the person switches engines.
  return IBUS_ENGINE(g_object_new(
      tessarok_engine_get_type(), "engine-name", name, "object-path", path.c_str(), "connection",
      ibus_service_get_connection(IBUS_SERVICE(factory)), "has-focus-id", TRUE, nullptr));
}

}  // namespace

namespace tessarok::ibus::engine {

void setListener(EngineListener* listener) {
  theListener = listener;
}

void offer(IBusFactory& factory) {
  g_signal_connect(&factory, "create-engine", G_CALLBACK(&create), nullptr);
}

}  // namespace tessarok::ibus::engine
