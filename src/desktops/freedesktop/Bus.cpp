#include "desktops/freedesktop/Bus.h"

#include <cerrno>
#include <poll.h>
#include <sys/socket.h>
#include <system_error>
#include <utility>

#include "desktops/freedesktop/BusExceptions.h"

namespace tessarok::freedesktop {

namespace {

/// So many messages may keep the loop from the keys.
constexpr int kMessagesPerTurn = 32;

std::string textOf(int error) {
  return std::generic_category().message(error);
}

/// The message was not built to its end, which says nothing about the bus.
bool isOfMessage(int error) {
  return error == EBADMSG || error == ESTALE;
}

int handle(sd_bus_message* message, void* userData, sd_bus_error*) noexcept {
  return BusExceptions::keep([&] {
    // A copy, because the handler may drop the slot that owns it.
    const auto handler = *static_cast<BusSlot::Handler*>(userData);
    handler(*message);
    return 0;
  });
}

int ignore(sd_bus_message*, void*, sd_bus_error*) noexcept {
  return 0;
}

}  // namespace

std::unique_ptr<Bus> Bus::openSession(platform::RunLoop& loop) {
  sd_bus* bus = nullptr;
  const int result = sd_bus_open_user(&bus);
  return started(loop, result, bus);
}

std::unique_ptr<Bus> Bus::openSystem(platform::RunLoop& loop) {
  sd_bus* bus = nullptr;
  const int result = sd_bus_open_system(&bus);
  return started(loop, result, bus);
}

std::unique_ptr<Bus> Bus::openAddress(platform::RunLoop& loop, const std::string& address,
                                      std::string& reason) {
  sd_bus* bus = nullptr;
  int result = sd_bus_new(&bus);
  if (result >= 0) result = sd_bus_set_address(bus, address.c_str());
  if (result >= 0) result = sd_bus_set_bus_client(bus, 1);
  if (result >= 0) result = sd_bus_start(bus);
  if (result < 0) reason = textOf(-result);
  return started(loop, result, bus);
}

std::unique_ptr<Bus> Bus::started(platform::RunLoop& loop, int result, sd_bus* bus) {
  if (result < 0) {
    sd_bus_unref(bus);
    return nullptr;
  }
  return std::unique_ptr<Bus>(new Bus(loop, bus));
}

Bus::Bus(platform::RunLoop& loop, sd_bus* bus) : loop_(loop), bus_(bus) {
  loop_.add(*this);
  later(kConnectPatience, &Bus::giveUpIfNotReady);
}

Bus::~Bus() {
  loop_.remove(*this);
  // The loop takes no more care of it, and a goodbye must not wait for a peer that hangs.
  if (bus_ != nullptr) sd_bus_close_unref(bus_);
}

BusSlot Bus::match(const std::string& rule, BusSlot::Handler handler) {
  if (bus_ == nullptr) return {};
  auto owned = std::make_unique<BusSlot::Handler>(std::move(handler));
  sd_bus_slot* slot = nullptr;
  const int result = sd_bus_add_match_async(bus_, &slot, rule.c_str(), handle, ignore, owned.get());
  if (result < 0) lose(-result);
  return {std::move(owned), slot};
}

BusSlot Bus::addObject(const char* path, const char* interface, const sd_bus_vtable* vtable,
                       void* object) {
  sd_bus_slot* slot = nullptr;
  if (bus_ == nullptr) return {};
  const int result = sd_bus_add_object_vtable(bus_, &slot, path, interface, vtable, object);
  if (result < 0) lose(-result);
  return {nullptr, slot};
}

BusSlot Bus::requestName(const std::string& name) {
  sd_bus_slot* slot = nullptr;
  if (bus_ == nullptr) return {};
  const int result =
      sd_bus_request_name_async(bus_, &slot, name.c_str(), SD_BUS_NAME_QUEUE, ignore, nullptr);
  if (result < 0) lose(-result);
  return {nullptr, slot};
}

BusMessage Bus::methodCall(const std::string& destination, const std::string& path,
                           const char* interface, const char* member) {
  sd_bus_message* message = nullptr;
  if (bus_ == nullptr) return {};
  const int result = sd_bus_message_new_method_call(bus_, &message, destination.c_str(),
                                                    path.c_str(), interface, member);
  // A name that is none may have come from another program, and says nothing about the bus.
  if (result < 0 && result != -EINVAL) lose(-result);
  return BusMessage(message);
}

BusMessage Bus::signal(const char* path, const char* interface, const char* member) {
  sd_bus_message* message = nullptr;
  if (bus_ == nullptr) return {};
  const int result = sd_bus_message_new_signal(bus_, &message, path, interface, member);
  if (result < 0) lose(-result);
  return BusMessage(message);
}

BusSlot Bus::call(BusMessage message, BusSlot::Handler handler, std::uint64_t patience) {
  if (bus_ == nullptr || !message) return {};
  auto owned = std::make_unique<BusSlot::Handler>(std::move(handler));
  sd_bus_slot* slot = nullptr;
  const int result = sd_bus_call_async(bus_, &slot, message.get(), handle, owned.get(), patience);
  if (result < 0 && !isOfMessage(-result)) lose(-result);
  processSoonIfNeeded();
  if (result < 0) return {};
  // The loop waits for descriptors only, and a call that is never answered makes none ready.
  later(static_cast<double>(patience) / 1e6 + 0.01, &Bus::process);
  return {std::move(owned), slot};
}

void Bus::send(BusMessage message) {
  if (bus_ == nullptr || !message) return;
  const int result = sd_bus_send(bus_, message.get(), nullptr);
  if (result < 0 && !isOfMessage(-result)) lose(-result);
  processSoonIfNeeded();
}

int Bus::descriptor() const {
  return bus_ != nullptr ? sd_bus_get_fd(bus_) : -1;
}

short Bus::events() const {
  if (bus_ == nullptr) return 0;
  const int events = sd_bus_get_events(bus_);
  return static_cast<short>(events < 0 ? POLLIN : events);
}

void Bus::ready(short) {
  process();
}

void Bus::process() {
  for (int i = 0; bus_ != nullptr; ++i) {
    if (i == kMessagesPerTurn) return later(0, &Bus::process);
    const int result = sd_bus_process(bus_, nullptr);
    BusExceptions::rethrow();
    if (result < 0 && error_ != 0) return close();
    if (result < 0) lose(-result);
    if (result == 0 && !hasWork()) return;
  }
}

void Bus::lose(int error) {
  if (error_ != 0) return;
  error_ = error;
  ::shutdown(sd_bus_get_fd(bus_), SHUT_RDWR);
}

void Bus::giveUpIfNotReady() {
  if (bus_ != nullptr && sd_bus_is_ready(bus_) <= 0) lose(ETIMEDOUT);
}

bool Bus::hasWork() const {
  std::uint64_t due = 0;
  return bus_ != nullptr && sd_bus_get_timeout(bus_, &due) > 0 && due == 0;
}

void Bus::processSoonIfNeeded() {
  if (!hasWork()) return;
  loop_.async([weak = std::weak_ptr(self_)] {
    if (const auto self = weak.lock()) (*self)->process();
  });
}

void Bus::later(double seconds, void (Bus::*work)()) {
  loop_.after(seconds, [weak = std::weak_ptr(self_), work] {
    if (const auto self = weak.lock()) ((*self)->*work)();
  });
}

void Bus::close() {
  // A loop may keep its own record of the descriptor, whose number will be another file's.
  loop_.remove(*this);
  sd_bus_close_unref(std::exchange(bus_, nullptr));
  loop_.async([weak = std::weak_ptr(self_)] {
    const auto self = weak.lock();
    if (self && (*self)->onClosed) (*self)->onClosed(textOf((*self)->error_));
  });
}

}  // namespace tessarok::freedesktop
