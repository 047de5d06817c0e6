#include "desktops/freedesktop/MenuExport.h"

#include <algorithm>
#include <utility>

#include "desktops/freedesktop/BusExceptions.h"

namespace tessarok::freedesktop {

namespace {

constexpr const char* kInterface = "com.canonical.dbusmenu";
constexpr std::int32_t kRoot = 0;
constexpr std::int32_t kAnyDepth = -1;

/// A single underscore would underline the character behind it.
std::string labelOf(const std::string& title) {
  std::string label;
  for (const char c : title) {
    label += c;
    if (c == '_') label += c;
  }
  return label;
}

void appendText(BusWriter& body, const char* name, const char* text) {
  body.append("{sv}", name, "s", text);
}

std::vector<std::int32_t> readNumbers(sd_bus_message& message) {
  std::vector<std::int32_t> numbers;
  if (sd_bus_message_enter_container(&message, 'a', "i") < 0) return numbers;
  std::int32_t number = 0;
  while (sd_bus_message_read_basic(&message, 'i', &number) > 0)
    numbers.push_back(number);
  sd_bus_message_exit_container(&message);
  return numbers;
}

int unknownItem(sd_bus_error* error, std::int32_t number) {
  return sd_bus_error_setf(error, SD_BUS_ERROR_INVALID_ARGS, "the menu has no item %d", number);
}

}  // namespace

/// What panels call.
struct MenuExport::Calls {
  static MenuExport& of(void* userData) { return *static_cast<MenuExport*>(userData); }

  static int version(sd_bus*, const char*, const char*, const char*, sd_bus_message* reply, void*,
                     sd_bus_error*) {
    return sd_bus_message_append(reply, "u", 3U);
  }

  static int textDirection(sd_bus*, const char*, const char*, const char*, sd_bus_message* reply,
                           void*, sd_bus_error*) {
    return sd_bus_message_append(reply, "s", "ltr");
  }

  static int status(sd_bus*, const char*, const char*, const char*, sd_bus_message* reply, void*,
                    sd_bus_error*) {
    return sd_bus_message_append(reply, "s", "normal");
  }

  static int iconThemePath(sd_bus*, const char*, const char*, const char*, sd_bus_message* reply,
                           void*, sd_bus_error*) {
    return sd_bus_message_append(reply, "as", 0);
  }

  static int getLayout(sd_bus_message* call, void* userData, sd_bus_error* error) {
    auto& menu = of(userData);
    std::int32_t parent = kRoot;
    std::int32_t depth = kAnyDepth;
    if (const int read = sd_bus_message_read(call, "ii", &parent, &depth); read < 0) return read;
    menu.refresh();
    if (!menu.entries_.contains(parent)) return unknownItem(error, parent);
    sd_bus_message* made = nullptr;
    if (const int result = sd_bus_message_new_method_return(call, &made); result < 0) return result;
    const BusMessage reply(made);
    BusWriter body(*made);
    body.append("u", menu.revision_);
    menu.appendItem(body, parent, depth);
    return body.send();
  }

  static int getGroupProperties(sd_bus_message* call, void* userData, sd_bus_error*) {
    auto& menu = of(userData);
    menu.refresh();
    auto numbers = readNumbers(*call);
    if (numbers.empty()) {
      for (const auto& [number, entry] : menu.entries_)
        numbers.push_back(number);
    }
    sd_bus_message* made = nullptr;
    if (const int result = sd_bus_message_new_method_return(call, &made); result < 0) return result;
    const BusMessage reply(made);
    std::erase_if(numbers, [&menu](auto number) { return !menu.entries_.contains(number); });
    BusWriter body(*made);
    menu.appendPropertiesOf(body, numbers);
    return body.send();
  }

  static int getProperty(sd_bus_message* call, void* userData, sd_bus_error* error) {
    auto& menu = of(userData);
    std::int32_t number = 0;
    const char* name = nullptr;
    if (const int read = sd_bus_message_read(call, "is", &number, &name); read < 0) return read;
    menu.refresh();
    const auto found = menu.entries_.find(number);
    if (found == menu.entries_.end()) return unknownItem(error, number);
    const auto& properties = found->second.properties;
    const std::string_view wanted = name;
    if (wanted == "label") {
      return sd_bus_reply_method_return(call, "v", "s", properties.label.c_str());
    }
    if (wanted == "enabled") {
      return sd_bus_reply_method_return(call, "v", "b", properties.enabled ? 1 : 0);
    }
    if (wanted == "visible") return sd_bus_reply_method_return(call, "v", "b", 1);
    if (wanted == "type") {
      return sd_bus_reply_method_return(call, "v", "s",
                                        properties.isSeparator ? "separator" : "standard");
    }
    if (wanted == "toggle-type") {
      return sd_bus_reply_method_return(call, "v", "s", properties.isCheckable ? "checkmark" : "");
    }
    if (wanted == "toggle-state") {
      return sd_bus_reply_method_return(call, "v", "i",
                                        properties.isCheckable ? int{properties.isChecked} : -1);
    }
    if (wanted == "children-display") {
      return sd_bus_reply_method_return(call, "v", "s", properties.hasSubmenu ? "submenu" : "");
    }
    return sd_bus_error_setf(error, SD_BUS_ERROR_INVALID_ARGS, "items have no property %s", name);
  }

  /// One event, as `Event` gets it and `EventGroup` holds several of.
  static int readEvent(sd_bus_message* call, std::int32_t& number, const char*& event) {
    if (const int read = sd_bus_message_read(call, "is", &number, &event); read < 0) return read;
    if (const int skipped = sd_bus_message_skip(call, "v"); skipped < 0) return skipped;
    return sd_bus_message_skip(call, "u");
  }

  static int event(sd_bus_message* call, void* userData, sd_bus_error* error) {
    std::int32_t number = 0;
    const char* name = nullptr;
    if (const int read = readEvent(call, number, name); read < 0) return read;
    if (!of(userData).choose(number, name)) return unknownItem(error, number);
    return sd_bus_reply_method_return(call, "");
  }

  static int eventGroup(sd_bus_message* call, void* userData, sd_bus_error* error) {
    std::vector<std::int32_t> unknown;
    bool known = false;
    if (const int result = sd_bus_message_enter_container(call, 'a', "(isvu)"); result < 0) {
      return result;
    }
    while (sd_bus_message_enter_container(call, 'r', "isvu") > 0) {
      std::int32_t number = 0;
      const char* name = nullptr;
      if (const int read = readEvent(call, number, name); read < 0) return read;
      if (of(userData).choose(number, name)) {
        known = true;
      } else {
        unknown.push_back(number);
      }
      sd_bus_message_exit_container(call);
    }
    if (!known && !unknown.empty()) return unknownItem(error, unknown.front());
    return replyNumbers(call, unknown, false);
  }

  static int aboutToShow(sd_bus_message* call, void* userData, sd_bus_error* error) {
    auto& menu = of(userData);
    std::int32_t number = 0;
    if (const int read = sd_bus_message_read(call, "i", &number); read < 0) return read;
    const auto before = menu.revision_;
    menu.refresh();
    if (!menu.entries_.contains(number)) return unknownItem(error, number);
    return sd_bus_reply_method_return(call, "b", before != menu.revision_ ? 1 : 0);
  }

  static int aboutToShowGroup(sd_bus_message* call, void* userData, sd_bus_error*) {
    auto& menu = of(userData);
    menu.refresh();
    std::vector<std::int32_t> unknown;
    for (const auto number : readNumbers(*call)) {
      if (!menu.entries_.contains(number)) unknown.push_back(number);
    }
    return replyNumbers(call, unknown, true);
  }

  /// Answers with `numbers`, behind an empty list when `second`.
  static int replyNumbers(sd_bus_message* call, const std::vector<std::int32_t>& numbers,
                          bool second) {
    sd_bus_message* made = nullptr;
    if (const int result = sd_bus_message_new_method_return(call, &made); result < 0) return result;
    const BusMessage reply(made);
    BusWriter body(*made);
    if (second) body.append("ai", 0);
    body.appendArray('i', numbers.data(), numbers.size() * sizeof(std::int32_t));
    return body.send();
  }

  static const sd_bus_vtable kTable[];
};

const sd_bus_vtable MenuExport::Calls::kTable[] = {
    SD_BUS_VTABLE_START(0),
    SD_BUS_PROPERTY("Version", "u", BusExceptions::get<version>, 0, SD_BUS_VTABLE_PROPERTY_CONST),
    SD_BUS_PROPERTY("TextDirection", "s", BusExceptions::get<textDirection>, 0,
                    SD_BUS_VTABLE_PROPERTY_CONST),
    SD_BUS_PROPERTY("Status", "s", BusExceptions::get<status>, 0, SD_BUS_VTABLE_PROPERTY_CONST),
    SD_BUS_PROPERTY("IconThemePath", "as", BusExceptions::get<iconThemePath>, 0,
                    SD_BUS_VTABLE_PROPERTY_CONST),
    SD_BUS_METHOD("GetLayout", "iias", "u(ia{sv}av)", BusExceptions::call<getLayout>,
                  SD_BUS_VTABLE_UNPRIVILEGED),
    SD_BUS_METHOD("GetGroupProperties", "aias", "a(ia{sv})",
                  BusExceptions::call<getGroupProperties>, SD_BUS_VTABLE_UNPRIVILEGED),
    SD_BUS_METHOD("GetProperty", "is", "v", BusExceptions::call<getProperty>,
                  SD_BUS_VTABLE_UNPRIVILEGED),
    SD_BUS_METHOD("Event", "isvu", "", BusExceptions::call<event>, SD_BUS_VTABLE_UNPRIVILEGED),
    SD_BUS_METHOD("EventGroup", "a(isvu)", "ai", BusExceptions::call<eventGroup>,
                  SD_BUS_VTABLE_UNPRIVILEGED),
    SD_BUS_METHOD("AboutToShow", "i", "b", BusExceptions::call<aboutToShow>,
                  SD_BUS_VTABLE_UNPRIVILEGED),
    SD_BUS_METHOD("AboutToShowGroup", "ai", "aiai", BusExceptions::call<aboutToShowGroup>,
                  SD_BUS_VTABLE_UNPRIVILEGED),
    SD_BUS_SIGNAL("ItemsPropertiesUpdated", "a(ia{sv})a(ias)", 0),
    SD_BUS_SIGNAL("LayoutUpdated", "ui", 0),
    SD_BUS_SIGNAL("ItemActivationRequested", "iu", 0),
    SD_BUS_VTABLE_END,
};

MenuExport::MenuExport(Bus& bus, platform::RunLoop& loop, const char* path)
    : bus_(bus),
      loop_(loop),
      path_(path),
      entries_(read()),
      object_(bus.addObject(path, kInterface, Calls::kTable, this)) {}

void MenuExport::setMenu(std::shared_ptr<platform::Menu> menu) {
  menu_ = std::move(menu);
  switches_.clear();
  refresh();
}

MenuExport::Entries MenuExport::read() {
  Entries entries;
  entries[kRoot].properties.hasSubmenu = true;
  if (menu_) readInto(entries, kRoot, *menu_);
  return entries;
}

void MenuExport::readInto(Entries& entries, std::int32_t parent, const platform::Menu& menu) {
  noteSwitches(menu);
  for (const auto& item : menu.items) {
    const auto number = static_cast<std::int32_t>(entries.size());
    entries[number] = {.item = item, .children = {}, .properties = propertiesOf(*item)};
    entries[parent].children.push_back(number);
    if (item->submenu) readInto(entries, number, *item->submenu);
  }
}

void MenuExport::noteSwitches(const platform::Menu& menu) {
  const auto& items = menu.items;
  const bool anyIsOn =
      std::any_of(items.begin(), items.end(), [](const auto& i) { return i->state; });
  const bool allAct = std::all_of(items.begin(), items.end(),
                                  [](const auto& i) { return static_cast<bool>(i->action); });
  for (const auto& item : items) {
    if (item->state || (anyIsOn && allAct)) switches_.insert(item.get());
  }
}

MenuExport::Properties MenuExport::propertiesOf(const platform::MenuItem& item) const {
  Properties properties;
  properties.isSeparator = item.isSeparator;
  properties.enabled = item.enabled;
  properties.isCheckable = switches_.contains(&item);
  properties.isChecked = item.state;
  properties.hasSubmenu = item.submenu != nullptr;
  properties.label = labelOf(item.title);
  return properties;
}

void MenuExport::refresh() {
  auto former = std::exchange(entries_, read());
  bool sameItems = former.size() == entries_.size();
  std::vector<std::int32_t> changed;
  for (auto a = former.begin(), b = entries_.begin(); sameItems && a != former.end(); ++a, ++b) {
    sameItems = a->second.item == b->second.item && a->second.children == b->second.children;
    if (a->second.properties != b->second.properties) changed.push_back(b->first);
  }
  if (sameItems) {
    if (!changed.empty()) announceProperties(changed);
    return;
  }
  ++revision_;
  auto signal = bus_.signal(path_, kInterface, "LayoutUpdated");
  if (signal) sd_bus_message_append(signal.get(), "ui", revision_, kRoot);
  bus_.send(std::move(signal));
}

void MenuExport::announceProperties(const std::vector<std::int32_t>& changed) {
  auto signal = bus_.signal(path_, kInterface, "ItemsPropertiesUpdated");
  if (!signal) return;
  BusWriter body(*signal);
  appendPropertiesOf(body, changed);
  body.append("a(ias)", 0);
  if (body.result() >= 0) bus_.send(std::move(signal));
}

void MenuExport::appendPropertiesOf(BusWriter& body, const std::vector<std::int32_t>& numbers) {
  body.open('a', "(ia{sv})");
  for (const auto number : numbers) {
    body.open('r', "ia{sv}");
    body.append("i", number);
    appendProperties(body, entries_[number].properties);
    body.close();
  }
  body.close();
}

bool MenuExport::choose(std::int32_t number, const std::string& event) {
  const auto found = entries_.find(number);
  if (found == entries_.end()) return false;
  const auto item = found->second.item;
  // Of what a panel may tell, only that an item was chosen matters.
  if (event != "clicked" || !item || !item->enabled || !item->action) return true;
  // On a later turn, so that the panel has its answer even when the action ends the program.
  loop_.async([item, weak = std::weak_ptr(self_)] {
    item->action(*item);
    if (const auto self = weak.lock()) (*self)->refresh();
  });
  return true;
}

void MenuExport::appendItem(BusWriter& body, std::int32_t number, std::int32_t depth) {
  const auto& entry = entries_[number];
  body.open('r', "ia{sv}av");
  body.append("i", number);
  appendProperties(body, entry.properties);
  body.open('a', "v");
  for (const auto child : entry.children) {
    if (depth == 0) break;
    body.open('v', "(ia{sv}av)");
    appendItem(body, child, depth > 0 ? depth - 1 : depth);
    body.close();
  }
  body.close();
  body.close();
}

void MenuExport::appendProperties(BusWriter& body, const Properties& properties) {
  body.open('a', "{sv}");
  if (properties.isSeparator) {
    appendText(body, "type", "separator");
  } else if (!properties.label.empty()) {
    appendText(body, "label", properties.label.c_str());
  }
  // Always there, so that a panel that is told of a change need not know the defaults.
  body.append("{sv}", "enabled", "b", properties.enabled ? 1 : 0);
  if (properties.isCheckable) {
    appendText(body, "toggle-type", "checkmark");
    body.append("{sv}", "toggle-state", "i", properties.isChecked ? 1 : 0);
  }
  if (properties.hasSubmenu) appendText(body, "children-display", "submenu");
  body.close();
}

}  // namespace tessarok::freedesktop
