#include <Platform/Keychain/SecretService/SecretServiceTypes.hpp>

#include <Platform/Keychain/SecretService/GLibOwners.hpp>

#include <libsecret/secret.h>

namespace Tarnwick_API::Platform {

namespace {

void refuse(SecretPrompt* prompt, GError** error) {
    // The Secret Service would keep the prompt for as long as we are connected. Nothing is to be learnt from its
    // answer.
    g_dbus_proxy_call(G_DBUS_PROXY(prompt), "Dismiss", nullptr, G_DBUS_CALL_FLAGS_NONE, -1, nullptr, nullptr, nullptr);
    g_set_error_literal(error, SECRET_ERROR, SECRET_ERROR_IS_LOCKED, "no prompt is raised");
}

GVariant* promptSync(SecretService* /*self*/, SecretPrompt* prompt, GCancellable* /*cancellable*/,
                     const GVariantType* /*type*/, GError** error) {
    refuse(prompt, error);
    return nullptr;
}

void promptAsync(SecretService* self, SecretPrompt* prompt, const GVariantType* /*type*/, GCancellable* cancellable,
                 GAsyncReadyCallback callback, gpointer data) {
    const GLibOwner<GTask> task{g_task_new(self, cancellable, callback, data)};
    GLibOwner<GError> error;
    refuse(prompt, GLibOutput{error});
    g_task_return_error(task.get(), error.release());
}

GVariant* promptFinish(SecretService* /*self*/, GAsyncResult* result, GError** error) {
    return static_cast<GVariant*>(g_task_propagate_pointer(G_TASK(result), error));
}

GObject* construct(GType type, guint count, GObjectConstructParam* parameters) {
    return G_OBJECT_CLASS(g_type_class_peek(G_TYPE_DBUS_PROXY))->constructor(type, count, parameters);
}

void initializePrompting(gpointer type, gpointer /*data*/) {
    static_cast<GObjectClass*>(type)->constructor = construct;
}

void initializeSilent(gpointer type, gpointer /*data*/) {
    auto* const service = static_cast<SecretServiceClass*>(type);
    service->prompt_sync = promptSync;
    service->prompt_async = promptAsync;
    service->prompt_finish = promptFinish;
}

GType derive(GType parent, const char* name, GClassInitFunc initialize) {
    return g_type_register_static_simple(parent, name, sizeof(SecretServiceClass), initialize, sizeof(SecretService),
                                         nullptr, G_TYPE_FLAG_NONE);
}

}  // namespace

GType promptingSecretServiceType() {
    static const GType type = derive(SECRET_TYPE_SERVICE, "TarnwickApiSecretService", initializePrompting);
    return type;
}

GType silentSecretServiceType() {
    static const GType type = derive(promptingSecretServiceType(), "TarnwickApiSilentSecretService", initializeSilent);
    return type;
}

}  // namespace Tarnwick_API::Platform
