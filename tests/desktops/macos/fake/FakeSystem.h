#pragma once

#include <Carbon/Carbon.h>
#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "tests/desktops/macos/fake/FakeObject.h"

/// The state of the Mac that the tests run on: what the system does to the program is a call or a
/// field here, and what the program asked of the system can be read back.
namespace tessarok::fakemac {

struct Event final : Object {
  Event() : Object(Kind::event) {}
  /// A second object of the same values.
  explicit Event(const Event& other);

  CGEventType type = kCGEventKeyDown;
  std::int64_t keyCode = 0;
  std::int64_t autorepeat = 0;
  std::int64_t userData = 0;
  CGEventFlags flags = 0;
  std::u16string text;
  /// The state that the event's source was made with; absent for hardware events.
  std::optional<CGEventSourceStateID> sourceState;
  /// The program posted it, rather than the person.
  bool posted = false;
};

/// What a tap was created with.
struct TapRequest {
  CGEventTapLocation location;
  CGEventTapPlacement placement;
  CGEventTapOptions options;
  CGEventMask mask;
  void* userInfo;
};

struct Tap final : Object {
  Tap(CGEventTapCallBack tapCallback, void* info, CGEventMask grantedMask)
      : Object(Kind::machPort), callback(tapCallback), userInfo(info), mask(grantedMask) {}
  ~Tap() override;

  CGEventTapCallBack callback;
  void* userInfo;
  /// The events that it may see, of those that were asked for.
  CGEventMask mask;
  // The real system creates taps enabled.
  bool isEnabled = true;
  bool isValid = true;
  bool isDeaf = false;
};

struct RunLoopSource final : Object {
  RunLoopSource(CFMachPortRef tapPort, CFIndex sourceOrder);
  ~RunLoopSource() override;
  CFMachPortRef port;
  CFIndex order;
};

struct RunLoopTimer final : Object {
  RunLoopTimer() : Object(Kind::runLoopTimer) {}
  double due = 0;
  double interval = 0;
  double tolerance = 0;
  CFRunLoopTimerCallBack callback = nullptr;
  void* info = nullptr;
  bool isValid = true;
};

/// One keyboard layout, input method or other source. Properties may be missing or of any type.
struct InputSource final : Object {
  InputSource() : Object(Kind::inputSource) {}
  ~InputSource() override;
  /// Takes over the reference to the value.
  void set(CFStringRef key, CFTypeRef value);
  void remove(CFStringRef key);
  [[nodiscard]] CFTypeRef get(CFStringRef key) const;

  std::vector<std::pair<CFStringRef, CFTypeRef>> properties;
};

class FakeSystem final {
 public:
  // Time and the main thread.
  double uptime = 1000;
  /// The labels of the serial queues that were made.
  std::vector<std::string> queueLabels;
  /// Runs what is queued on the main queue until nothing is left.
  void runMainQueue();
  /// Moves the clock on; what falls due runs in order, timers before delayed calls.
  void advance(double seconds);

  // Events.
  bool trusted = true;
  /// Without permission: no tap, or one that sees no keys. The system does both.
  enum class UntrustedTap { refused, withoutKeys };
  UntrustedTap untrustedTap = UntrustedTap::refused;
  /// Takes the permission away from the running program. An active tap that stands without it
  /// answers no more, and the keys of the session wait for it: they are in `waitingKeys`.
  void takePermission();
  bool mayPost = true;
  bool failsNextTap = false;
  bool failsNextSource = false;
  bool failsNextEvent = false;
  bool failsNextCopy = false;
  bool failsNextRunLoopSource = false;
  /// Uptime of the hardware's last key-down; absent before the first.
  std::optional<double> lastKeyDownAt;
  std::vector<TapRequest> tapRequests;
  /// What was asked for taps, in order: "create", "enable", "disable", "invalidate", and "create
  /// source", "add source", "remove source".
  std::vector<std::string> tapCalls;
  /// Called for every event that reaches the application.
  std::function<void(const Event&)> onDelivered;
  /// Called for every event that the program posts, before it is on its way.
  std::function<void(const Event&)> onPosted;
  /// Sends a hardware event through the tap to the application. What the callback posts enters
  /// the stream behind the tap and before the event that the callback returns.
  void send(Event& event);
  /// Keys that the person has pressed and no application has got.
  std::vector<std::unique_ptr<Event>> waitingKeys;
  /// Delivers them, once nothing holds them up.
  void releaseWaitingKeys();
  /// The system disables the tap and tells it so, with or without an event.
  void disableTap(CGEventType pseudoEvent, bool withEvent = false);
  /// The tap that exists, or null.
  Tap* tap = nullptr;

  // Run loop.
  std::vector<RunLoopSource*> sources;
  std::vector<RunLoopTimer*> timers;

  // Permission.
  /// The prompt option of each question about the Accessibility permission.
  std::vector<bool> trustQuestions;
  /// Some program, this one or another, has a password typed. No tap sees a key meanwhile.
  bool secureInput = false;
  /// For what the program does with a key that it sees all the same.
  bool tapsSeePasswords = false;

  // Input sources; `installed` are the enabled ones, in order, and `current` may be null or
  // another one. Both own what they hold.
  std::vector<InputSource*> installed;
  InputSource* current = nullptr;
  void makeCurrent(InputSource* source);
  bool listIsAbsent = false;
  bool failsNextSelection = false;
  /// Elements of no input source, put in front of the next lists.
  std::vector<CFTypeRef> strayElements;
  std::uint8_t keyboardType = 40;
  PhysicalKeyboardLayoutType physicalLayout = kKeyboardANSI;
  /// Called after each selection by the program.
  std::function<void()> onSelected;
  /// In place of what a layout gives for a key (its code, and whether Shift is held).
  std::map<std::pair<std::uint16_t, bool>, std::u16string> keyTexts;
  /// The status that translating a key fails with.
  std::map<std::uint16_t, OSStatus> keyErrors;
  /// The keyboard types that keys were translated for.
  std::vector<std::uint32_t> translatedFor;
  /// Adds a layout with all properties of a real one; null `table` data for one without.
  InputSource& install(const std::string& identifier, bool hasLayoutData = true);
  void uninstallAll();

  // Distributed notifications.
  bool hasDistributedCentre = true;
  struct Observer {
    const void* observer;
    CFNotificationCallback callback;
    CFStringRef name;
  };
  std::vector<Observer> observers;
  void announce(CFStringRef name);
  void announce(const std::string& name);

  // Preferences; the values are owned.
  std::map<std::string, CFTypeRef> preferences;
  int synchronisations = 0;
  void setPreference(const std::string& key, CFTypeRef value);

  // The bundle.
  bool hasBundle = true;
  std::optional<std::string> bundleIdentifier = "app.tessarok";
  /// Where the bundle is; its extension tells an application.
  std::string bundlePath = "/Applications/Tessarok.app";
  /// Where its resources are.
  std::string resourceDirectory;
  bool pathsHaveNoRepresentation = false;

  /// The proxy of the callback that runs; null outside of one.
  CGEventTapProxy proxy = nullptr;
  std::deque<Event*> postedEvents;
  struct Delayed {
    double due;
    void* context;
    void (*work)(void*);
  };
  std::deque<Delayed> mainQueue;
  std::vector<Delayed> delayed;

  // Signals.
  struct SignalSource {
    int signal;
    void* context;
    void (*handler)(void*);
    bool isResumed;
  };
  std::map<const void*, SignalSource> signalSources;
  bool failsSignalSources = false;
  /// A signal comes; who watches for it is called on the main queue.
  void raiseSignal(int signal);

 private:
  [[nodiscard]] bool reachesTap(const Event& event) const;
  [[nodiscard]] bool isHeldUp(const Event& event) const;
  void deliver(const Event& event) const;
  CGEventRef call(CGEventType type, CGEventRef event);
  bool runFirstDue(double end);
};

/// The one system of the process, for the main thread alone as the real one is.
[[nodiscard]] FakeSystem& fakeSystem();

/// Queues work for the main thread, from any thread: it runs when the main queue is next turned.
void postToMainQueue(const FakeSystem::Delayed& work);

/// The bytes of a layout that `UCKeyTranslate` understands.
[[nodiscard]] std::vector<UInt8> layoutBytes(bool russian);

}  // namespace tessarok::fakemac
