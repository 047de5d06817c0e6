#pragma once

#include <cstddef>
#include <map>
#include <string>

/// An Objective-C runtime for the tests, over the same metadata that the compiler writes for a Mac:
/// classes, messages, reference counts, weak references, pools. It forgives nothing: a message to
/// an object that is gone, a release too many, variables in the place of the class, or an object
/// left to a pool that is not there end the process.
///
/// What it does not know: categories, properties at run time, forwarding, exceptions.
namespace tessarok::fakemac {

/// The objects that exist, by the name of their class; constant strings are not counted.
[[nodiscard]] std::map<std::string, std::size_t> liveInstances();

}  // namespace tessarok::fakemac

extern "C" {
/// What the methods of the root class are made of.
void* fakeobjc_create(const void* type);
void fakeobjc_dispose(void* object);
const void* fakeobjc_classOf(const void* object);
bool fakeobjc_isKind(const void* object, const void* type);
bool fakeobjc_responds(const void* object, const char* selector);

/// A copy of a block, which its maker releases, and a call of one that takes an object.
void* fakeobjc_copyBlock(const void* block);
void fakeobjc_releaseBlock(void* block);
void fakeobjc_callBlock(void* block, void* argument);
}
