#include "desktops/freedesktop/StatusNotifierItem.h"

#include <unistd.h>
#include <utility>

#include "desktops/freedesktop/BusExceptions.h"
#include "desktops/freedesktop/BusWriter.h"
#include "desktops/posix/Translation.h"

namespace tessarok::freedesktop {

namespace {

constexpr const char* kPath = "/StatusNotifierItem";
constexpr const char* kMenuPath = "/MenuBar";
constexpr const char* kInterface = "org.kde.StatusNotifierItem";
constexpr const char* kWatcher = "org.kde.StatusNotifierWatcher";
constexpr const char* kWatcherPath = "/StatusNotifierWatcher";

/// A process may have several items; panels want their names to differ.
std::string nextBusName() {
  static int items = 0;
  return std::string(kInterface) + "-" + std::to_string(::getpid()) + "-" + std::to_string(++items);
}

int appendNoPixels(sd_bus_message* message) {
  return sd_bus_message_append(message, "a(iiay)", 0);
}

int appendPixels(sd_bus_message* message, const StatusDrawing& drawing, bool dimmed) {
  const auto pixels = drawing.pixels(dimmed);
  BusWriter body(*message);
  body.open('a', "(iiay)");
  body.open('r', "iiay");
  body.append("ii", StatusDrawing::kSize, StatusDrawing::kSize);
  body.appendArray('y', pixels.data(), pixels.size());
  body.close();
  body.close();
  return body.result();
}

}  // namespace

/// What panels read. There is no Activate on purpose: a panel that finds none opens the menu at
/// a click, which is all that the icon is for.
struct StatusNotifierItem::Calls {
  static StatusNotifierItem& of(void* userData) {
    return *static_cast<StatusNotifierItem*>(userData);
  }
  static int text(sd_bus_message* reply, const std::string& value) {
    return sd_bus_message_append(reply, "s", value.c_str());
  }

  static int category(sd_bus*, const char*, const char*, const char*, sd_bus_message* reply, void*,
                      sd_bus_error*) {
    return text(reply, "SystemServices");
  }
  static int id(sd_bus*, const char*, const char*, const char*, sd_bus_message* reply, void*,
                sd_bus_error*) {
    return text(reply, "tessarok");
  }
  static int title(sd_bus*, const char*, const char*, const char*, sd_bus_message* reply, void*,
                   sd_bus_error*) {
    return text(reply, "Tessarok");
  }
  /// Always active: a panel hides a passive item and flashes one that needs attention, and the
  /// icon says by itself how things are.
  static int status(sd_bus*, const char*, const char*, const char*, sd_bus_message* reply, void*,
                    sd_bus_error*) {
    return text(reply, "Active");
  }
  static int windowId(sd_bus*, const char*, const char*, const char*, sd_bus_message* reply, void*,
                      sd_bus_error*) {
    return sd_bus_message_append(reply, "i", 0);
  }
  static int iconName(sd_bus*, const char*, const char*, const char*, sd_bus_message* reply,
                      void* userData, sd_bus_error*) {
    return text(reply, of(userData).image().name);
  }
  static int iconThemePath(sd_bus*, const char*, const char*, const char*, sd_bus_message* reply,
                           void* userData, sd_bus_error*) {
    return text(reply, of(userData).image().themeFolder);
  }
  static int iconPixmap(sd_bus*, const char*, const char*, const char*, sd_bus_message* reply,
                        void* userData, sd_bus_error*) {
    const auto& item = of(userData);
    const auto image = item.image();
    if (!image.drawing) return appendNoPixels(reply);
    return appendPixels(reply, *image.drawing, item.dimmed_);
  }
  static int iconDescription(sd_bus*, const char*, const char*, const char*, sd_bus_message* reply,
                             void* userData, sd_bus_error*) {
    const auto& symbol = of(userData).symbol_;
    return text(reply, symbol ? "Tessarok: " + posix::translated(std::string(symbol->description))
                              : "Tessarok");
  }
  static int noText(sd_bus*, const char*, const char*, const char*, sd_bus_message* reply, void*,
                    sd_bus_error*) {
    return text(reply, "");
  }
  static int noPixels(sd_bus*, const char*, const char*, const char*, sd_bus_message* reply, void*,
                      sd_bus_error*) {
    return appendNoPixels(reply);
  }
  static int toolTip(sd_bus*, const char*, const char*, const char*, sd_bus_message* reply,
                     void* userData, sd_bus_error*) {
    return sd_bus_message_append(reply, "(sa(iiay)ss)", "", 0, of(userData).toolTip_.c_str(), "");
  }
  static int itemIsMenu(sd_bus*, const char*, const char*, const char*, sd_bus_message* reply,
                        void*, sd_bus_error*) {
    return sd_bus_message_append(reply, "b", 1);
  }
  static int menu(sd_bus*, const char*, const char*, const char*, sd_bus_message* reply, void*,
                  sd_bus_error*) {
    return sd_bus_message_append(reply, "o", kMenuPath);
  }
  static int label(sd_bus*, const char*, const char*, const char*, sd_bus_message* reply,
                   void* userData, sd_bus_error*) {
    return text(reply, of(userData).title_);
  }

  static const sd_bus_vtable kTable[];
};

const sd_bus_vtable StatusNotifierItem::Calls::kTable[] = {
    SD_BUS_VTABLE_START(0),
    SD_BUS_PROPERTY("Category", "s", BusExceptions::get<category>, 0, SD_BUS_VTABLE_PROPERTY_CONST),
    SD_BUS_PROPERTY("Id", "s", BusExceptions::get<id>, 0, SD_BUS_VTABLE_PROPERTY_CONST),
    SD_BUS_PROPERTY("Title", "s", BusExceptions::get<title>, 0, SD_BUS_VTABLE_PROPERTY_CONST),
    SD_BUS_PROPERTY("Status", "s", BusExceptions::get<status>, 0, SD_BUS_VTABLE_PROPERTY_CONST),
    SD_BUS_PROPERTY("WindowId", "i", BusExceptions::get<windowId>, 0, SD_BUS_VTABLE_PROPERTY_CONST),
    SD_BUS_PROPERTY("IconName", "s", BusExceptions::get<iconName>, 0, 0),
    SD_BUS_PROPERTY("IconThemePath", "s", BusExceptions::get<iconThemePath>, 0, 0),
    SD_BUS_PROPERTY("IconPixmap", "a(iiay)", BusExceptions::get<iconPixmap>, 0, 0),
    SD_BUS_PROPERTY("IconAccessibleDesc", "s", BusExceptions::get<iconDescription>, 0, 0),
    SD_BUS_PROPERTY("OverlayIconName", "s", BusExceptions::get<noText>, 0,
                    SD_BUS_VTABLE_PROPERTY_CONST),
    SD_BUS_PROPERTY("OverlayIconPixmap", "a(iiay)", BusExceptions::get<noPixels>, 0,
                    SD_BUS_VTABLE_PROPERTY_CONST),
    SD_BUS_PROPERTY("AttentionIconName", "s", BusExceptions::get<noText>, 0,
                    SD_BUS_VTABLE_PROPERTY_CONST),
    SD_BUS_PROPERTY("AttentionIconPixmap", "a(iiay)", BusExceptions::get<noPixels>, 0,
                    SD_BUS_VTABLE_PROPERTY_CONST),
    SD_BUS_PROPERTY("AttentionMovieName", "s", BusExceptions::get<noText>, 0,
                    SD_BUS_VTABLE_PROPERTY_CONST),
    SD_BUS_PROPERTY("ToolTip", "(sa(iiay)ss)", BusExceptions::get<toolTip>, 0, 0),
    SD_BUS_PROPERTY("ItemIsMenu", "b", BusExceptions::get<itemIsMenu>, 0,
                    SD_BUS_VTABLE_PROPERTY_CONST),
    SD_BUS_PROPERTY("Menu", "o", BusExceptions::get<menu>, 0, SD_BUS_VTABLE_PROPERTY_CONST),
    SD_BUS_PROPERTY("XAyatanaLabel", "s", BusExceptions::get<label>, 0, 0),
    SD_BUS_SIGNAL("NewTitle", "", 0),
    SD_BUS_SIGNAL("NewIcon", "", 0),
    SD_BUS_SIGNAL("NewIconThemePath", "s", 0),
    SD_BUS_SIGNAL("NewAttentionIcon", "", 0),
    SD_BUS_SIGNAL("NewOverlayIcon", "", 0),
    SD_BUS_SIGNAL("NewToolTip", "", 0),
    SD_BUS_SIGNAL("NewStatus", "s", 0),
    SD_BUS_SIGNAL("XAyatanaNewLabel", "ss", 0),
    SD_BUS_VTABLE_END,
};

StatusNotifierItem::StatusNotifierItem(Bus& bus, platform::RunLoop& loop, platform::SystemLog& log,
                                       const IconTheme& theme)
    : bus_(bus),
      loop_(loop),
      log_(log),
      theme_(theme),
      busName_(nextBusName()),
      menu_(bus, loop, kMenuPath),
      object_(bus.addObject(kPath, kInterface, Calls::kTable, this)),
      name_(bus.requestName(busName_)) {
  watcherChanges_ = bus_.match(
      std::string("type='signal',sender='org.freedesktop.DBus',interface='org.freedesktop.DBus',"
                  "member='NameOwnerChanged',arg0='") +
          kWatcher + "'",
      [this](sd_bus_message& message) {
        const char* owner = nullptr;
        if (sd_bus_message_read(&message, "sss", nullptr, nullptr, &owner) < 0) return;
        *registered_ = false;
        if (*owner != '\0') registerWithWatcher();
      });
  registerWithWatcher();
  loop_.after(kPanelPatience, [weak = std::weak_ptr(self_)] {
    if (const auto self = weak.lock()) (*self)->sayIfNoPanel();
  });
}

bool StatusNotifierItem::setSymbol(std::string_view name) {
  const auto symbol = StatusSymbol::named(name);
  if (!symbol) return false;
  setTitle("");
  if (symbol_ && symbol_->icon == symbol->icon) return true;
  symbol_ = symbol;
  announce("NewIcon");
  return true;
}

void StatusNotifierItem::setTitle(std::string_view title) {
  if (title_ == title) return;
  title_ = title;
  auto signal = bus_.signal(kPath, kInterface, "XAyatanaNewLabel");
  if (signal) sd_bus_message_append(signal.get(), "ss", title_.c_str(), "");
  bus_.send(std::move(signal));
}

void StatusNotifierItem::setAppearsDisabled(bool disabled) {
  if (std::exchange(dimmed_, disabled) != disabled) announce("NewIcon");
}

void StatusNotifierItem::setToolTip(std::string_view toolTip) {
  if (toolTip_ == toolTip) return;
  toolTip_ = toolTip;
  announce("NewToolTip");
}

StatusNotifierItem::Image StatusNotifierItem::image() const {
  if (!symbol_) return {};
  auto name = symbol_->iconName(dimmed_);
  if (auto folder = theme_.folderFor(name)) {
    return {.name = std::move(name), .themeFolder = std::move(*folder), .drawing = std::nullopt};
  }
  return {.name = "", .themeFolder = "", .drawing = symbol_->drawing};
}

void StatusNotifierItem::announce(const char* signal) {
  bus_.send(bus_.signal(kPath, kInterface, signal));
}

void StatusNotifierItem::registerWithWatcher() {
  auto message = bus_.methodCall(kWatcher, kWatcherPath, kWatcher, "RegisterStatusNotifierItem");
  if (message) sd_bus_message_append(message.get(), "s", busName_.c_str());
  registration_ = bus_.call(std::move(message), [this](sd_bus_message& reply) {
    *registered_ = sd_bus_message_is_method_error(&reply, nullptr) == 0;
  });
}

void StatusNotifierItem::sayIfNoPanel() {
  // Of a bus that is lost the bar speaks.
  if (*registered_ || !bus_.isOpen()) return;
  log_.write("Tessarok: " +
             posix::translated("no panel shows status icons here; the program runs on "
                               "without its icon"));
}

}  // namespace tessarok::freedesktop
