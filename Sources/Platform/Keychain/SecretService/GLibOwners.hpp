#pragma once

#include <memory>

#include <gio/gio.h>
#include <libsecret/secret.h>

namespace Tarnwick_API::Platform {

struct GLibRelease {
    void operator()(GError* error) const noexcept { g_error_free(error); }
    void operator()(GVariant* variant) const noexcept { g_variant_unref(variant); }
    void operator()(GHashTable* table) const noexcept { g_hash_table_unref(table); }
    void operator()(GMainContext* context) const noexcept { g_main_context_unref(context); }
    void operator()(char* text) const noexcept { g_free(text); }
    void operator()(SecretValue* value) const noexcept { secret_value_unref(value); }
    void operator()(guchar* bytes) const noexcept { g_free(bytes); }
    void operator()(GList* objects) const noexcept { g_list_free_full(objects, g_object_unref); }
    template <class Object>
    void operator()(Object* object) const noexcept {
        g_object_unref(object);
    }
};

/// Owns one reference to what GLib counts, a text or bytes that it allocated, or a list and a reference to each of its
/// objects.
template <class Object>
using GLibOwner = std::unique_ptr<Object, GLibRelease>;

/// Takes what a C function gives by an output parameter, for the length of the expression it stands in.
template <class Object>
class GLibOutput {
public:
    explicit GLibOutput(GLibOwner<Object>& owner) : owner_{owner} {}
    GLibOutput(const GLibOutput&) = delete;
    GLibOutput& operator=(const GLibOutput&) = delete;
    ~GLibOutput() { owner_.reset(taken_); }

    // NOLINTNEXTLINE(google-explicit-constructor): it stands for the C parameter
    operator Object**() { return &taken_; }

private:
    GLibOwner<Object>& owner_;
    Object* taken_ = nullptr;
};

}  // namespace Tarnwick_API::Platform
