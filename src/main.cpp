// The command line.

#include <CLI/CLI.hpp>
#include <algorithm>
#include <exception>
#include <iostream>
#include <string>
#include <string_view>
#include <vector>

#include "commands/CheckDataCommand.h"
#include "commands/CommandError.h"
#include "commands/ControlCommand.h"
#ifdef TESSAROK_HAS_X11
#include "commands/DesktopCommand.h"
#include "commands/DesktopControl.h"
#endif
#include "commands/DidYouMean.h"
#include "commands/ExplainCommand.h"
#include "commands/HelpText.h"
#include "commands/JoinedText.h"
#include "commands/LearnedCommand.h"
#include "commands/ReplayCommand.h"
#include "commands/ReportCommand.h"
#include "commands/StatusCommand.h"
#include "commands/TerminalCommand.h"
#include "commands/TypeCommand.h"
#include "desktops/posix/StandardStreams.h"
#include "desktops/posix/Translation.h"

namespace {

using namespace tessarok::commands;
using tessarok::Language;
using tessarok::posix::translated;

/// Whatever is wrong with how the program was called.
constexpr int kUsageError = 2;

/// The name with which the library begins what it says.
std::string firstWord(const std::string& text) {
  return text.substr(0, text.find_first_of(": "));
}

/// The option that the library could not set: "Could not convert: --json = x".
std::string optionIn(const std::string& text) {
  const auto start = text.find("--");
  return start == std::string::npos ? text : text.substr(start, text.find(' ', start) - start);
}

/// What is said of an option without its value, or of a flag with one, whose name alone the library
/// tells without the hyphens.
std::string problemWithValue(const std::string& name) {
  return name.starts_with('-') ? translated("{1} needs a value", {name})
                               : translated("{1} takes no value", {"--" + name});
}

/// Refuses every other value than a layout's short name.
std::string problemWithLayout(const std::string& value) {
  if (value == "en" || value == "ru") return {};
  return translated("\"{1}\" is neither en nor ru", {value});
}

/// Refuses whatever is no number of words.
std::string problemWithCount(const std::string& value) {
  constexpr std::size_t kMostDigits = 9;
  const bool isCount = !value.empty() && value.size() <= kMostDigits &&
                       value.find_first_not_of("0123456789") == std::string::npos;
  return isCount ? std::string() : translated("\"{1}\" is not a whole number", {value});
}

/// The commands and what their options were set to.
class CommandLine {
 public:
  CommandLine() {
    nameParts();
    app_.set_version_flag("--version", "tessarok " TESSAROK_VERSION,
                          translated("print the version and exit"));
    app_.require_subcommand(0, 1);
    app_.fallthrough();
    app_.add_option("--resources", options_.resources,
                    translated("the directory of the data files"))
        ->type_name("DIR");
    addType();
    addExplain();
    addLearned();
    addReplay();
    addTerminal();
    addStatus();
    addControl("on",
               translated("switch the correction on, of this terminal or else of the desktop"));
    addControl("off", translated("switch it off"));
    addControl("pause", translated("leave five seconds of typing as it is"));
    addControl("layout", translated("switch the own layout of this terminal"));
    addQuit();
    addX11();
    addReport();
    addCheckData();
    // Commands take it over from what they are added to.
    app_.footer(helpText());
    nameHelpOptions(app_);
  }

  int run(int argc, char** argv) {
    try {
      app_.parse(argumentsOf(argc, argv));
    } catch (const CLI::Success& success) {
      return app_.exit(success);
    } catch (const CLI::ExtrasError&) {
      throw CommandError(problemWith(app_.remaining(true).front()));
    } catch (const CLI::RequiredError& error) {
      throw CommandError(translated("an argument is missing: {1}", {firstWord(error.what())}));
    } catch (const CLI::ArgumentMismatch& error) {
      throw CommandError(problemWithValue(firstWord(error.what())));
    } catch (const CLI::ConversionError& error) {
      throw CommandError(translated("{1} takes no value", {optionIn(error.what())}));
    } catch (const CLI::ValidationError& error) {
      throw CommandError(error.what());
    } catch (const CLI::ParseError& error) {
      throw CommandError(translated("wrong argument: {1}", {error.what()}));
    }
    return command_ ? command_() : runWithoutCommand();
  }

 private:
  /// What the library puts into a help text by itself; before anything is added, which takes it
  /// over.
  void nameParts() {
    auto& format = *app_.get_formatter();
    format.label("Usage", translated("Usage"));
    format.label("OPTIONS", translated("OPTIONS"));
    format.label("SUBCOMMAND", translated("COMMAND"));
    format.label("Positionals", translated("Arguments"));
    format.label("REQUIRED", translated("REQUIRED"));
    app_.group(translated("Commands"));
    app_.option_defaults()->group(translated("Options"));
    // A flag is there or not; the library would take every number for a yes or a no.
    app_.option_defaults()->disable_flag_override();
    app_.set_help_flag("-h,--help", translated("print this help and exit"));
  }

  /// A command's help option is made before it takes over what the others are called.
  static void nameHelpOptions(CLI::App& app) {
    app.get_help_ptr()->group(translated("Options"));
    for (auto* command : app.get_subcommands(nullptr))
      nameHelpOptions(*command);
  }

  /// Whether an argument of a command that takes text is a part of that: there are no options of
  /// one letter but -h, and a word may begin with a hyphen.
  [[nodiscard]] static bool isHyphenatedWord(std::string_view argument) {
    return argument.size() > 1 && argument[0] == '-' && argument[1] != '-' && argument != "-h";
  }

  /// The first argument that is neither an option of a command nor the value of one.
  template <typename Iterator>
  [[nodiscard]] static Iterator behindOptions(const CLI::App& command, Iterator from,
                                              Iterator end) {
    while (from != end && from->starts_with("--") && *from != "--") {
      const auto* option = command.get_option_no_throw(*from++);
      const bool hasValue = option != nullptr && option->get_items_expected_max() > 0;
      if (hasValue && from != end) ++from;
    }
    return from;
  }

  /// The arguments, with the text of a command marked as such when a word of it begins with a
  /// hyphen. In the order in which CLI11 wants them, the last first.
  [[nodiscard]] std::vector<std::string> argumentsOf(int argc, char** argv) const {
    std::vector<std::string> arguments(argv + std::min(argc, 1), argv + argc);
    const auto end = std::find(arguments.begin(), arguments.end(), "--");
    const auto command = behindOptions(app_, arguments.begin(), end);
    const bool takesText = command != end && (*command == "type" || *command == "explain");
    if (takesText && std::any_of(command, end, isHyphenatedWord)) {
      arguments.insert(behindOptions(*app_.get_subcommand(*command), command + 1, end), "--");
    }
    std::reverse(arguments.begin(), arguments.end());
    return arguments;
  }

  /// The command in force: the program itself where none was named.
  [[nodiscard]] const CLI::App& parsedCommand() const {
    const auto* command = &app_;
    while (!command->get_subcommands().empty())
      command = command->get_subcommands().front();
    return *command;
  }

  /// What is said of an argument that no command understands.
  [[nodiscard]] std::string problemWith(const std::string& argument) const {
    const auto& command = parsedCommand();
    const bool isOption = argument.starts_with('-');
    std::vector<std::string> names;
    for (const auto* subcommand : command.get_subcommands(nullptr))
      names.push_back(subcommand->get_name());
    if (!isOption && names.empty()) {
      return translated("\"{1}\" is one argument too many", {argument});
    }
    if (isOption) names = longOptionsOf(command);
    const auto nearest = nearestName(argument, names);
    if (isOption) {
      return nearest ? translated("there is no option \"{1}\"; did you mean \"{2}\"?",
                                  {argument, *nearest})
                     : translated("there is no option \"{1}\"; tessarok --help lists what there is",
                                  {argument});
    }
    return nearest ? translated("there is no command \"{1}\"; did you mean \"{2}\"?",
                                {argument, *nearest})
                   : translated("there is no command \"{1}\"; tessarok --help lists what there is",
                                {argument});
  }

  /// Those of a command and of the program itself, which work everywhere.
  [[nodiscard]] std::vector<std::string> longOptionsOf(const CLI::App& command) const {
    std::vector<std::string> names;
    for (const auto* app : {&command, &app_}) {
      for (const auto* option : app->get_options()) {
        for (const auto& name : option->get_lnames())
          names.push_back("--" + name);
      }
    }
    return names;
  }

  void addType() {
    auto* type = app_.add_subcommand("type", translated("type a text and print the screen"));
    addNoLists(*type);
    type->add_option("--from", from_, translated("the layout selected at the start"))
        ->check(problemWithLayout)
        ->type_name("en|ru");
    type->add_option("TEXT", words_, translated("what to type; standard input without it"))
        ->type_name("");
    type->callback([this] {
      command_ = [this] {
        TypeOptions options;
        options.lists = lists();
        if (!from_.empty()) options.from = from_ == "ru" ? Language::russian : Language::english;
        if (!words_.empty()) options.text = joined(words_, " ");
        return runType(options_, options);
      };
    });
  }

  void addExplain() {
    auto* explain =
        app_.add_subcommand("explain", translated("say what is decided for a word, and why"));
    explain->add_flag("--json", explain_.json, translated("one JSON object a word"));
    addNoLists(*explain);
    explain->add_option("--ru-streak", explain_.ruStreak, translated("Russian words before it"))
        ->check(problemWithCount)
        ->type_name("N");
    explain->add_option("--en-streak", explain_.enStreak, translated("English words before it"))
        ->check(problemWithCount)
        ->type_name("N");
    explain
        ->add_option("WORD", explain_.words,
                     translated("words, or - for standard input, one a line"))
        ->type_name("")
        ->required();
    explain->callback([this] {
      command_ = [this] {
        explain_.lists = lists();
        return runExplain(options_, explain_);
      };
    });
  }

  void addLearned() {
    auto* learned = app_.add_subcommand(
        "learned",
        translated("list the words that are left alone because you took their correction back"));
    learned->add_flag("--json", learned_.json, translated("one JSON object a word"));
    learned->callback([this] {
      if (!command_) command_ = [this] { return runLearned(options_, learned_); };
    });
    auto* forget =
        learned->add_subcommand("forget", translated("take words back, also in running programs"));
    forget->add_option("WORD", words_, translated("the words as typed"))->type_name("")->required();
    forget->callback([this] { command_ = [this] { return runForget(options_, words_); }; });
  }

  void addNoLists(CLI::App& command) {
    command.add_flag(
        "--no-lists", noLists_,
        translated("without your dictionary, the learned lists and the packs, which count else"));
  }

  [[nodiscard]] Lists lists() const { return noLists_ ? Lists::none : Lists::persons; }

  void addReplay() {
    auto* replay = app_.add_subcommand("replay", translated("run a script on the virtual desktop"));
    replay->add_option("--home", replay_.home, translated("an existing directory used as home"))
        ->type_name("DIR");
    replay->add_option("FILE", replay_.file, translated("the script; standard input without it"))
        ->type_name("");
    replay->callback([this] { command_ = [this] { return runReplay(options_, replay_); }; });
  }

  void addTerminal() {
    auto* terminal =
        app_.add_subcommand("terminal", translated("correct what is typed into a program in this "
                                                   "terminal; the default without a display"));
    terminal
        ->add_option(
            "COMMAND", terminal_.command,
            translated("the program and its arguments, after --; the login shell without it"))
        ->type_name("");
    terminal->callback([this] { command_ = [this] { return runTerminal(options_, terminal_); }; });
  }

  void addStatus() {
    auto* status = app_.add_subcommand(
        "status",
        translated("say what is corrected here, what does not work and why, and where files are"));
    status->add_flag("--json", status_.json, translated("one JSON object"));
    status->callback([this] { command_ = [this] { return runStatus(options_, status_); }; });
  }

  void addControl(const std::string& request, const std::string& description) {
    app_.add_subcommand(request, description)->callback([this, request] {
      command_ = [request] { return runControl(request); };
    });
  }

  void addQuit() {
    app_.add_subcommand("quit", translated("end the corrector of the desktop"))->callback([this] {
      command_ = &runQuit;
    });
  }

  void addReport() {
    auto* report = app_.add_subcommand(
        "report", translated("write what a problem report needs, and no text, into a file"));
    report
        ->add_option("FILE", reportFile_,
                     translated("a new file, tessarok-report.txt without it; - prints it"))
        ->type_name("");
    report->callback([this] { command_ = [this] { return runReport(options_, reportFile_); }; });
  }

  void addCheckData() {
    auto* check = app_.add_subcommand("check-data", translated("validate the data files"));
    check->add_option("DIR", checkDirectory_, translated("the directory of the data files"))
        ->type_name("");
    check->callback(
        [this] { command_ = [this] { return runCheckData(options_, checkDirectory_); }; });
  }

  void addX11() {
#ifdef TESSAROK_HAS_X11
    auto* x11 = app_.add_subcommand(
        "x11",
        translated("correct in every application of the display; the default where there is one"));
    x11->add_flag(
        "--autostart", isAutostart_,
        translated("as a session starts it: end without a word where there is nothing to correct"));
    x11->callback([this] { command_ = [this] { return runX11(); }; });
#endif
  }

#ifdef TESSAROK_HAS_X11
  int runX11() {
    if (isAutostart_) return runDesktopOfSession(options_);
    if (!hasDisplay()) throw CommandError(translated("there is no X11 display"));
    return tessarok::commands::runDesktop(options_).value_or(kUsageError);
  }
#endif

  /// The desktop that there is; in a terminal the terminal, if there is no other.
  int runWithoutCommand() {
#ifdef TESSAROK_HAS_X11
    if (hasDisplay()) {
      if (const auto status = tessarok::commands::runDesktop(options_)) return *status;
      if (!isTerminal()) {
        showWhyNotStarted();
        return kUsageError;
      }
    } else if (!isTerminal()) {
      showWhyNotStarted();
      throw CommandError(
          translated("there is no X11 display, and standard input is not a terminal"));
    }
#endif
    return runTerminal(options_, terminal_);
  }

  CLI::App app_{translated("Puts words right that were typed in the wrong keyboard layout."),
                "tessarok"};
  Options options_;
  std::function<int()> command_;
  bool noLists_ = false;
#ifdef TESSAROK_HAS_X11
  bool isAutostart_ = false;
#endif
  std::string from_;
  std::vector<std::string> words_;
  ExplainOptions explain_;
  LearnedOptions learned_;
  ReplayOptions replay_;
  StatusOptions status_;
  TerminalOptions terminal_;
  std::optional<std::filesystem::path> checkDirectory_;
  std::optional<std::filesystem::path> reportFile_;
};

}  // namespace

int main(int argc, char** argv) {
  tessarok::posix::occupyStandardStreams();
  try {
    tessarok::posix::useLanguageOfLocale();
    const int status = CommandLine().run(argc, argv);
    if (!std::cout.flush()) throw CommandError(translated("standard output cannot be written"));
    return status;
  } catch (const std::exception& error) {
    std::cerr << "tessarok: " << error.what() << '\n';
    return kUsageError;
  }
}
