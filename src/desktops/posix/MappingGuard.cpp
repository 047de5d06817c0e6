#include "desktops/posix/MappingGuard.h"

#include <array>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstdint>
#include <cstring>
#include <mutex>
#include <sys/mman.h>
#include <unistd.h>

namespace tessarok::posix {

namespace {

/// What the handler reads; nothing there is ever freed.
struct Region {
  std::atomic<std::uintptr_t> start{0};
  /// 0 for a slot that is free.
  std::atomic<std::size_t> size{0};
  std::atomic<bool> hasLostPart{false};
};

/// The two dictionaries, and as much again for a command that looks at all data.
constexpr std::size_t kMostRegions = 16;

std::array<Region, kMostRegions> regions;
std::atomic<std::size_t> pageSize{0};

/// Of the installation, which the handler does not touch.
std::mutex mutex;
std::size_t guarded = 0;
struct sigaction formerAction {};

Region* regionAt(std::uintptr_t address) {
  for (auto& region : regions) {
    const auto start = region.start.load();
    const auto size = region.size.load();
    if (size > 0 && address >= start && address - start < size) return &region;
  }
  return nullptr;
}

/// Whether reading can go on. Calls nothing that a signal handler must not.
bool replacePage(std::uintptr_t address) {
  auto* const region = regionAt(address);
  if (region == nullptr) return false;
  region->hasLostPart.store(true);
  const auto size = pageSize.load();
  auto* const page = reinterpret_cast<void*>(address & ~(std::uintptr_t{size} - 1));
  if (::mmap(page, size, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS | MAP_FIXED, -1, 0) ==
      MAP_FAILED) {
    return false;
  }
  std::memset(page, '\n', size);
  return true;
}

/// Not a fault, but sent by a process; then the address is something else.
bool wasSent(const siginfo_t* info) {
  return info->si_code == SI_USER || info->si_code == SI_QUEUE || info->si_code < 0;
}

/// As if there were no handler of this program.
void passOn(int signal, siginfo_t* info, void* context) {
  if ((formerAction.sa_flags & SA_SIGINFO) != 0) {
    return formerAction.sa_sigaction(signal, info, context);
  }
  if (formerAction.sa_handler != SIG_DFL && formerAction.sa_handler != SIG_IGN) {
    return formerAction.sa_handler(signal);
  }
  // A fault comes again as soon as this returns; what another process has sent does not.
  ::signal(signal, SIG_DFL);
  if (wasSent(info)) ::raise(signal);
}

void handleBusError(int signal, siginfo_t* info, void* context) {
  const int error = errno;
  if (wasSent(info) || !replacePage(reinterpret_cast<std::uintptr_t>(info->si_addr))) {
    passOn(signal, info, context);
  }
  errno = error;
}

void install() {
  pageSize.store(static_cast<std::size_t>(::sysconf(_SC_PAGESIZE)));
  struct sigaction action {};
  action.sa_sigaction = &handleBusError;
  action.sa_flags = SA_SIGINFO | SA_ONSTACK | SA_RESTART;
  sigemptyset(&action.sa_mask);
  ::sigaction(SIGBUS, &action, &formerAction);
}

void uninstall() {
  struct sigaction current {};
  if (::sigaction(SIGBUS, nullptr, &current) != 0) return;
  // Whoever came later may pass on to this one.
  const bool isOurs =
      (current.sa_flags & SA_SIGINFO) != 0 && current.sa_sigaction == &handleBusError;
  if (isOurs) ::sigaction(SIGBUS, &formerAction, nullptr);
}

}  // namespace

MappingGuard::MappingGuard(const void* address, std::size_t size) {
  const std::lock_guard lock(mutex);
  for (std::size_t i = 0; i < regions.size() && size > 0; ++i) {
    if (regions[i].size.load() != 0) continue;
    if (guarded++ == 0) install();
    regions[i].hasLostPart.store(false);
    regions[i].start.store(reinterpret_cast<std::uintptr_t>(address));
    regions[i].size.store(size);
    slot_ = i;
    return;
  }
}

MappingGuard::~MappingGuard() {
  if (slot_ == kUnguarded) return;
  const std::lock_guard lock(mutex);
  regions[slot_].size.store(0);
  if (--guarded == 0) uninstall();
}

bool MappingGuard::hasLostPart() const {
  return slot_ != kUnguarded && regions[slot_].hasLostPart.load();
}

}  // namespace tessarok::posix
