#pragma once

#include <chrono>
#include <gio/gio.h>
#include <memory>

namespace tarnwick {

struct GlibUnref {
  void operator()(void* object) const { g_object_unref(object); }
};
template <typename T>
using GlibPtr = std::unique_ptr<T, GlibUnref>;

/// Lets asynchronous GLib operations be awaited one after the other on a thread that has no event
/// loop, within one common time limit. Objects made meanwhile must be gone before it is.
class GlibCall {
 public:
  explicit GlibCall(std::chrono::milliseconds limit);
  GlibCall(const GlibCall&) = delete;
  GlibCall& operator=(const GlibCall&) = delete;
  ~GlibCall();

  /// To be handed to each operation, which ends early when the time is up.
  [[nodiscard]] GCancellable* cancellable() const { return cancellable_.get(); }

  /// The operation's callback; its user data is this object.
  static void arrived(GObject* source, GAsyncResult* result, gpointer call);

  /// Waits for the operation that was started last.
  [[nodiscard]] GlibPtr<GAsyncResult> wait();

 private:
  GMainContext* context_;
  GlibPtr<GCancellable> cancellable_;
  GlibPtr<GAsyncResult> result_;
};

}  // namespace tarnwick
