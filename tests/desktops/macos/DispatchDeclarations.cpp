// What the C++ files use of Dispatch. They see another Dispatch than Objective-C++ does, where its
// objects count their references themselves. Checked as Declarations.mm is.

#include <dispatch/dispatch.h>
#include <type_traits>

namespace {

/// Calls are compared, not functions: the system's promise not to throw is part of their types.
template <typename Actual, typename Expected>
constexpr bool is = std::is_same_v<Actual, Expected>;

constexpr dispatch_queue_t queue = nullptr;
constexpr dispatch_function_t work = nullptr;
constexpr void* context = nullptr;

static_assert(DISPATCH_TIME_NOW == 0 && NSEC_PER_SEC == 1'000'000'000);
static_assert(static_cast<dispatch_queue_attr_t>(DISPATCH_QUEUE_SERIAL) == nullptr);
static_assert(is<dispatch_function_t, void (*)(void*)>);
static_assert(is<dispatch_time_t, uint64_t>);
static_assert(std::is_convertible_v<dispatch_queue_t, dispatch_object_t>);
static_assert(std::is_convertible_v<decltype(dispatch_get_main_queue()), dispatch_queue_t>);
static_assert(
    is<decltype(dispatch_queue_create("label", DISPATCH_QUEUE_SERIAL)), dispatch_queue_t>);
static_assert(is<decltype(dispatch_release(queue)), void>);
static_assert(is<decltype(dispatch_time(dispatch_time_t{}, int64_t{})), dispatch_time_t>);
static_assert(is<decltype(dispatch_async_f(queue, context, work)), void>);
static_assert(is<decltype(dispatch_sync_f(queue, context, work)), void>);
static_assert(is<decltype(dispatch_after_f(dispatch_time_t{}, queue, context, work)), void>);
constexpr dispatch_source_t source = nullptr;
static_assert(std::is_convertible_v<dispatch_source_t, dispatch_object_t>);
static_assert(is<decltype(dispatch_source_create(DISPATCH_SOURCE_TYPE_SIGNAL, uintptr_t{},
                                                 uintptr_t{}, queue)),
                 dispatch_source_t>);
static_assert(is<decltype(dispatch_set_context(source, context)), void>);
static_assert(is<decltype(dispatch_source_set_event_handler_f(source, work)), void>);
static_assert(is<decltype(dispatch_resume(source)), void>);
static_assert(is<decltype(dispatch_source_cancel(source)), void>);

}  // namespace
