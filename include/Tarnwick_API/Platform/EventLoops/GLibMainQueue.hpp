#pragma once

#include <Tarnwick_API/Platform/EventLoops/HostLoopTasks.hpp>

#include <chrono>
#include <memory>
#include <thread>
#include <utility>

#include <glib.h>

namespace Tarnwick_API::Platform {

/// The main queue of an application that runs a `GMainLoop` (GTK, `GApplication`): its tasks are a source of a
/// `GMainContext`, of the default priority.
///
/// The main thread is the one that iterates the context. A nested loop on the same context runs tasks too.
/// Lifetime: the queue keeps the context. Tasks wait for a loop that has not started yet, and for the next one when a
/// loop has ended. A queue destroyed before destroys them unrun, on the thread that destroys it, which may be any,
/// and in a task of its own.
/// Errors: a task must not throw. GLib's C functions can't be left by an exception: `std::terminate` is called with
/// it.
class GLibMainQueue final : public MainQueue {
public:
    /// A queue on `context`, by default the process's own. Thread: any.
    explicit GLibMainQueue(GMainContext* context = nullptr)
        : context_{g_main_context_ref(context != nullptr ? context : g_main_context_default())},
          source_{g_source_new(&functions, sizeof(GSource))},
          tasks_{std::make_shared<Tasks>(*source_)} {
        auto kept = std::make_unique<std::shared_ptr<Tasks>>(tasks_);
        g_source_set_callback(
            source_.get(), nullptr, kept.release(), +[](gpointer tasks) {
                const std::unique_ptr<std::shared_ptr<Tasks>> owned{static_cast<std::shared_ptr<Tasks>*>(tasks)};
            });
        g_source_set_can_recurse(source_.get(), TRUE);
        g_source_set_name(source_.get(), "Tarnwick_API");
        g_source_attach(source_.get(), context_.get());
    }
    ~GLibMainQueue() override { tasks_->close(); }
    GLibMainQueue(const GLibMainQueue&) = delete;
    GLibMainQueue& operator=(const GLibMainQueue&) = delete;

    void soon(Task task) override { tasks_->add(std::chrono::nanoseconds{0}, std::move(task)); }
    void after(std::chrono::nanoseconds delay, Task task) override { tasks_->add(delay, std::move(task)); }

    /// Whether this thread iterates the context, or made the queue and the context is the process's own. The thread
    /// that is to iterate another context later can't be told, and is not refused a wait.
    [[nodiscard]] bool isOwnThread() const override {
        return g_main_context_is_owner(context_.get()) != FALSE ||
               (context_.get() == g_main_context_default() && std::this_thread::get_id() == maker_);
    }

private:
    class Tasks final : public HostLoopTasks {
    public:
        explicit Tasks(GSource& source) : source_{source} {}

    private:
        void callLoop() override { g_source_set_ready_time(&source_, 0); }
        void callLoopAfter(std::chrono::nanoseconds delay) override {
            const auto wait = std::chrono::ceil<std::chrono::microseconds>(delay);
            g_source_set_ready_time(&source_, g_get_monotonic_time() + wait.count());
        }

        /// Used before `close` only, until which the queue keeps it.
        GSource& source_;
    };

    static gboolean dispatch(GSource* source, GSourceFunc /*callback*/, gpointer tasks) {
        // Before the tasks set the next time.
        g_source_set_ready_time(source, -1);
        const auto kept = *static_cast<std::shared_ptr<Tasks>*>(tasks);
        kept->runNextOrTerminate();
        return G_SOURCE_CONTINUE;
    }

    struct LeaveContext {
        void operator()(GMainContext* context) const { g_main_context_unref(context); }
    };
    struct DestroySource {
        void operator()(GSource* source) const {
            g_source_destroy(source);
            g_source_unref(source);
        }
    };

    /// GLib wants it mutable, and only reads it.
    static inline GSourceFuncs functions{nullptr, nullptr, &dispatch, nullptr, nullptr, nullptr};

    std::thread::id maker_ = std::this_thread::get_id();
    std::unique_ptr<GMainContext, LeaveContext> context_;
    std::unique_ptr<GSource, DestroySource> source_;
    std::shared_ptr<Tasks> tasks_;
};

}  // namespace Tarnwick_API::Platform
