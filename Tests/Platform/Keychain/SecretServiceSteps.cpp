// Functions of libsecret, put in the place of its own: each does what a test wants to come between, then calls the
// other.

#include "SecretServiceSteps.hpp"

#include <array>
#include <cstddef>
#include <mutex>
#include <utility>

#include <dlfcn.h>
#include <libsecret/secret.h>

namespace Tarnwick_API::Platform {
namespace {

std::mutex mutex;
std::array<std::function<void()>, 3> between;

std::function<void()> exchange(SecretServiceStep step, std::function<void()> what) {
    const std::lock_guard lock{mutex};
    return std::exchange(between.at(static_cast<std::size_t>(step)), std::move(what));
}

template <typename Function>
Function* libsecretsOwn(SecretServiceStep step, const char* name) {
    if (const auto what = exchange(step, {})) {
        what();
    }
    return reinterpret_cast<Function*>(::dlsym(RTLD_NEXT, name));
}

}  // namespace

void beforeNext(SecretServiceStep step, std::function<void()> what) {
    exchange(step, std::move(what));
}

}  // namespace Tarnwick_API::Platform

using Tarnwick_API::Platform::libsecretsOwn;
using Tarnwick_API::Platform::SecretServiceStep;

extern "C" {

GList* secret_collection_search_sync(SecretCollection* self, const SecretSchema* schema, GHashTable* attributes,
                                     SecretSearchFlags flags, GCancellable* cancellable, GError** error) {
    return libsecretsOwn<decltype(secret_collection_search_sync)>(SecretServiceStep::search, __func__)(
        self, schema, attributes, flags, cancellable, error);
}

SecretItem* secret_item_create_sync(SecretCollection* collection, const SecretSchema* schema, GHashTable* attributes,
                                    const gchar* label, SecretValue* value, SecretItemCreateFlags flags,
                                    GCancellable* cancellable, GError** error) {
    return libsecretsOwn<decltype(secret_item_create_sync)>(SecretServiceStep::create, __func__)(
        collection, schema, attributes, label, value, flags, cancellable, error);
}

gboolean secret_item_delete_sync(SecretItem* self, GCancellable* cancellable, GError** error) {
    return libsecretsOwn<decltype(secret_item_delete_sync)>(SecretServiceStep::erase, __func__)(self, cancellable,
                                                                                                error);
}

}  // extern "C"
