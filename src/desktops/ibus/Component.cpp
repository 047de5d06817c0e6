#include "desktops/ibus/Component.h"

#include "desktops/ibus/Engine.h"

namespace tessarok::ibus::component {

namespace {

IBusEngineDesc* describe(const char* name, const char* title, const char* language,
                         const char* layout) {
  return ibus_engine_desc_new_varargs(
      "name", name, "longname", title, "description",
      "Corrects words typed in the wrong layout, Russian and English", "language", language,
      "license", "MIT", "author", "Tessarok", "icon", "tessarok", "layout", layout, "symbol",
      language, nullptr);
}

}  // namespace

IBusComponent* make() {
  auto* component = ibus_component_new(kBusName, "Tessarok", TESSAROK_VERSION, "MIT", "Tessarok",
                                       "", "", "tessarok");
  ibus_component_add_engine(component,
                            describe(engine::kEnglish, "English (Tessarok)", "en", "us"));
  ibus_component_add_engine(component,
                            describe(engine::kRussian, "Russian (Tessarok)", "ru", "ru"));
  return component;
}

}  // namespace tessarok::ibus::component
