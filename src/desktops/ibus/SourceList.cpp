#include "desktops/ibus/SourceList.h"

namespace tessarok::ibus {

namespace {

constexpr const char* kSchema = "org.gnome.desktop.input-sources";
constexpr const char* kKey = "sources";

}  // namespace

SourceList::SourceList() {
  auto* all = g_settings_schema_source_get_default();
  auto* schema = all == nullptr ? nullptr : g_settings_schema_source_lookup(all, kSchema, TRUE);
  if (schema == nullptr) return;
  g_settings_schema_unref(schema);
  settings_ = g_settings_new(kSchema);
  g_signal_connect(settings_, "changed::sources",
                   G_CALLBACK(+[](GSettings*, const gchar*, gpointer self) {
                     const auto& list = *static_cast<SourceList*>(self);
                     if (list.onChange) list.onChange();
                   }),
                   this);
}

SourceList::~SourceList() {
  if (settings_ == nullptr) return;
  g_signal_handlers_disconnect_by_data(settings_, this);
  g_object_unref(settings_);
}

std::vector<SourceList::Source> SourceList::sources() const {
  std::vector<Source> all;
  if (settings_ == nullptr) return all;
  auto* value = g_settings_get_value(settings_, kKey);
  GVariantIter iterator;
  g_variant_iter_init(&iterator, value);
  const gchar* kind = nullptr;
  const gchar* name = nullptr;
  while (g_variant_iter_next(&iterator, "(&s&s)", &kind, &name) != FALSE)
    all.emplace_back(kind, name);
  g_variant_unref(value);
  return all;
}

}  // namespace tessarok::ibus
