#include <Platform/Keychain/SecretService/SecretServiceWorker.hpp>

#include <Platform/Concurrency/DetachedThread.hpp>
#include <Platform/Concurrency/ProcessFork.hpp>
#include <Platform/Keychain/SecretService/ThreadMainContext.hpp>

#include <algorithm>
#include <condition_variable>
#include <deque>
#include <mutex>
#include <utility>

namespace Tarnwick_API::Platform {

namespace {

constinit ForkLosses losses;

struct Job {
    SecretServiceWorker::Work work;
    const std::shared_ptr<CallToken> token = std::make_shared<CallToken>();
    bool isDone = false;
};

}  // namespace

class SecretServiceWorker::State {
public:
    End run(const std::shared_ptr<State>& self, Work work, std::chrono::milliseconds timeout) {
        if (isLost()) {
            return End::lost;
        }
        const auto deadline = std::chrono::steady_clock::now() + timeout;
        const auto job = std::make_shared<Job>();
        job->work = std::move(work);
        std::unique_lock lock{mutex_};
        if ((running_ && running_->token->isGivenUp()) || !start(self)) {
            return End::refused;
        }
        waiting_.push_back(job);
        g_main_context_wakeup(context_.get());
        if (changed_.wait_until(lock, deadline, [&] { return job->isDone; })) {
            return End::done;
        }
        job->token->giveUp();
        return std::erase(waiting_, job) == 0 ? End::givenUp : End::refused;
    }

    void close() {
        if (isLost()) {
            return;
        }
        std::shared_ptr<Job> running;
        bool isStarted = false;
        {
            const std::lock_guard lock{mutex_};
            isClosing_ = true;
            running = running_;
            isStarted = isStarted_;
        }
        if (running) {
            running->token->cancel();
        }
        if (isStarted) {
            g_main_context_wakeup(context_.get());
        }
    }

private:
    bool start(const std::shared_ptr<State>& self) {
        if (!isStarted_) {
            context_.reset(g_main_context_new());
            isStarted_ = startThread([self] { self->loop(); });
        }
        return isStarted_;
    }

    void loop() {
        const ThreadMainContext ownContext{context_.get()};
        SecretServiceConnection connection{SecretServiceConnection::Prompts::never};
        while (const auto job = next()) {
            connection.beginCall(job->token);
            job->work(connection);
            job->work = nullptr;
            const std::lock_guard lock{mutex_};
            job->isDone = true;
            running_.reset();
            changed_.notify_all();
        }
    }

    /// Waits by running the context, as the bus's signals would pile up in it otherwise.
    std::shared_ptr<Job> next() {
        while (true) {
            {
                const std::lock_guard lock{mutex_};
                if (isClosing_) {
                    return nullptr;
                }
                if (!waiting_.empty()) {
                    running_ = waiting_.front();
                    waiting_.pop_front();
                    return running_;
                }
            }
            g_main_context_iteration(context_.get(), TRUE);
        }
    }

    /// None before the start, as GLib has locks of its own that a child of `fork` may find held.
    GLibOwner<GMainContext> context_;
    std::mutex mutex_;
    std::condition_variable changed_;
    std::deque<std::shared_ptr<Job>> waiting_;
    std::shared_ptr<Job> running_;
    bool isStarted_ = false;
    bool isClosing_ = false;
};

SecretServiceWorker::SecretServiceWorker(std::chrono::milliseconds timeout)
    : timeout_{timeout}, state_{std::make_shared<State>()} {
}

SecretServiceWorker::~SecretServiceWorker() {
    state_->close();
}

SecretServiceWorker::End SecretServiceWorker::run(Work work) {
    return state_->run(state_, std::move(work), timeout_);
}

bool SecretServiceWorker::isLost() noexcept {
    return losses.isLost();
}

bool SecretServiceWorker::startThread(std::function<void()> body) {
    losses.noteStart();
    return startDetachedThread(std::move(body));
}

}  // namespace Tarnwick_API::Platform
