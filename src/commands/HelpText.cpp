#include "commands/HelpText.h"

#include "desktops/posix/Translation.h"

namespace tessarok::commands {

namespace {

using posix::translated;

std::string keys() {
  return translated(
      "Keys:\n"
      "  Space, Return, Tab, signs   end a word, which is put right if need be\n"
      "  Alt+Space                   converts the last word, or takes its correction back;\n"
      "                              so does Pause, but not in a terminal\n"
      "  ` in the English layout     pauses the correction for five seconds\n"
      "  Control+Space               in a corrected terminal: switches its own layout\n");
}

std::string files() {
  return translated(
      "Files:\n"
      "  ~/.config/Tessarok/settings.json\n"
      "                              settings, see tessarok-settings(5)\n"
      "  ~/.local/share/Tessarok/dictionary.txt\n"
      "                              your words, one a line, which are never corrected\n"
      "  ~/.local/share/Tessarok/ignored.txt, rejects.txt\n"
      "                              what was learned; see tessarok learned\n");
}

std::string variables() {
  return translated(
      "Environment:\n"
      "  XDG_CONFIG_HOME, XDG_DATA_HOME\n"
      "                              folders to use instead of ~/.config and ~/.local/share\n"
      "  DISPLAY                     the X11 display to correct on\n"
      "  SHELL                       what tessarok terminal runs without a command\n"
      "  LC_ALL, LC_CTYPE, LANG      the locale; a terminal is corrected only with UTF-8\n"
      "  LANGUAGE                    the language of messages, else that of the locale\n"
      "  TERM, NO_COLOR              whether the cursor's colour may show the layout\n"
      "  TESSAROK_RES                the word data of a program that is not installed\n"
      "  TESSAROK_DEBUG, TESSAROK_DEBUG_PATH\n"
      "                              switch a log of counts on, ~/tessarok.log, and name "
      "another\n");
}

}  // namespace

std::string helpText() {
  return keys() + "\n" + files() + "\n" + variables() + "\n" + translated("More: man tessarok") +
         "\n";
}

}  // namespace tessarok::commands
