#include "tests/desktops/macos/StoryPrinter.h"

#include <functional>
#include <map>
#include <stdexcept>

#include "desktops/virtual/ProgramValues.h"

namespace tessarok::macostest {

namespace programValues = virtualdesktop::programValues;
using nlohmann::json;

json StoryPrinter::value(const std::string& field) {
  auto& services = mac_.services();
  using Maker = std::function<json()>;
  const std::map<std::string, Maker, std::less<>> makers = {
      {"text", [&] { return json(mac_.textField().text()); }},
      {"caret", [&] { return json(mac_.textField().caret()); }},
      {"source", [&] { return json(mac_.source()); }},
      {"state", [] { return programValues::state(); }},
      {"tap", [&] { return programValues::tap(mac_.delegate()); }},
      {"icon", [&] { return programValues::icon(*services.statusBar); }},
      {"menu", [&] { return programValues::menu(services.statusBar->menu()); }},
      {"log", [&] { return programValues::diagnosticLog(mac_.files()); }},
      {"syslog", [&] { return programValues::systemLog(*services.systemLog); }},
      {"posted", [&] { return json(mac_.takePosted()); }},
      {"delivered", [&] { return json(mac_.takeDelivered()); }},
      {"lists", [] { return programValues::lists(); }},
      {"files", [&] { return programValues::files(mac_.files()); }},
  };
  const auto maker = makers.find(field);
  if (maker == makers.end()) throw std::runtime_error("unknown field " + field);
  return maker->second();
}

}  // namespace tessarok::macostest
