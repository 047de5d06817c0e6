#include "desktops/ibus/SourceList.h"

#include <algorithm>

namespace tessarok::ibus {

namespace {

constexpr const char* kSchema = "org.gnome.desktop.input-sources";
constexpr const char* kKey = "sources";
/// Seconds in which the shell has read a list and switched.
constexpr double kReading = 0.15;

}  // namespace

SourceList::SourceList(platform::RunLoop& loop) : loop_(loop) {
  auto* all = g_settings_schema_source_get_default();
  auto* schema = all == nullptr ? nullptr : g_settings_schema_source_lookup(all, kSchema, TRUE);
  if (schema == nullptr) return;
  g_settings_schema_unref(schema);
  settings_ = g_settings_new(kSchema);
  g_signal_connect(settings_, "changed::sources",
                   G_CALLBACK(+[](GSettings*, const gchar*, gpointer self) {
                     static_cast<SourceList*>(self)->changed();
                   }),
                   this);
}

SourceList::~SourceList() {
  if (settings_ == nullptr) return;
  g_signal_handlers_disconnect_by_data(settings_, this);
  putBack();
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

void SourceList::write(const std::vector<Source>& sources) {
  GVariantBuilder builder;
  g_variant_builder_init(&builder, G_VARIANT_TYPE("a(ss)"));
  for (const auto& [kind, name] : sources)
    g_variant_builder_add(&builder, "(ss)", kind.c_str(), name.c_str());
  g_settings_set_value(settings_, kKey, g_variant_builder_end(&builder));
  g_settings_sync();
}

bool SourceList::bringForward(const std::string& engine) {
  if (settings_ == nullptr) return false;
  putBack();
  const auto whole = sources();
  const Source wanted{"ibus", engine};
  if (std::find(whole.begin(), whole.end(), wanted) == whole.end()) return false;
  // The shell goes on with the sources of a new list that it used last, and forgets their order
  // when only one is left. So one more is in it, which is none of the person's.
  const Source another{"xkb", "us"};
  whole_ = whole;
  shortened_ = {wanted, another};
  write(shortened_);
  loop_.after(kReading, [this] { putBack(); });
  return true;
}

void SourceList::putBack() {
  if (whole_.empty()) return;
  const auto whole = std::exchange(whole_, {});
  // A list that somebody else has written meanwhile is the person's.
  if (sources() == shortened_) write(whole);
}

void SourceList::changed() {
  if (whole_.empty() && onChange) onChange();
}

}  // namespace tessarok::ibus
