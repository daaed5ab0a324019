#pragma once

#include <Tarnwick_API/Platform/EventLoops/HostLoopTasks.hpp>

#include <chrono>
#include <memory>
#include <thread>
#include <utility>

#include <QBasicTimer>
#include <QCoreApplication>
#include <QEvent>
#include <QObject>

namespace Tarnwick_API::Platform {

/// The main queue of a Qt application: tasks come to the thread's event loop as events and timers do.
///
/// The main thread is the one that makes the queue, for most applications that of `QApplication`, before or after
/// that is made. Nested loops (a modal dialogue) run tasks too.
/// Lifetime: tasks wait for a loop that has not started yet, and for the next one when a loop or the application
/// object has ended. A queue destroyed before destroys them unrun, on the thread that destroys it, which may be any,
/// and in a task of its own.
/// Errors: a task must not throw. Qt does not support exceptions in event handlers: `std::terminate` is called with
/// it.
class QtMainQueue final : public MainQueue {
public:
    /// A queue whose tasks run on this thread.
    QtMainQueue() : tasks_{std::make_shared<Tasks>()}, receiver_{std::make_unique<Receiver>(tasks_)} {
        tasks_->setReceiver(*receiver_);
    }
    ~QtMainQueue() override {
        tasks_->close();
        // Only the thread that an object lives in may destroy it, and not while it handles an event.
        if (!isOwnThread() || tasks_->areRunning()) {
            receiver_.release()->deleteLater();
        }
    }
    QtMainQueue(const QtMainQueue&) = delete;
    QtMainQueue& operator=(const QtMainQueue&) = delete;

    void soon(Task task) override { tasks_->add(std::chrono::nanoseconds{0}, std::move(task)); }
    void after(std::chrono::nanoseconds delay, Task task) override { tasks_->add(delay, std::move(task)); }
    [[nodiscard]] bool isOwnThread() const override { return std::this_thread::get_id() == thread_; }

private:
    class Receiver;

    class Tasks final : public HostLoopTasks {
    public:
        void setReceiver(Receiver& receiver) { receiver_ = &receiver; }

        void runNextOfLoop() {
            ++running_;
            runNextOrTerminate();
            --running_;
        }

        /// Thread: the queue's own.
        [[nodiscard]] bool areRunning() const { return running_ != 0; }

    private:
        void callLoop() override;
        void callLoopAfter(std::chrono::nanoseconds delay) override;

        /// Used before `close` only, until which the queue keeps it.
        Receiver* receiver_ = nullptr;
        /// How many are, one within the other.
        int running_ = 0;
    };

    /// What the loop brings its events to.
    class Receiver final : public QObject {
    public:
        explicit Receiver(std::shared_ptr<Tasks> tasks) : tasks_{std::move(tasks)} {}

        void startTimer(std::chrono::nanoseconds delay) {
            const auto wait = std::chrono::ceil<std::chrono::milliseconds>(delay);
            timer_.start(static_cast<int>(wait.count()), Qt::PreciseTimer, this);
        }

        bool event(QEvent* received) override {
            if (received->type() != QEvent::User && received->type() != QEvent::Timer) {
                return QObject::event(received);
            }
            timer_.stop();
            // A task may destroy the queue, and a nested loop this object.
            const auto tasks = tasks_;
            tasks->runNextOfLoop();
            return true;
        }

    private:
        std::shared_ptr<Tasks> tasks_;
        QBasicTimer timer_;
    };

    std::thread::id thread_ = std::this_thread::get_id();
    std::shared_ptr<Tasks> tasks_;
    std::unique_ptr<Receiver> receiver_;
};

inline void QtMainQueue::Tasks::callLoop() {
    // Events may be posted by any thread, and before there is an application object. Qt takes the event over.
    QCoreApplication::postEvent(receiver_, std::make_unique<QEvent>(QEvent::User).release());
}

inline void QtMainQueue::Tasks::callLoopAfter(std::chrono::nanoseconds delay) {
    receiver_->startTimer(delay);
}

}  // namespace Tarnwick_API::Platform
