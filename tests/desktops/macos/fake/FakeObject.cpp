#include "tests/desktops/macos/fake/FakeObject.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <map>
#include <unordered_set>

#include "text/Text.h"

namespace tessarok::fakemac {

namespace {

std::unordered_set<const void*>& registry() {
  static auto* const objects = new std::unordered_set<const void*>;
  return *objects;
}

std::map<Kind, std::size_t>& mortalObjects() {
  static auto* const counts = new std::map<Kind, std::size_t>;
  return *counts;
}

}  // namespace

void misuse(const std::string& reason) {
  std::fprintf(stderr, "misuse: %s\n", reason.c_str());
  std::abort();
}

Object::Object(Kind objectKind, bool immortal) : kind(objectKind), isImmortal(immortal) {
  registry().insert(this);
  if (!isImmortal) ++mortalObjects()[kind];
}

Object::~Object() {
  registry().erase(this);
  if (!isImmortal) --mortalObjects()[kind];
}

std::size_t liveObjects() {
  std::size_t all = 0;
  for (const auto& [kind, count] : mortalObjects())
    all += count;
  return all;
}

std::size_t liveObjects(Kind kind) {
  return mortalObjects()[kind];
}

Object& objectOf(const void* reference) {
  if (reference == nullptr) misuse("null was used as an object");
  if (!registry().contains(reference)) misuse("a released object was used");
  return *static_cast<Object*>(const_cast<void*>(reference));
}

bool isSameString(CFTypeRef a, CFTypeRef b) {
  return as<String>(a).text == as<String>(b).text;
}

Array::Array(std::vector<CFTypeRef> content) : Object(Kind::array), elements(std::move(content)) {
  for (const auto* element : elements) {
    if (element != nullptr) CFRetain(element);
  }
}

Array::~Array() {
  for (const auto* element : elements) {
    if (element != nullptr) CFRelease(element);
  }
}

Dictionary::~Dictionary() {
  for (const auto& [key, value] : entries) {
    CFRelease(key);
    CFRelease(value);
  }
}

}  // namespace tessarok::fakemac

using namespace tessarok::fakemac;

CFTypeRef CFRetain(CFTypeRef object) {
  ++objectOf(object).references;
  return object;
}

void CFRelease(CFTypeRef reference) {
  auto& object = objectOf(reference);
  if (--object.references > 0) return;
  if (object.isImmortal) misuse("an object of the system was released too often");
  delete &object;
}

CFTypeID CFGetTypeID(CFTypeRef object) {
  return static_cast<CFTypeID>(objectOf(object).kind);
}

CFTypeID CFStringGetTypeID() {
  return static_cast<CFTypeID>(Kind::string);
}
CFTypeID CFDataGetTypeID() {
  return static_cast<CFTypeID>(Kind::data);
}
CFTypeID CFBooleanGetTypeID() {
  return static_cast<CFTypeID>(Kind::boolean);
}
CFTypeID CFNumberGetTypeID() {
  return static_cast<CFTypeID>(Kind::number);
}

CFStringRef CFStringCreateWithBytes(CFAllocatorRef allocator, const UInt8* bytes, CFIndex count,
                                    CFStringEncoding encoding, ::Boolean isExternal) {
  if (allocator != kCFAllocatorDefault || encoding != kCFStringEncodingUTF8 || isExternal) {
    misuse("CFStringCreateWithBytes was called with unexpected arguments");
  }
  const std::string_view text(reinterpret_cast<const char*>(bytes),
                              static_cast<std::size_t>(count));
  std::string again;
  tessarok::text::assignUtf16(tessarok::text::utf16(text), again);
  if (again != text) return nullptr;
  return refTo<CFStringRef>(new String(text));
}

CFIndex CFStringGetLength(CFStringRef string) {
  return static_cast<CFIndex>(tessarok::text::utf16(as<String>(string).text).size());
}

CFIndex CFStringGetMaximumSizeForEncoding(CFIndex length, CFStringEncoding encoding) {
  if (encoding != kCFStringEncodingUTF8) misuse("only UTF-8 was expected");
  return 3 * length;
}

::Boolean CFStringGetCString(CFStringRef string, char* buffer, CFIndex size,
                             CFStringEncoding encoding) {
  if (encoding != kCFStringEncodingUTF8) misuse("only UTF-8 was expected");
  const auto& text = as<String>(string).text;
  if (text.size() >= static_cast<std::size_t>(size)) return false;
  std::memcpy(buffer, text.c_str(), text.size() + 1);
  return true;
}

CFIndex CFArrayGetCount(CFArrayRef array) {
  return static_cast<CFIndex>(as<Array>(array).elements.size());
}

const void* CFArrayGetValueAtIndex(CFArrayRef array, CFIndex index) {
  const auto& elements = as<Array>(array).elements;
  if (index < 0 || index >= CFArrayGetCount(array)) misuse("an array has no such element");
  return elements[static_cast<std::size_t>(index)];
}

CFIndex CFDataGetLength(CFDataRef data) {
  return static_cast<CFIndex>(as<Data>(data).bytes.size());
}

const UInt8* CFDataGetBytePtr(CFDataRef data) {
  return as<Data>(data).bytes.data();
}

::Boolean CFBooleanGetValue(CFBooleanRef boolean) {
  return as<tessarok::fakemac::Boolean>(boolean).value;
}

::Boolean CFNumberGetValue(CFNumberRef number, CFNumberType type, void* value) {
  if (type != kCFNumberDoubleType) misuse("only doubles were expected");
  *static_cast<double*>(value) = as<Number>(number).value;
  return true;
}

const CFDictionaryKeyCallBacks kCFTypeDictionaryKeyCallBacks{};
const CFDictionaryValueCallBacks kCFTypeDictionaryValueCallBacks{};

CFDictionaryRef CFDictionaryCreate(CFAllocatorRef allocator, const void** keys, const void** values,
                                   CFIndex count, const CFDictionaryKeyCallBacks* keyCallBacks,
                                   const CFDictionaryValueCallBacks* valueCallBacks) {
  // With other callbacks the dictionary would not own what it holds.
  if (allocator != kCFAllocatorDefault || keyCallBacks != &kCFTypeDictionaryKeyCallBacks ||
      valueCallBacks != &kCFTypeDictionaryValueCallBacks) {
    misuse("CFDictionaryCreate was called with unexpected arguments");
  }
  auto* dictionary = new Dictionary;
  for (CFIndex i = 0; i < count; ++i) {
    dictionary->entries.emplace_back(CFRetain(keys[i]), CFRetain(values[i]));
  }
  return refTo<CFDictionaryRef>(dictionary);
}
