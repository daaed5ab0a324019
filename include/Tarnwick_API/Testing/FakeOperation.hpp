#pragma once

#include <Tarnwick_API/Calls/ApiError.hpp>
#include <Tarnwick_API/Calls/Completion.hpp>
#include <Tarnwick_API/Operations/Outcome.hpp>
#include <Tarnwick_API/Operations/StoppableScope.hpp>
#include <Tarnwick_API/Platform/Concurrency/StopToken.hpp>
#include <Tarnwick_API/Testing/PendingAnswer.hpp>

#include <cstddef>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <type_traits>
#include <utility>
#include <variant>
#include <vector>

namespace Tarnwick_API::Testing {

/// One operation of a `FakeBackend`: what it answers, and with what it was called.
///
///     backend->getServers.answer({server});                        // every call from now on
///     backend->getServers.fail(ResponseError::notReachable());
///     backend->getServers.answerNothing();                         // neither result nor error
///     backend->getServers.hold();                                  // no answer before release()
///     EXPECT_EQ(backend->getServers.calls().at(0).countryCode, "DE");
///
/// An operation without a result succeeds until it is told otherwise. Any other has to be told what to answer: called
/// before, it throws std::logic_error, which names it.
///
/// Answers come as the service's do: on the main queue that was installed at the call, never inside the call, and to an
/// operation that was stopped, or whose time is up, as `CancellationError`.
/// Thread: the main one, on which the test runs the queue.
template <typename Arguments, typename Result>
class FakeOperation {
    using Value = std::conditional_t<std::is_void_v<Result>, std::monostate, Result>;

public:
    /// The arguments by their names, and the token that stops the operation.
    struct Call : Arguments {
        Platform::StopToken stop;
    };
    using Answer = std::function<Outcome<Result>(const Call&)>;

    /// `name`: for the words about a missing answer.
    explicit FakeOperation(const char* name) : name_{name} {
        if constexpr (std::is_void_v<Result>) {
            answer();
        }
    }

    /// Success, for every call from now on.
    void answer() requires std::is_void_v<Result> {
        answerWith([](const Call&) { return Outcome<Result>{std::monostate{}}; });
    }
    /// This result, for every call from now on.
    void answer(Value result) requires(!std::is_void_v<Result>) {
        answerWith([outcome = Outcome<Result>{std::move(result)}](const Call&) { return outcome; });
    }
    /// Neither result nor error, for every call from now on: the service answered, but without usable data.
    void answerNothing() requires(!std::is_void_v<Result>) {
        answerWith([](const Call&) { return Outcome<Result>{Failure{std::nullopt}}; });
    }
    /// This error, for every call from now on.
    void fail(ApiError error) {
        answerWith([failure = Failure{std::move(error)}](const Call&) { return Outcome<Result>{failure}; });
    }
    /// What `answer` says of each call from now on: by its arguments, or one thing after another. Asked once for a
    /// call: when it comes or, if it is held, when it is let go.
    void answerWith(Answer answer) { answer_ = std::move(answer); }

    /// Lets the calls from now on wait for `release`.
    void hold() { isHolding_ = true; }
    /// Answers what is held, in the order of the calls, and holds no more.
    void release() {
        while (!held_.empty()) {
            release(held_.begin()->first);
        }
        isHolding_ = false;
    }
    /// Answers one held call, by its place in `calls()`, and goes on holding the others: answers may overtake one
    /// another. Throws std::out_of_range when that call isn't held.
    void release(std::size_t call) {
        deliver(call, held_.at(call));
        held_.erase(call);
    }
    /// Gives up what is held: those completions are never called. `Operation`s end without a value.
    void drop() { held_.clear(); }

    /// Since the backend was made, oldest first.
    [[nodiscard]] const std::vector<Call>& calls() const noexcept { return calls_; }

    /// What the backend does when it is called.
    void operator()(Arguments arguments, Completion<Result> onCompletion) {
        const auto call = calls_.size();
        calls_.push_back({std::move(arguments), StoppableScope::take()});
        const auto pending = Pending::make(std::move(onCompletion), calls_.back().stop);
        if (isHolding_) {
            held_.emplace(call, pending);
        } else {
            deliver(call, pending);
        }
    }

private:
    using Pending = Detail::PendingAnswer<Result>;

    void deliver(std::size_t call, const std::shared_ptr<Pending>& pending) {
        if (pending->hasEnded()) {
            return;
        }
        if (!answer_) {
            throw std::logic_error{std::string{"The fake backend's "} + name_ +
                                   " was called before it was told what to answer."};
        }
        // A copy, as the function may make the next call.
        Pending::endSoon(pending, answer_(Call{calls_[call]}));
    }

    const char* name_;
    Answer answer_;
    bool isHolding_ = false;
    std::vector<Call> calls_;
    std::map<std::size_t, std::shared_ptr<Pending>> held_;
};

}  // namespace Tarnwick_API::Testing
