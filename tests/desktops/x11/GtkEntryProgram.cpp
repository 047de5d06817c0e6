// A window with one text entry. Whatever is in it, behind the lines that were ended with Return, is
// written into the file that the first argument names. With "password" behind it, the entry is one
// for passwords.

#include <cstdio>
#include <gtk/gtk.h>
#include <string>

namespace {

struct Page {
  std::string file;
  std::string lines;
  GtkEntry* entry = nullptr;
  bool isSaveDue = false;
  /// Microseconds of monotonic time.
  gint64 saved = 0;
};

/// The longest time without a save while keys are waiting, microseconds.
constexpr gint64 kLongest = 1'000'000;

void save(Page& page) {
  page.saved = g_get_monotonic_time();
  const auto text = page.lines + gtk_entry_get_text(page.entry);
  const auto temporary = page.file + ".new";
  auto* out = std::fopen(temporary.c_str(), "wb");
  if (out == nullptr) return;
  std::fwrite(text.data(), 1, text.size(), out);
  std::fclose(out);
  std::rename(temporary.c_str(), page.file.c_str());
}

gboolean saveNow(gpointer data) {
  auto& page = *static_cast<Page*>(data);
  page.isSaveDue = false;
  save(page);
  return G_SOURCE_REMOVE;
}

/// Not for every key while more are waiting; but on a busy machine that may be for very long, and
/// whoever reads the file wants to see that the keys arrive.
void changed(GtkEntry*, gpointer data) {
  auto& page = *static_cast<Page*>(data);
  if (g_get_monotonic_time() - page.saved > kLongest) save(page);
  if (page.isSaveDue) return;
  page.isSaveDue = true;
  g_idle_add(&saveNow, &page);
}

void ended(GtkEntry* entry, gpointer data) {
  auto& page = *static_cast<Page*>(data);
  page.lines += gtk_entry_get_text(entry);
  page.lines += "\n";
  gtk_entry_set_text(entry, "");
  changed(entry, data);
}

}  // namespace

int main(int argc, char** argv) {
  const bool isPassword = argc == 3 && std::string(argv[2]) == "password";
  if ((argc != 2 && !isPassword) || gtk_init_check(nullptr, nullptr) == FALSE) return 2;
  Page page;
  page.file = argv[1];
  auto* window = gtk_window_new(GTK_WINDOW_TOPLEVEL);
  gtk_window_set_default_size(GTK_WINDOW(window), 400, 40);
  auto* entry = gtk_entry_new();
  page.entry = GTK_ENTRY(entry);
  if (isPassword) {
    gtk_entry_set_visibility(page.entry, FALSE);
    gtk_entry_set_input_purpose(page.entry, GTK_INPUT_PURPOSE_PASSWORD);
  }
  gtk_container_add(GTK_CONTAINER(window), entry);
  g_signal_connect(entry, "changed", G_CALLBACK(changed), &page);
  g_signal_connect(entry, "activate", G_CALLBACK(ended), &page);
  g_signal_connect(window, "destroy", G_CALLBACK(gtk_main_quit), nullptr);
  // Without a window manager nobody tells the window that it is in front.
  gtk_widget_show_all(window);
  gtk_widget_grab_focus(entry);
  gtk_entry_set_width_chars(GTK_ENTRY(entry), 40);
  save(page);
  gtk_main();
}
