#include "tests/desktops/ibus/IbusSession.h"

#include <cstdlib>
#include <filesystem>
#include <stdexcept>

#include "desktops/ibus/Engine.h"
#include "desktops/inputmethod/KeyNames.h"
#include "desktops/inputmethod/XkbLayout.h"
#include "desktops/layouts/KeyTable.h"
#include "desktops/virtual/VirtualEvent.h"
#include "desktops/xkb/HardwareKeys.h"
#include "text/Text.h"

namespace tessarok::testing {

namespace {

using inputmethod::XkbLayout;
using virtualdesktop::VirtualEvent;

constexpr guint kFirstXKey = 8;
/// Milliseconds for what takes its time on a busy machine.
constexpr int kPatience = 20000;
/// So long nothing may change any more.
constexpr int kQuiet = 1500;

layouts::KeyTable::Stroke strokeFor(char character) {
  if (character == '\n') return {keyCodes::returnKey, false};
  if (character == '\b') return {keyCodes::backspace, false};
  if (character == ' ') return {keyCodes::space, false};
  return *layouts::KeyTable::english().strokeFor(static_cast<char32_t>(character));
}

}  // namespace

struct IbusSession::Pressed {
  IbusSession* session;
  guint symbol;
  guint code;
  guint states;
};

IbusSession::IbusSession(Reports reports, const std::string& kind) : reports_(reports) {
  const auto address = "unix:path=" + (folder_.path() / "ibus").string();
  const auto inside = [this](const char* name) { return (folder_.path() / name).string(); };
  std::filesystem::create_directory(inside("run"));
  std::filesystem::permissions(inside("run"), std::filesystem::perms::owner_all);
  ::setenv("IBUS_ADDRESS", address.c_str(), 1);
  Subprocess::Setup setup;
  setup.environment = {{"HOME", folder_.path().string()},
                       {"XDG_CONFIG_HOME", inside("config")},
                       {"XDG_DATA_HOME", inside("data")},
                       {"XDG_CACHE_HOME", inside("cache")},
                       {"XDG_RUNTIME_DIR", inside("run")},
                       {"IBUS_COMPONENT_PATH", TESSAROK_IBUS_COMPONENTS},
                       {"TESSAROK_RES", TESSAROK_TEST_DATA},
                       {"GSETTINGS_BACKEND", "memory"},
                       {"XDG_CURRENT_DESKTOP", ""},
                       {"XDG_SESSION_TYPE", kind},
                       {"DISPLAY", ""},
                       {"WAYLAND_DISPLAY", ""},
                       {"DBUS_SESSION_BUS_ADDRESS", bus_.address()},
                       {"DBUS_SYSTEM_BUS_ADDRESS", "unix:path=/nonexistent"}};
  setup.errors = folder_.path() / "errors";
  daemon_ = std::make_unique<Subprocess>(
      std::vector<std::string>{"ibus-daemon", "--panel=disable", "--emoji-extension=disable",
                               "--config=disable", "--cache=none", "--address=" + address},
      "ibus", setup);
  connect();
}

IbusSession::~IbusSession() {
  if (context_ != nullptr) g_object_unref(context_);
  if (ibus_ != nullptr) g_object_unref(ibus_);
}

void IbusSession::connect() {
  for (int waited = 0; !std::filesystem::exists(folder_.path() / "ibus"); waited += 10) {
    if (waited > kPatience) throw std::runtime_error("there is no IBus daemon");
    g_usleep(10000);
  }
  // From the socket's file to its first answer.
  g_usleep(200000);
  ibus_init();
  ibus_ = ibus_bus_new();
  g_object_ref_sink(ibus_);
  if (ibus_bus_is_connected(ibus_) == FALSE) throw std::runtime_error("IBus does not answer");
  openProgram("tessarok-test");
  ibus_bus_set_global_engine(ibus_, ibus::engine::kEnglish);
}

void IbusSession::openProgram(const std::string& name) {
  if (context_ != nullptr) {
    ibus_input_context_focus_out(context_);
    g_object_unref(context_);
  }
  context_ = ibus_bus_create_input_context(ibus_, name.c_str());
  g_object_ref_sink(context_);
  const guint reports = reports_ == Reports::all ? IBUS_CAP_SURROUNDING_TEXT : 0;
  ibus_input_context_set_capabilities(context_, IBUS_CAP_FOCUS | reports);
  g_signal_connect(context_, "commit-text",
                   G_CALLBACK(+[](IBusInputContext*, IBusText* text, gpointer self) {
                     static_cast<IbusSession*>(self)->insert(ibus_text_get_text(text));
                   }),
                   this);
  g_signal_connect(
      context_, "forward-key-event",
      G_CALLBACK(+[](IBusInputContext*, guint symbol, guint code, guint states, gpointer self) {
        static_cast<IbusSession*>(self)->handle(symbol, code, states);
      }),
      this);
  g_signal_connect(context_, "delete-surrounding-text",
                   G_CALLBACK(+[](IBusInputContext*, gint, guint count, gpointer data) {
                     auto* self = static_cast<IbusSession*>(data);
                     VirtualEvent backspace;
                     backspace.code = keyCodes::backspace;
                     for (guint i = 0; i < count; ++i)
                       self->field_.keyDown(backspace);
                     self->report();
                   }),
                   this);
  ibus_input_context_focus_in(context_);
}

void IbusSession::setContentType(guint purpose, guint hints) {
  ibus_input_context_set_content_type(context_, purpose, hints);
}

std::string IbusSession::engine() const {
  auto* description = ibus_bus_get_global_engine(ibus_);
  if (description == nullptr) return {};
  std::string name = ibus_engine_desc_get_name(description);
  g_object_unref(description);
  return name;
}

void IbusSession::turn(int milliseconds) {
  const auto end = g_get_monotonic_time() + gint64{milliseconds} * 1000;
  do {
    while (g_main_context_iteration(nullptr, FALSE) != FALSE) {
    }
    if (g_get_monotonic_time() < end) g_usleep(500);
  } while (g_get_monotonic_time() < end);
}

void IbusSession::type(std::string_view keys, int milliseconds) {
  for (const char character : keys) {
    const auto stroke = strokeFor(character);
    press(xkb::hardwareKeys::xKeyOf(stroke.code), stroke.shift);
    turn(milliseconds);
  }
}

void IbusSession::press(std::uint32_t xKey, bool shift) {
  const auto layout = XkbLayout::named({engine() == ibus::engine::kRussian ? "ru" : "us", ""});
  const guint states = shift ? static_cast<guint>(IBUS_SHIFT_MASK) : 0;
  const auto symbol = layout->symbol(xKey, states);
  const guint code = xKey - kFirstXKey;
  const auto ask = [&](guint released) {
    ++asked_;
    ibus_input_context_process_key_event_async(
        context_, symbol, code, states | released, kPatience, nullptr,
        [](GObject* context, GAsyncResult* result, gpointer data) {
          const std::unique_ptr<Pressed> pressed(static_cast<Pressed*>(data));
          auto& self = *pressed->session;
          --self.asked_;
          const bool isKept = ibus_input_context_process_key_event_async_finish(
                                  IBUS_INPUT_CONTEXT(context), result, nullptr) != FALSE;
          if (isKept) {
            ++self.swallowed_;
          } else {
            self.handle(pressed->symbol, pressed->code, pressed->states);
          }
        },
        new Pressed{this, symbol, code, states | released});
  };
  ask(0);
  ask(static_cast<guint>(IBUS_RELEASE_MASK));
}

void IbusSession::handle(guint symbol, guint code, guint states) {
  if ((states & static_cast<guint>(IBUS_RELEASE_MASK)) != 0) return;
  const inputmethod::Key key{
      .symbol = symbol, .states = states & 0xFF, .code = static_cast<int>(code + kFirstXKey)};
  VirtualEvent event;
  event.code = inputmethod::keyNames::codeOf(key);
  event.payload = text::utf16(inputmethod::keyNames::textOf(key));
  field_.keyDown(event);
  report();
}

void IbusSession::insert(const std::string& text) {
  VirtualEvent event;
  event.code = xkb::hardwareKeys::kNoKey;
  event.payload = text::utf16(text);
  field_.keyDown(event);
  report();
}

void IbusSession::report() {
  if (reports_ == Reports::nothing) return;
  const auto text = field_.text();
  const auto caret = static_cast<guint>(g_utf8_strlen(text.c_str(), -1));
  auto* told = ibus_text_new_from_string(text.c_str());
  g_object_ref_sink(told);
  ibus_input_context_set_surrounding_text(context_, told, caret, caret);
  g_object_unref(told);
}

bool IbusSession::waitForCorrector() {
  for (int waited = 0; waited < kPatience; waited += kQuiet) {
    type("ghbdtn ", 10);
    const bool isRight = textInTheEnd("привет ") == "привет ";
    field_.clear();
    report();
    turn(100);
    if (isRight) return true;
  }
  return false;
}

std::string IbusSession::textInTheEnd(const std::string& expected) {
  std::string before = field_.text();
  for (int quiet = 0; quiet < kQuiet || asked_ > 0; quiet += 10) {
    turn(10);
    if (field_.text() == expected && asked_ == 0) break;
    if (field_.text() != before) quiet = 0;
    before = field_.text();
  }
  // Nothing is to come behind it.
  turn(100);
  return field_.text();
}

}  // namespace tessarok::testing
