#pragma once

#include <CoreFoundation/CoreFoundation.h>
#include <cstddef>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

/// A Core Foundation that forgives nothing: using or releasing a released object, releasing null,
/// or taking one kind of object for another ends the process.
namespace tessarok::fakemac {

/// Says why on standard error and aborts.
[[noreturn]] void misuse(const std::string& reason);

enum class Kind : CFTypeID {
  array = 1,
  boolean,
  bundle,
  data,
  dictionary,
  event,
  eventSource,
  inputSource,
  machPort,
  notificationCentre,
  number,
  runLoop,
  runLoopSource,
  runLoopTimer,
  string,
  url,
};

/// What every reference points to. Born with one reference.
struct Object {
  /// Immortal objects belong to the system and are not counted.
  explicit Object(Kind kind, bool isImmortal = false);
  Object(const Object&) = delete;
  Object& operator=(const Object&) = delete;
  virtual ~Object();

  const Kind kind;
  const bool isImmortal;
  long references = 1;
};

/// Objects that the program, or a container, still holds.
[[nodiscard]] std::size_t liveObjects();
[[nodiscard]] std::size_t liveObjects(Kind kind);

/// The object behind a reference, which must be alive.
[[nodiscard]] Object& objectOf(const void* reference);

/// The same, which must be of this class.
template <typename Type>
Type& as(const void* reference) {
  auto* object = dynamic_cast<Type*>(&objectOf(reference));
  if (object == nullptr) misuse("an object of another type was expected");
  return *object;
}

/// The reference to hand out for an object.
template <typename Ref>
Ref refTo(Object* object) {
  return reinterpret_cast<Ref>(object);
}

struct String final : Object {
  explicit String(std::string_view content, bool immortal = false)
      : Object(Kind::string, immortal), text(content) {}
  std::string text;
};

struct Array final : Object {
  /// Retains its elements, which may be null.
  explicit Array(std::vector<CFTypeRef> content);
  ~Array() override;
  std::vector<CFTypeRef> elements;
};

struct Dictionary final : Object {
  Dictionary() : Object(Kind::dictionary) {}
  ~Dictionary() override;
  std::vector<std::pair<CFTypeRef, CFTypeRef>> entries;
};

struct Data final : Object {
  explicit Data(std::vector<UInt8> content) : Object(Kind::data), bytes(std::move(content)) {}
  std::vector<UInt8> bytes;
};

struct Boolean final : Object {
  explicit Boolean(bool content) : Object(Kind::boolean, true), value(content) {}
  bool value;
};

struct Number final : Object {
  explicit Number(double content) : Object(Kind::number), value(content) {}
  double value;
};

struct Url final : Object {
  explicit Url(std::string content) : Object(Kind::url), path(std::move(content)) {}
  std::string path;
};

/// Whether two property names, or other strings, are the same.
[[nodiscard]] bool isSameString(CFTypeRef a, CFTypeRef b);

}  // namespace tessarok::fakemac
