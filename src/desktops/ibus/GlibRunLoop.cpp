#include "desktops/ibus/GlibRunLoop.h"

#include <algorithm>
#include <poll.h>
#include <utility>

namespace tessarok::ibus {

namespace {

gint64 in(double seconds) {
  return g_get_monotonic_time() + static_cast<gint64>(std::max(seconds, 0.0) * 1e6);
}

GIOCondition conditionOf(short events) {
  int condition = G_IO_ERR | G_IO_HUP;
  if ((events & POLLIN) != 0) condition |= G_IO_IN;
  if ((events & POLLOUT) != 0) condition |= G_IO_OUT;
  // A source that waits for nothing is to be left alone, whatever happens to it.
  return static_cast<GIOCondition>(events == 0 ? 0 : condition);
}

short eventsOf(GIOCondition condition) {
  int events = 0;
  if ((condition & G_IO_IN) != 0) events |= POLLIN;
  if ((condition & G_IO_OUT) != 0) events |= POLLOUT;
  if ((condition & G_IO_ERR) != 0) events |= POLLERR;
  if ((condition & G_IO_HUP) != 0) events |= POLLHUP;
  return static_cast<short>(events);
}

template <typename Source>
Source& as(GSource* source) {
  return *reinterpret_cast<Source*>(source);
}

/// Ends a source that has been attached.
void end(GSource* source) {
  g_source_destroy(source);
  g_source_unref(source);
}

}  // namespace

/// Runs what is queued when it is made ready.
struct GlibRunLoop::Turn {
  GSource source;
  GlibRunLoop* loop;

  static gboolean dispatch(GSource* source, GSourceFunc, gpointer) {
    g_source_set_ready_time(source, -1);
    auto& loop = *as<Turn>(source).loop;
    loop.guard_([&loop] { loop.runQueue(); });
    return G_SOURCE_CONTINUE;
  }
};

/// Runs something at a time.
struct GlibRunLoop::Delayed {
  GSource source;
  std::function<void()>* work;

  static gboolean dispatch(GSource* source, GSourceFunc, gpointer) {
    g_source_set_ready_time(source, -1);
    // The work may end the source.
    const auto work = *as<Delayed>(source).work;
    work();
    return G_SOURCE_CONTINUE;
  }
  static void finalize(GSource* source) { delete as<Delayed>(source).work; }

  [[nodiscard]] static GSource* attach(double seconds, std::function<void()> work) {
    static GSourceFuncs functions{nullptr, nullptr, &dispatch, &finalize, nullptr, nullptr};
    auto* source = g_source_new(&functions, sizeof(Delayed));
    as<Delayed>(source).work = new std::function<void()>(std::move(work));
    g_source_set_ready_time(source, in(seconds));
    g_source_attach(source, nullptr);
    return source;
  }
};

/// A file descriptor that is served.
struct GlibRunLoop::Served {
  GSource source;
  GlibRunLoop* loop;
  posix::PollSource* served;
  /// Null while the source is to be left alone: GLib would tell of a hang-up all the same.
  gpointer tag;
  GIOCondition watched;

  /// Tells GLib what to wait for when that is another thing than before: behind every such change
  /// it begins its turn anew, and would never rest.
  void watch() {
    // Nobody reads any more what comes behind a failure, and GLib would tell of it for ever.
    const auto wanted = loop->guard_.hasFailed() ? GIOCondition{} : conditionOf(served->events());
    if (wanted == watched) return;
    watched = wanted;
    if (tag == nullptr) {
      tag = g_source_add_unix_fd(&source, served->descriptor(), wanted);
    } else if (wanted != 0) {
      g_source_modify_unix_fd(&source, tag, wanted);
    } else {
      g_source_remove_unix_fd(&source, std::exchange(tag, nullptr));
    }
  }
  [[nodiscard]] gboolean isReady() const {
    return !loop->guard_.hasFailed() && served->isReady() ? TRUE : FALSE;
  }
  [[nodiscard]] GIOCondition condition() {
    return tag == nullptr ? GIOCondition{} : g_source_query_unix_fd(&source, tag);
  }

  static gboolean prepare(GSource* source, gint* timeout) {
    auto& own = as<Served>(source);
    *timeout = -1;
    own.watch();
    return own.isReady();
  }
  static gboolean check(GSource* source) {
    auto& own = as<Served>(source);
    return own.condition() != 0 ? TRUE : own.isReady();
  }
  static gboolean dispatch(GSource* source, GSourceFunc, gpointer) {
    auto& own = as<Served>(source);
    const auto events = eventsOf(own.condition());
    own.loop->guard_([&] { own.served->ready(events); });
    return G_SOURCE_CONTINUE;
  }
};

class GlibRunLoop::RepeatingTimer final : public platform::Timer {
 public:
  RepeatingTimer(GlibRunLoop& loop, double interval, std::function<void()> work) {
    source_ = Delayed::attach(interval, [this, &loop, interval, work = std::move(work)] {
      g_source_set_ready_time(source_, in(interval));
      loop.guard_(work);
    });
  }
  ~RepeatingTimer() override { end(source_); }

 private:
  GSource* source_;
};

GlibRunLoop::GlibRunLoop(inputmethod::Guard& guard) : guard_(guard) {
  static GSourceFuncs functions{nullptr, nullptr, &Turn::dispatch, nullptr, nullptr, nullptr};
  turn_ = g_source_new(&functions, sizeof(Turn));
  as<Turn>(turn_).loop = this;
  g_source_attach(turn_, nullptr);
}

GlibRunLoop::~GlibRunLoop() {
  for (const auto& [number, source] : delayed_)
    end(source);
  for (const auto& [served, source] : sources_)
    end(source);
  end(turn_);
}

void GlibRunLoop::async(std::function<void()> work) {
  queue_.add(std::move(work));
  // From any thread: the time of a source may be set from all.
  g_source_set_ready_time(turn_, 0);
}

void GlibRunLoop::after(double seconds, std::function<void()> work) {
  const auto number = ++lastNumber_;
  delayed_[number] = Delayed::attach(seconds, [this, number, work = std::move(work)] {
    end(delayed_.extract(number).mapped());
    guard_(work);
  });
}

std::unique_ptr<platform::Timer> GlibRunLoop::repeating(double interval, double,
                                                        std::function<void()> work) {
  return std::make_unique<RepeatingTimer>(*this, interval, std::move(work));
}

void GlibRunLoop::add(platform::RunLoopSource& source) {
  auto* served = dynamic_cast<posix::PollSource*>(&source);
  if (served == nullptr) return;
  static GSourceFuncs functions{&Served::prepare, &Served::check, &Served::dispatch,
                                nullptr,          nullptr,        nullptr};
  auto* made = g_source_new(&functions, sizeof(Served));
  auto& own = as<Served>(made);
  own.loop = this;
  own.served = served;
  own.watch();
  g_source_attach(made, nullptr);
  sources_[served] = made;
}

void GlibRunLoop::remove(platform::RunLoopSource& source) {
  const auto found = sources_.find(dynamic_cast<posix::PollSource*>(&source));
  if (found == sources_.end()) return;
  end(found->second);
  sources_.erase(found);
}

void GlibRunLoop::runQueue() {
  while (const auto work = queue_.take())
    work();
}

}  // namespace tessarok::ibus
