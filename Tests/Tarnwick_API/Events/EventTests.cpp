#include <Tarnwick_API/Events/Event.hpp>

#include <functional>
#include <memory>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace Tarnwick_API {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

struct Window {
    void show(const std::string& text) { shown.push_back(text); }
    std::vector<std::string> shown;
};

/// Handlers that note their names, and do more when they are told to.
class EventTest : public ::testing::Test {
protected:
    void TearDown() override {
        for (const auto& subscription : subscriptions) {
            subscription->dispose();
        }
        EXPECT_EQ(event->handlerCount(), 0);
    }

    std::size_t add(
        const std::string& name, std::function<void()> more = [] {}) {
        subscriptions.push_back(
            event->addHandler(target, [this, name, more = std::move(more)](Window&, const std::string& value) {
                calls.push_back(name + value);
                more();
            }));
        return subscriptions.size() - 1;
    }

    std::vector<std::string> raise(const std::string& value) {
        calls.clear();
        event->raise(value);
        return calls;
    }

    std::shared_ptr<Event<std::string>> event = Event<std::string>::create();
    std::shared_ptr<Window> target = std::make_shared<Window>();
    std::vector<std::shared_ptr<Disposable>> subscriptions;
    std::vector<std::string> calls;
};

TEST_F(EventTest, CallsHandlersInOrderOfTheirAddition) {
    EXPECT_THAT(raise("0"), IsEmpty());
    add("a");
    add("b");
    subscriptions.push_back(event->addHandler(target, &Window::show));
    add("c");
    add("d");
    EXPECT_THAT(raise("1"), ElementsAre("a1", "b1", "c1", "d1"));
    subscriptions[1]->dispose();
    subscriptions[1]->dispose();
    add("e");
    EXPECT_THAT(raise("2"), ElementsAre("a2", "c2", "d2", "e2"));
    EXPECT_THAT(target->shown, ElementsAre("1", "2"));
}

TEST_F(EventTest, RaisesToTheHandlersThereWereWhenItBegan) {
    bool first = true;
    add("self", [&] { subscriptions[0]->dispose(); });
    add("other", [&] { subscriptions[2]->dispose(); });
    add("disposed");
    add("adding", [&] {
        if (std::exchange(first, false)) {
            add("added");
        }
    });
    EXPECT_THAT(raise("1"), ElementsAre("self1", "other1", "disposed1", "adding1"));
    EXPECT_THAT(raise("2"), ElementsAre("other2", "adding2", "added2"));
}

TEST_F(EventTest, RaisesWithinARaiseSeeTheChanges) {
    bool first = true;
    add("outer", [&] {
        if (std::exchange(first, false)) {
            subscriptions[1]->dispose();
            add("added");
            event->raise("2");
        }
    });
    add("disposed");
    EXPECT_THAT(raise("1"), ElementsAre("outer1", "outer2", "added2", "disposed1"));
}

TEST_F(EventTest, RaisesOneValueToAllWhateverBecomesOfItsSource) {
    auto source = std::make_unique<std::string>("1");
    add("assigns", [&] { *source = "2"; });
    add("destroys", [&] { source = nullptr; });
    add("last");
    EXPECT_THAT(raise(*source), ElementsAre("assigns1", "destroys1", "last1"));

    auto number = std::make_unique<int>(3);
    const auto event = Event<std::unique_ptr<int>>::create();
    const auto sums = [&](int& sum, const std::unique_ptr<int>& value) {
        number = std::make_unique<int>(4);
        sum += *value;
    };
    const auto sum = std::make_shared<int>(0);
    subscriptions.push_back(event->addHandler(sum, sums));
    subscriptions.push_back(event->addHandler(sum, sums));
    event->raise(std::move(number));
    EXPECT_EQ(*sum, 6) << "a value that can't be copied stays where it was moved";
}

TEST_F(EventTest, SkipsHandlersWhoseTargetHasGoneButKeepsThem) {
    add("drops", [&] { target = nullptr; });
    add("skipped");
    EXPECT_THAT(raise("1"), ElementsAre("drops1")) << "the target lived until its first handler had returned";
    EXPECT_THAT(raise("2"), IsEmpty());
    EXPECT_EQ(event->handlerCount(), 2);
}

TEST_F(EventTest, AnExceptionOfAHandlerLeavesTheEventWhole) {
    add("a");
    const auto throwing = add("throws", [] { throw std::runtime_error{"of the host"}; });
    add("b");
    EXPECT_THROW(static_cast<void>(raise("1")), std::runtime_error);
    EXPECT_THAT(calls, ElementsAre("a1", "throws1"));
    subscriptions[throwing]->dispose();
    EXPECT_THAT(raise("2"), ElementsAre("a2", "b2"));
}

TEST(EventLifetime, IsThatOfItsEntriesAndNoLonger) {
    const auto target = std::make_shared<int>(0);
    const auto add = [](int& sum, int value) { sum += value; };
    auto event = Event<int>::create();
    const std::weak_ptr<Event<int>> watch = event;
    auto first = event->addHandler(target, add);
    auto second = event->addHandler(target, add);
    event = nullptr;
    ASSERT_FALSE(watch.expired());
    watch.lock()->raise(2);
    EXPECT_EQ(*target, 4);
    first->dispose();
    first = nullptr;
    EXPECT_FALSE(watch.expired());
    second->dispose();
    second = nullptr;
    EXPECT_TRUE(watch.expired());
}

TEST(EventLifetime, MayEndWithinItsOwnRaise) {
    const auto target = std::make_shared<int>(0);
    auto event = Event<int>::create();
    const std::weak_ptr<Event<int>> watch = event;
    std::vector<std::shared_ptr<Disposable>> subscriptions;
    subscriptions.reserve(2);
    for (int count = 0; count < 2; ++count) {
        subscriptions.push_back(event->addHandler(target, [&](int& calls, int) {
            ++calls;
            for (const auto& subscription : std::exchange(subscriptions, {})) {
                subscription->dispose();
            }
            event = nullptr;
        }));
    }
    event->raise(1);
    EXPECT_EQ(*target, 2);
    EXPECT_TRUE(watch.expired());
}

TEST(EventLifetime, ADisposedHandlerMayRaiseAndDisposeInItsDestructor) {
    struct Last {
        std::shared_ptr<Disposable> other;
        std::shared_ptr<Event<int>> event;
        ~Last() {
            event->raise(7);
            other->dispose();
        }
    };
    const auto target = std::make_shared<std::vector<int>>();
    auto event = Event<int>::create();
    const auto note = [](std::vector<int>& values, int value) { values.push_back(value); };
    auto other = event->addHandler(target, note);
    auto last = std::make_shared<Last>();
    last->other = other;
    last->event = event;
    auto first = event->addHandler(target, [last = std::move(last)](std::vector<int>&, int) { FAIL(); });
    const auto behind = event->addHandler(target, note);
    auto* const disposable = first.get();
    first = nullptr;
    disposable->dispose();
    EXPECT_THAT(*target, ElementsAre(7, 7));
    EXPECT_EQ(event->handlerCount(), 1) << "the one behind";
    behind->dispose();
}

}  // namespace
}  // namespace Tarnwick_API
