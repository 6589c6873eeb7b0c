#include "platform/glib_call.h"

#include <algorithm>

namespace tarnwick {
namespace {

gboolean cancel(gpointer cancellable) {
  g_cancellable_cancel(static_cast<GCancellable*>(cancellable));
  return G_SOURCE_REMOVE;
}

}  // namespace

GlibCall::GlibCall(std::chrono::milliseconds limit)
    : context_(g_main_context_new()), cancellable_(g_cancellable_new()) {
  g_main_context_push_thread_default(context_);
  const auto milliseconds = static_cast<guint>(std::max<std::int64_t>(limit.count(), 1));
  GSource* timer = g_timeout_source_new(milliseconds);
  g_source_set_callback(timer, &cancel, cancellable_.get(), nullptr);
  g_source_attach(timer, context_);
  g_source_unref(timer);
}

GlibCall::~GlibCall() {
  result_.reset();
  // The released objects have left their farewells in the loop.
  while (g_main_context_iteration(context_, FALSE)) {
  }
  g_main_context_pop_thread_default(context_);
  g_main_context_unref(context_);
}

void GlibCall::arrived(GObject* /*source*/, GAsyncResult* result, gpointer call) {
  static_cast<GlibCall*>(call)->result_.reset(static_cast<GAsyncResult*>(g_object_ref(result)));
}

GlibPtr<GAsyncResult> GlibCall::wait() {
  while (!result_) g_main_context_iteration(context_, TRUE);
  return std::move(result_);
}

}  // namespace tarnwick
