#include "desktops/virtual/ReplayPrinter.h"

#include <functional>
#include <map>

#include "desktops/virtual/ProgramValues.h"
#include "desktops/virtual/ReplayError.h"

namespace tessarok::virtualdesktop {

using nlohmann::json;

json ReplayPrinter::value(const std::string& field) {
  auto& desktop = session_.desktop();
  using Maker = std::function<json()>;
  const std::map<std::string, Maker, std::less<>> makers = {
      {"text", [&] { return json(desktop.textField().text()); }},
      {"caret", [&] { return json(desktop.textField().caret()); }},
      {"source", [&] { return json(*desktop.inputSources().current()); }},
      {"state", [] { return programValues::state(); }},
      {"tap", [this] { return programValues::tap(session_.delegate()); }},
      {"icon", [&] { return programValues::icon(desktop.statusBar()); }},
      {"menu", [&] { return programValues::menu(desktop.statusBar().menu()); }},
      {"log", [&] { return programValues::diagnosticLog(desktop.files()); }},
      {"syslog", [&] { return programValues::systemLog(desktop.systemLog()); }},
      {"posted", [&] { return json(desktop.takePosted()); }},
      {"delivered", [&] { return json(desktop.takeDelivered()); }},
      {"lists", [] { return programValues::lists(); }},
      {"files", [&] { return programValues::files(desktop.files()); }},
  };
  const auto maker = makers.find(field);
  if (maker == makers.end()) throw ReplayError("nothing to print is called \"" + field + "\"");
  return maker->second();
}

}  // namespace tessarok::virtualdesktop
