#include "tests/desktops/macos/objc/Runtime.h"

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <mutex>
#include <set>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "tests/desktops/macos/fake/FakeObject.h"

namespace {

using tessarok::fakemac::misuse;
using Implementation = void (*)();

// What the compiler writes, as the system's own runtime reads it.

struct Method {
  const char* name;
  const char* types;
  Implementation implementation;
};

struct MethodList {
  std::uint32_t entrySize;
  std::uint32_t count;
  [[nodiscard]] const Method* begin() const { return reinterpret_cast<const Method*>(this + 1); }
  [[nodiscard]] const Method* end() const { return begin() + count; }
};

struct ClassDescription {
  std::uint32_t flags;
  std::uint32_t instanceStart;
  std::uint32_t instanceSize;
  std::uint32_t reserved;
  const std::uint8_t* strongVariables;
  const char* name;
  const MethodList* methods;
};

struct Class {
  Class* isa;
  Class* superclass;
  void* cache;
  void* table;
  const ClassDescription* description;
};

struct Object {
  Class* isa;
};

struct Super {
  Object* receiver;
  Class* current;
};

constexpr std::uint32_t kIsMeta = 1;

}  // namespace

extern "C" {
extern Class* __start_objc_classlist[];
extern Class* __stop_objc_classlist[];
extern const char* __start_objc_selrefs[];
extern const char* __stop_objc_selrefs[];
/// A name of the compiler's, which is none in C++.
extern Class constantStringClass __asm__("OBJC_CLASS_$_NSConstantString");
/// The class of the strings in the program's text.
Class __CFConstantStringClassReference;
void* _objc_empty_cache;
/// The classes of blocks, which are not sent messages here.
Class _NSConcreteStackBlock;
Class _NSConcreteGlobalBlock;
Class _NSConcreteMallocBlock;
}

namespace {

struct State {
  // Objects are made on the threads of queues, too.
  std::recursive_mutex mutex;
  std::set<std::string, std::less<>> selectors;
  std::unordered_map<const Class*, std::unordered_map<const char*, Implementation>> methods;
  std::unordered_map<const Object*, long> references;
  /// Objects whose destruction has begun: no new reference can be had.
  std::unordered_set<const Object*> ending;
  /// Where objects were: their memory says nothing any more.
  std::unordered_set<const Object*> gone;
  std::unordered_map<const Object*, std::set<Object**>> weak;
};

State& state() {
  static auto* const made = new State;
  return *made;
}

/// The one pointer that stands for a selector.
const char* selectorOf(std::string_view name) {
  auto& all = state().selectors;
  const auto found = all.find(name);
  return (found != all.end() ? found : all.emplace(name).first)->c_str();
}

void registerMethods(const Class* type) {
  const auto* list = type->description->methods;
  if (list == nullptr) return;
  if ((list->entrySize & 0xFFFCU) != sizeof(Method)) misuse("an unknown list of methods");
  for (const auto& method : *list)
    state().methods[type][selectorOf(method.name)] = method.implementation;
}

/// The start of an object belongs to its class, and what follows to its superclass.
void checkLayout(const Class* type) {
  const auto* own = type->description;
  if (own->instanceSize < sizeof(Object)) {
    misuse(std::string("no room for the class in a ") + own->name);
  }
  if (type->superclass == nullptr) return;
  if (own->instanceStart < type->superclass->description->instanceSize) {
    misuse(std::string("the variables of ") + own->name + " lie on those of its superclass");
  }
}

__attribute__((constructor)) void registerClasses() {
  for (auto* reference = __start_objc_selrefs; reference != __stop_objc_selrefs; ++reference)
    *reference = selectorOf(*reference);
  for (auto* type = __start_objc_classlist; type != __stop_objc_classlist; ++type) {
    checkLayout(*type);
    registerMethods(*type);
    registerMethods((*type)->isa);
  }
  __CFConstantStringClassReference = constantStringClass;
  state().methods[&__CFConstantStringClassReference] = {};
  __CFConstantStringClassReference.superclass = &constantStringClass;
}

bool isClass(const Object* object) {
  const auto* type = reinterpret_cast<const Class*>(object);
  return state().methods.contains(type) || (object->isa->description->flags & kIsMeta) != 0;
}

/// A block lives where it was written, and a copy as long as its maker says.
bool isBlock(const Object* object) {
  return object->isa == &_NSConcreteStackBlock || object->isa == &_NSConcreteGlobalBlock ||
         object->isa == &_NSConcreteMallocBlock;
}

/// Those that belong to the program's text, and classes, are never released.
bool isImmortal(const Object* object) {
  if (state().gone.contains(object)) misuse("an object that is gone was used");
  return isBlock(object) || object->isa == &__CFConstantStringClassReference || isClass(object);
}

Implementation find(const Class* type, const char* selector) {
  for (; type != nullptr; type = type->superclass) {
    const auto methods = state().methods.find(type);
    if (methods == state().methods.end()) continue;
    const auto method = methods->second.find(selector);
    if (method != methods->second.end()) return method->second;
  }
  return nullptr;
}

/// Calls a method of every class of an object that has one of its own, from the last one on.
void callForEach(Object* object, const char* name, const Class* type) {
  const auto* selector = selectorOf(name);
  for (; type != nullptr; type = type->superclass) {
    const auto methods = state().methods.find(type);
    if (methods == state().methods.end() || !methods->second.contains(selector)) continue;
    reinterpret_cast<void (*)(Object*, const char*)>(methods->second.at(selector))(object,
                                                                                   selector);
  }
}

void callConstructors(Object* object, const Class* type) {
  if (type == nullptr) return;
  callConstructors(object, type->superclass);
  const auto* selector = selectorOf(".cxx_construct");
  const auto methods = state().methods.find(type);
  if (methods == state().methods.end() || !methods->second.contains(selector)) return;
  reinterpret_cast<Object* (*)(Object*, const char*)>(methods->second.at(selector))(object,
                                                                                    selector);
}

long& referencesOf(const Object* object) {
  const auto found = state().references.find(object);
  if (found == state().references.end()) misuse("something that is no object was used");
  return found->second;
}

Object* sendWithoutArguments(Object* object, const char* name) {
  const auto* selector = selectorOf(name);
  const auto method = find(object->isa, selector);
  if (method == nullptr) misuse(std::string("nothing answers to ") + name);
  return reinterpret_cast<Object* (*)(Object*, const char*)>(method)(object, selector);
}

thread_local std::vector<std::vector<Object*>> pools;

}  // namespace

namespace tessarok::fakemac {

std::map<std::string, std::size_t> liveInstances() {
  const std::lock_guard lock(state().mutex);
  std::map<std::string, std::size_t> counts;
  for (const auto& [object, references] : state().references)
    ++counts[object->isa->description->name];
  return counts;
}

}  // namespace tessarok::fakemac

// NOLINTBEGIN: the names are the system's.
extern "C" {

// The root class.

void* fakeobjc_create(const void* reference) {
  const std::lock_guard lock(state().mutex);
  auto* type = static_cast<Class*>(const_cast<void*>(reference));
  auto* object = static_cast<Object*>(std::calloc(1, type->description->instanceSize));
  object->isa = type;
  state().gone.erase(object);
  state().references[object] = 1;
  callConstructors(object, type);
  if (object->isa != type) misuse(std::string("a variable took the place of the class"));
  return object;
}

void fakeobjc_dispose(void* reference) {
  auto* object = static_cast<Object*>(reference);
  callForEach(object, ".cxx_destruct", object->isa);
  const std::lock_guard lock(state().mutex);
  for (auto** place : state().weak[object])
    *place = nullptr;
  state().weak.erase(object);
  state().references.erase(object);
  state().ending.erase(object);
  state().gone.insert(object);
  std::free(object);
}

const void* fakeobjc_classOf(const void* object) {
  return static_cast<const Object*>(object)->isa;
}

bool fakeobjc_isKind(const void* reference, const void* wanted) {
  const auto* type = static_cast<const Object*>(reference)->isa;
  while (type != nullptr && type != wanted)
    type = type->superclass;
  return type != nullptr;
}

bool fakeobjc_responds(const void* reference, const char* selector) {
  const std::lock_guard lock(state().mutex);
  return find(static_cast<const Object*>(reference)->isa, selector) != nullptr;
}

// Messages. The assembly below calls these.

void fakeobjc_returnNothing();

Implementation fakeobjc_lookUp(Object* receiver, const char* selector) {
  if (receiver == nullptr) return &fakeobjc_returnNothing;
  const std::lock_guard lock(state().mutex);
  if (state().gone.contains(receiver)) {
    misuse(std::string("a message to an object that is gone: ") + selector);
  }
  const auto found = find(receiver->isa, selector);
  if (found == nullptr) {
    misuse(std::string(receiver->isa->description->name) + " does not answer to " + selector);
  }
  return found;
}

Implementation fakeobjc_lookUpSuper(Super* super, const char* selector) {
  const std::lock_guard lock(state().mutex);
  const auto found = find(super->current->superclass, selector);
  if (found == nullptr) misuse(std::string("no superclass answers to ") + selector);
  return found;
}

// References.

Object* objc_retain(Object* object) {
  const std::lock_guard lock(state().mutex);
  if (object != nullptr && !isImmortal(object)) ++referencesOf(object);
  return object;
}

void objc_release(Object* object) {
  {
    const std::lock_guard lock(state().mutex);
    if (object == nullptr || isImmortal(object)) return;
    auto& references = referencesOf(object);
    if (references > 1) {
      --references;
      return;
    }
    if (!state().ending.insert(object).second) misuse("an object was released too often");
  }
  sendWithoutArguments(object, "dealloc");
}

Object* objc_autorelease(Object* object) {
  if (object == nullptr || isImmortal(object)) return object;
  if (pools.empty()) misuse("an object was left to a pool that is not there");
  pools.back().push_back(object);
  return object;
}

Object* objc_retainAutorelease(Object* object) {
  return objc_autorelease(objc_retain(object));
}
Object* objc_autoreleaseReturnValue(Object* object) {
  return objc_autorelease(object);
}
Object* objc_retainAutoreleaseReturnValue(Object* object) {
  return objc_retainAutorelease(object);
}
Object* objc_retainAutoreleasedReturnValue(Object* object) {
  return objc_retain(object);
}
Object* objc_unsafeClaimAutoreleasedReturnValue(Object* object) {
  return object;
}

void* objc_autoreleasePoolPush() {
  pools.emplace_back();
  return reinterpret_cast<void*>(pools.size());
}

void objc_autoreleasePoolPop(void* pool) {
  const auto depth = reinterpret_cast<std::size_t>(pool);
  if (pools.size() < depth) misuse("a pool was emptied twice");
  while (pools.size() >= depth) {
    // What is released may leave more to the pool.
    while (!pools.back().empty()) {
      auto* const object = pools.back().back();
      pools.back().pop_back();
      objc_release(object);
    }
    pools.pop_back();
  }
}

void objc_storeStrong(Object** place, Object* object) {
  objc_retain(object);
  auto* const previous = *place;
  *place = object;
  objc_release(previous);
}

Object* objc_alloc(Class* type) {
  return sendWithoutArguments(reinterpret_cast<Object*>(type), "alloc");
}
Object* objc_alloc_init(Class* type) {
  return sendWithoutArguments(objc_alloc(type), "init");
}
Object* objc_opt_self(Object* object) {
  return object;
}

// Weak references.

Object* objc_storeWeak(Object** place, Object* object) {
  const std::lock_guard lock(state().mutex);
  if (*place != nullptr) state().weak[*place].erase(place);
  *place = object;
  if (object != nullptr && !isImmortal(object)) {
    static_cast<void>(referencesOf(object));
    state().weak[object].insert(place);
  }
  return object;
}

Object* objc_initWeak(Object** place, Object* object) {
  *place = nullptr;
  return objc_storeWeak(place, object);
}

void objc_destroyWeak(Object** place) {
  objc_storeWeak(place, nullptr);
}

Object* objc_loadWeakRetained(Object** place) {
  const std::lock_guard lock(state().mutex);
  if (*place == nullptr || state().ending.contains(*place)) return nullptr;
  return objc_retain(*place);
}

// Properties.

Object* objc_getProperty(Object* object, const char*, std::ptrdiff_t offset, bool) {
  auto* const value = *reinterpret_cast<Object**>(reinterpret_cast<char*>(object) + offset);
  return objc_retainAutorelease(value);
}

void objc_setProperty_atomic(Object* object, const char*, Object* value, std::ptrdiff_t offset) {
  objc_storeStrong(reinterpret_cast<Object**>(reinterpret_cast<char*>(object) + offset), value);
}

void objc_setProperty_atomic_copy(Object* object, const char* selector, Object* value,
                                  std::ptrdiff_t offset) {
  // Only strings that do not change are copied here, and their copies are they themselves.
  objc_setProperty_atomic(object, selector, value, offset);
}

// Blocks.

struct BlockDescriptor {
  unsigned long reserved;
  unsigned long size;
  void (*copy)(void* target, const void* source);
  void (*dispose)(const void* block);
};

struct Block {
  void* isa;
  std::uint32_t flags;
  std::int32_t reserved;
  void (*call)();
  BlockDescriptor* descriptor;
};

constexpr std::uint32_t kBlockHasCopy = 1U << 25;

/// A copy of its own; the fake makes one where the system does.
void* fakeobjc_copyBlock(const void* reference) {
  const auto* block = static_cast<const Block*>(reference);
  auto* copy = static_cast<Block*>(std::malloc(block->descriptor->size));
  std::memcpy(static_cast<void*>(copy), block, block->descriptor->size);
  copy->isa = &_NSConcreteMallocBlock;
  if ((copy->flags & kBlockHasCopy) != 0) copy->descriptor->copy(copy, block);
  return copy;
}

void fakeobjc_releaseBlock(void* reference) {
  auto* block = static_cast<Block*>(reference);
  if ((block->flags & kBlockHasCopy) != 0) block->descriptor->dispose(block);
  std::free(block);
}

void fakeobjc_callBlock(void* reference, void* argument) {
  auto* block = static_cast<Block*>(reference);
  reinterpret_cast<void (*)(void*, void*)>(block->call)(block, argument);
}
}
// NOLINTEND

// Passes a message on with all its arguments: registers of integers and of floating point, and how
// many of the latter there are. A null receiver answers zero of either kind.
asm(R"(
  .text
  .macro SAVE
    pushq %rbp
    movq %rsp, %rbp
    subq $192, %rsp
    movq %rax, -8(%rbp)
    movq %rdi, -16(%rbp)
    movq %rsi, -24(%rbp)
    movq %rdx, -32(%rbp)
    movq %rcx, -40(%rbp)
    movq %r8, -48(%rbp)
    movq %r9, -56(%rbp)
    movups %xmm0, -80(%rbp)
    movups %xmm1, -96(%rbp)
    movups %xmm2, -112(%rbp)
    movups %xmm3, -128(%rbp)
    movups %xmm4, -144(%rbp)
    movups %xmm5, -160(%rbp)
    movups %xmm6, -176(%rbp)
    movups %xmm7, -192(%rbp)
  .endm
  .macro RESTORE
    movq %rax, %r11
    movups -192(%rbp), %xmm7
    movups -176(%rbp), %xmm6
    movups -160(%rbp), %xmm5
    movups -144(%rbp), %xmm4
    movups -128(%rbp), %xmm3
    movups -112(%rbp), %xmm2
    movups -96(%rbp), %xmm1
    movups -80(%rbp), %xmm0
    movq -56(%rbp), %r9
    movq -48(%rbp), %r8
    movq -40(%rbp), %rcx
    movq -32(%rbp), %rdx
    movq -24(%rbp), %rsi
    movq -16(%rbp), %rdi
    movq -8(%rbp), %rax
    leave
  .endm

  .globl objc_msgSend
  .type objc_msgSend, @function
objc_msgSend:
  SAVE
  call fakeobjc_lookUp
  RESTORE
  jmp *%r11
  .size objc_msgSend, .-objc_msgSend

  .globl objc_msgSendSuper2
  .type objc_msgSendSuper2, @function
objc_msgSendSuper2:
  SAVE
  call fakeobjc_lookUpSuper
  RESTORE
  movq (%rdi), %rdi
  jmp *%r11
  .size objc_msgSendSuper2, .-objc_msgSendSuper2

  .globl fakeobjc_returnNothing
  .type fakeobjc_returnNothing, @function
fakeobjc_returnNothing:
  xorl %eax, %eax
  xorl %edx, %edx
  xorps %xmm0, %xmm0
  xorps %xmm1, %xmm1
  ret
  .size fakeobjc_returnNothing, .-fakeobjc_returnNothing
)");
