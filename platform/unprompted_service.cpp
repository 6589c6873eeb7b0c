#include "platform/unprompted_service.h"

namespace tarnwick {
namespace {

void refuse(SecretService* self, SecretPrompt* /*prompt*/, const GVariantType* /*resultType*/,
            GCancellable* cancellable, GAsyncReadyCallback callback, gpointer userData) {
  g_task_report_new_error(self, callback, userData, nullptr, SECRET_ERROR, SECRET_ERROR_IS_LOCKED,
                          "the secret store wants to ask the user");
  static_cast<void>(cancellable);
}

GVariant* finish(SecretService* /*self*/, GAsyncResult* result, GError** error) {
  return static_cast<GVariant*>(g_task_propagate_pointer(G_TASK(result), error));
}

void initialise(gpointer typeClass, gpointer /*data*/) {
  auto* service = static_cast<SecretServiceClass*>(typeClass);
  service->prompt_async = &refuse;
  service->prompt_finish = &finish;
}

}  // namespace

GType unpromptedServiceType() {
  static const GType type = g_type_register_static_simple(
      SECRET_TYPE_SERVICE, "TarnwickUnpromptedService", sizeof(SecretServiceClass), &initialise,
      sizeof(SecretService), nullptr, static_cast<GTypeFlags>(0));
  return type;
}

}  // namespace tarnwick
