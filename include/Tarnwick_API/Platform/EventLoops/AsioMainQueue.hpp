#pragma once

#include <Tarnwick_API/Platform/EventLoops/HostLoopTasks.hpp>

#include <chrono>
#include <memory>
#include <mutex>
#include <optional>
#include <utility>
#include <vector>

#include <asio/bind_executor.hpp>
#include <asio/error_code.hpp>
#include <asio/execution_context.hpp>
#include <asio/executor_work_guard.hpp>
#include <asio/io_context.hpp>
#include <asio/post.hpp>
#include <asio/steady_timer.hpp>
#include <asio/strand.hpp>

namespace Tarnwick_API::Platform {

/// The main queue of an application that runs an `asio::io_context`.
///
/// The main thread is the one that runs the context. Where several do, tasks still run one at a time, but on any of
/// them. The queue counts as work: `run` waits for answers until the context is stopped, or until the queue is let go
/// (`MainQueue::setMain(nullptr)`) and the last request that began with it has been answered.
/// Lifetime: tasks wait for a context that does not run yet, or no more. With the context they are destroyed unrun,
/// as are those handed over later. A queue destroyed before destroys them on the thread that destroys it, which may
/// be any, and in a task of its own.
/// Errors: an exception thrown by a task leaves `run`, which may be called again for the tasks behind it. A task that
/// runs the context once more, which Asio advises against, waits for other tasks in vain.
class AsioMainQueue final : public MainQueue {
public:
    /// Thread: any.
    explicit AsioMainQueue(asio::io_context& context) : tasks_{std::make_shared<Tasks>(context)} {
        asio::use_service<TasksOfContext>(context).add(tasks_);
    }
    ~AsioMainQueue() override { tasks_->close(); }
    AsioMainQueue(const AsioMainQueue&) = delete;
    AsioMainQueue& operator=(const AsioMainQueue&) = delete;

    void soon(Task task) override { tasks_->add(std::chrono::nanoseconds{0}, std::move(task)); }
    void after(std::chrono::nanoseconds delay, Task task) override { tasks_->add(delay, std::move(task)); }

    /// Whether this thread runs the context now. One that is to run it later can't be told, and is not refused a wait.
    [[nodiscard]] bool isOwnThread() const override { return tasks_->isLoopThread(); }

private:
    class Tasks final : public HostLoopTasks, public std::enable_shared_from_this<Tasks> {
    public:
        explicit Tasks(asio::io_context& context) : loop_{std::in_place, context} {}

        [[nodiscard]] bool isLoopThread() const {
            const auto lock = lockTasks();
            return loop_ && loop_->work.get_executor().running_in_this_thread();
        }

        [[nodiscard]] bool hasLeft() const {
            const auto lock = lockTasks();
            return !loop_;
        }

    private:
        /// What refers to the context, and so must go before it does.
        struct Loop {
            explicit Loop(asio::io_context& context)
                : work{context.get_executor()}, strand{context.get_executor()}, timer{context} {}

            asio::executor_work_guard<asio::io_context::executor_type> work;
            asio::strand<asio::io_context::executor_type> strand;
            asio::steady_timer timer;
        };

        /// Weak, so that what a stopped context still holds keeps no task alive.
        [[nodiscard]] auto comeForNext() {
            return [weak = weak_from_this()] {
                if (const auto tasks = weak.lock()) {
                    tasks->runNext();
                }
            };
        }

        void callLoop() override { asio::post(loop_->strand, comeForNext()); }

        void callLoopAfter(std::chrono::nanoseconds delay) override {
            if (delay == std::chrono::nanoseconds{0}) {
                callLoop();
                return;
            }
            loop_->timer.expires_after(delay);
            loop_->timer.async_wait(asio::bind_executor(
                loop_->strand, [come = comeForNext()](const asio::error_code& /*replaced*/) { come(); }));
        }

        void leaveLoop() override { loop_.reset(); }

        std::optional<Loop> loop_;
    };

    /// Learns that the context is destroyed.
    class TasksOfContext final : public asio::execution_context::service {
    public:
        using key_type = TasksOfContext;
        static inline asio::execution_context::id id;

        explicit TasksOfContext(asio::execution_context& context) : service{context} {}

        void add(std::shared_ptr<Tasks> tasks) {
            const std::lock_guard lock{mutex_};
            std::erase_if(tasks_, [](const auto& one) { return one->hasLeft(); });
            tasks_.push_back(std::move(tasks));
        }

    private:
        void shutdown() noexcept override {
            for (const auto& tasks : tasks_) {
                tasks->close();
            }
        }

        std::mutex mutex_;
        std::vector<std::shared_ptr<Tasks>> tasks_;
    };

    std::shared_ptr<Tasks> tasks_;
};

}  // namespace Tarnwick_API::Platform
