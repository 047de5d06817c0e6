#include "tests/desktops/freedesktop/StatusHost.h"

#include <gtest/gtest.h>

namespace tessarok::testing {

namespace {

using freedesktop::Bus;
using freedesktop::BusMessage;

constexpr const char* kWatcher = "org.kde.StatusNotifierWatcher";
constexpr const char* kItem = "org.kde.StatusNotifierItem";
constexpr const char* kMenu = "com.canonical.dbusmenu";
constexpr const char* kMenuPath = "/MenuBar";

const StatusHost::Line* find(const std::vector<StatusHost::Line>& lines, const std::string& label) {
  for (const auto& line : lines) {
    if (line.label == label) return &line;
    if (const auto* found = find(line.children, label)) return found;
  }
  return nullptr;
}

void draw(const std::vector<StatusHost::Line>& lines, const std::string& indent,
          std::string& text) {
  for (const auto& line : lines) {
    text += indent;
    if (line.isSeparator) {
      text += "---\n";
      continue;
    }
    if (line.checked) text += *line.checked ? "[x] " : "[ ] ";
    if (!line.enabled) text += "- ";
    text += line.label + "\n";
    draw(line.children, indent + "  ", text);
  }
}

void readProperty(sd_bus_message* message, StatusHost::Line& line) {
  const char* name = nullptr;
  const char* text = nullptr;
  int number = 0;
  sd_bus_message_read(message, "s", &name);
  const std::string_view property = name;
  if (property == "label") {
    sd_bus_message_read(message, "v", "s", &text);
    line.label = text;
  } else if (property == "type") {
    sd_bus_message_read(message, "v", "s", &text);
    line.isSeparator = std::string_view(text) == "separator";
  } else if (property == "enabled") {
    sd_bus_message_read(message, "v", "b", &number);
    line.enabled = number != 0;
  } else if (property == "toggle-state") {
    sd_bus_message_read(message, "v", "i", &number);
    line.checked = number == 1;
  } else {
    sd_bus_message_skip(message, "v");
  }
}

StatusHost::Line readLine(sd_bus_message* message) {
  StatusHost::Line line;
  sd_bus_message_enter_container(message, 'r', "ia{sv}av");
  sd_bus_message_read(message, "i", &line.number);
  sd_bus_message_enter_container(message, 'a', "{sv}");
  while (sd_bus_message_enter_container(message, 'e', "sv") > 0) {
    readProperty(message, line);
    sd_bus_message_exit_container(message);
  }
  sd_bus_message_exit_container(message);
  sd_bus_message_enter_container(message, 'a', "v");
  while (sd_bus_message_enter_container(message, 'v', "(ia{sv}av)") > 0) {
    line.children.push_back(readLine(message));
    sd_bus_message_exit_container(message);
  }
  sd_bus_message_exit_container(message);
  sd_bus_message_exit_container(message);
  return line;
}

}  // namespace

/// What icons call.
struct StatusHost::Calls {
  static int registerItem(sd_bus_message* call, void* userData, sd_bus_error*) noexcept {
    const char* name = nullptr;
    if (const int read = sd_bus_message_read(call, "s", &name); read < 0) return read;
    static_cast<StatusHost*>(userData)->registered_.emplace_back(name);
    return sd_bus_reply_method_return(call, "");
  }
  static const sd_bus_vtable kTable[];
};

const sd_bus_vtable StatusHost::Calls::kTable[] = {
    SD_BUS_VTABLE_START(0),
    SD_BUS_METHOD("RegisterStatusNotifierItem", "s", "", registerItem, SD_BUS_VTABLE_UNPRIVILEGED),
    SD_BUS_VTABLE_END,
};

StatusHost::StatusHost(Pump& pump, const std::string& address) : pump_(pump) {
  std::string reason;
  bus_ = Bus::openAddress(pump, address, reason);
  watcher_ = bus_->addObject("/StatusNotifierWatcher", kWatcher, Calls::kTable, this);
  for (const auto* interface : {kItem, kMenu}) {
    heard_.push_back(bus_->match(std::string("type='signal',interface='") + interface + "'",
                                 [this](sd_bus_message& signal) {
                                   signals_.emplace_back(sd_bus_message_get_member(&signal));
                                 }));
  }
  name_ = bus_->requestName(kWatcher);
}

bool StatusHost::seesIcon() {
  return pump_.until([this] { return !registered_.empty(); });
}

void StatusHost::leave() {
  auto call = bus_->methodCall("org.freedesktop.DBus", "/org/freedesktop/DBus",
                               "org.freedesktop.DBus", "ReleaseName");
  sd_bus_message_append(call.get(), "s", kWatcher);
  // Waited for, so that the name is free for the next panel.
  EXPECT_TRUE(answer(std::move(call)));
  bus_.reset();
}

std::string StatusHost::text(const char* name) {
  const auto reply = property(name);
  const char* text = "";
  if (reply) sd_bus_message_read(reply.get(), "v", "s", &text);
  return text;
}

std::string StatusHost::toolTip() {
  const auto reply = property("ToolTip");
  const char* title = "";
  if (!reply) return title;
  sd_bus_message_enter_container(reply.get(), 'v', "(sa(iiay)ss)");
  sd_bus_message_enter_container(reply.get(), 'r', "sa(iiay)ss");
  sd_bus_message_skip(reply.get(), "sa(iiay)");
  sd_bus_message_read(reply.get(), "s", &title);
  return title;
}

std::vector<StatusHost::Pixels> StatusHost::pixels() {
  std::vector<Pixels> images;
  const auto reply = property("IconPixmap");
  if (!reply) return images;
  sd_bus_message_enter_container(reply.get(), 'v', "a(iiay)");
  sd_bus_message_enter_container(reply.get(), 'a', "(iiay)");
  while (sd_bus_message_enter_container(reply.get(), 'r', "iiay") > 0) {
    Pixels image;
    const void* bytes = nullptr;
    std::size_t size = 0;
    sd_bus_message_read(reply.get(), "ii", &image.width, &image.height);
    sd_bus_message_read_array(reply.get(), 'y', &bytes, &size);
    const auto* first = static_cast<const std::uint8_t*>(bytes);
    image.bytes.assign(first, first + size);
    images.push_back(std::move(image));
    sd_bus_message_exit_container(reply.get());
  }
  return images;
}

std::vector<StatusHost::Line> StatusHost::menu() {
  auto call = menuCall("GetLayout");
  sd_bus_message_append(call.get(), "iias", 0, -1, 0);
  const auto reply = answer(std::move(call));
  if (!reply) return {};
  sd_bus_message_skip(reply.get(), "u");
  return readLine(reply.get()).children;
}

std::string StatusHost::drawnMenu() {
  std::string text;
  draw(menu(), "", text);
  return text;
}

bool StatusHost::choose(const std::string& label) {
  const auto lines = menu();
  const auto* line = find(lines, label);
  return line != nullptr && sendEvent(line->number, "clicked");
}

bool StatusHost::sendEvent(std::int32_t number, const char* event) {
  auto call = menuCall("Event");
  sd_bus_message_append(call.get(), "isvu", number, event, "i", 0, 0U);
  return answer(std::move(call)) != nullptr;
}

BusMessage StatusHost::callMenu(BusMessage call) {
  return answer(std::move(call));
}

BusMessage StatusHost::menuCall(const char* member) {
  return bus_->methodCall(registered_.back(), kMenuPath, kMenu, member);
}

BusMessage StatusHost::property(const char* name) {
  auto call = bus_->methodCall(registered_.back(), "/StatusNotifierItem",
                               "org.freedesktop.DBus.Properties", "Get");
  sd_bus_message_append(call.get(), "ss", kItem, name);
  return answer(std::move(call));
}

BusMessage StatusHost::answer(BusMessage call) {
  BusMessage reply;
  const auto slot = bus_->call(std::move(call), [&reply](sd_bus_message& message) {
    reply.reset(sd_bus_message_ref(&message));
  });
  EXPECT_TRUE(pump_.until([&reply] { return reply != nullptr; }));
  if (reply && sd_bus_message_is_method_error(reply.get(), nullptr) != 0) reply.reset();
  return reply;
}

}  // namespace tessarok::testing
