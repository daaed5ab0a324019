#pragma once

#include <gio/gio.h>

namespace Tarnwick_API::Platform {

/// Makes a context the one of this thread, for as long as this lives. What the objects that used it have left there,
/// such as the freeing of their signals' data, is done at the end; so they must go first.
class ThreadMainContext {
public:
    explicit ThreadMainContext(GMainContext* context) : context_{context} {
        g_main_context_push_thread_default(context_);
    }
    ThreadMainContext(const ThreadMainContext&) = delete;
    ThreadMainContext& operator=(const ThreadMainContext&) = delete;
    ~ThreadMainContext() {
        while (g_main_context_iteration(context_, FALSE) != FALSE) {
        }
        g_main_context_pop_thread_default(context_);
    }

private:
    GMainContext* context_;
};

}  // namespace Tarnwick_API::Platform
