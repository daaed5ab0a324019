#include <Tarnwick_API/Platform/Application/NotificationCenter.hpp>

#include <atomic>
#include <cstddef>
#include <memory>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace Tarnwick_API::Platform {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class NotificationCenterTest : public testing::Test {
protected:
    /// An observer that records its label.
    [[nodiscard]] NotificationCenter::Observation observe(const std::string& label, std::string_view name,
                                                          const std::shared_ptr<const void>& object = nullptr) {
        return center_.addObserver(
            name, [this, label](const Notification&) { calls_.push_back(label); }, object);
    }

    std::vector<std::string> callsOf(const Notification& notification) {
        calls_.clear();
        center_.post(notification);
        return calls_;
    }

    NotificationCenter center_;
    std::vector<std::string> calls_;
};

TEST_F(NotificationCenterTest, CallsMatchingObserversInOrderOfRegistration) {
    const auto sender = std::make_shared<int>(1);
    const auto other = std::make_shared<int>(1);
    const auto a = observe("named", "DidLogout");
    const auto b = observe("any", "");
    const auto c = observe("from sender", "DidLogout", sender);
    const auto d = observe("any from sender", "", sender);
    EXPECT_THAT(callsOf({"DidLogout", sender}), ElementsAre("named", "any", "from sender", "any from sender"));
    EXPECT_THAT(callsOf({"DidLogout", other}), ElementsAre("named", "any"));
    EXPECT_THAT(callsOf({"DidLogout", nullptr}), ElementsAre("named", "any"));
    EXPECT_THAT(callsOf({"DidLogin", sender}), ElementsAre("any", "any from sender"));
    EXPECT_THAT(callsOf({"didlogout", nullptr}), ElementsAre("any"));
}

TEST_F(NotificationCenterTest, DoesNotKeepTheSenderNorTakeAnotherAtItsAddressForIt) {
    alignas(int) std::byte place[sizeof(int)];
    const auto objectAtPlace = [&place] { return std::shared_ptr<int>(new (place) int{0}, [](int*) {}); };
    auto sender = objectAtPlace();
    const std::weak_ptr<int> watch = sender;
    const auto observation = observe("from sender", "", sender);
    EXPECT_THAT(callsOf({"x", sender}), ElementsAre("from sender"));
    sender.reset();
    EXPECT_TRUE(watch.expired());
    EXPECT_THAT(callsOf({"x", objectAtPlace()}), IsEmpty());
}

TEST_F(NotificationCenterTest, EndsRegistrationWithTheObservation) {
    auto a = observe("a", "x");
    {
        const auto gone = observe("gone", "x");
        auto moved = std::move(a);
        EXPECT_THAT(callsOf({"x", nullptr}), ElementsAre("a", "gone"));
        a = std::move(moved);
    }
    EXPECT_THAT(callsOf({"x", nullptr}), ElementsAre("a"));
    a = observe("replacement", "x");
    EXPECT_THAT(callsOf({"x", nullptr}), ElementsAre("replacement"));
    const auto owned = std::make_shared<int>();
    a = center_.addObserver("x", [owned](const Notification&) {});
    a.remove();
    a.remove();
    EXPECT_EQ(owned.use_count(), 1);
    EXPECT_THAT(callsOf({"x", nullptr}), IsEmpty());
    const auto nothing = center_.addObserver("x", nullptr);
    EXPECT_THAT(callsOf({"x", nullptr}), IsEmpty());
}

TEST_F(NotificationCenterTest, ObserversMayAddRemoveAndPostMeanwhile) {
    NotificationCenter::Observation self;
    NotificationCenter::Observation later;
    NotificationCenter::Observation added;
    self = center_.addObserver("x", [&, owned = std::string(100, 's')](const Notification&) {
        self.remove();
        later.remove();
        added = observe("added", "x");
        center_.post({"y", nullptr});
        calls_.push_back(owned.substr(0, 4));
    });
    const auto inner = observe("inner", "y");
    later = observe("later", "x");
    const auto last = observe("last", "x");
    EXPECT_THAT(callsOf({"x", nullptr}), ElementsAre("inner", "ssss", "last"));
    EXPECT_THAT(callsOf({"x", nullptr}), ElementsAre("last", "added"));
}

TEST_F(NotificationCenterTest, AnExceptionEndsThePostAndLeavesTheCenterUsable) {
    auto failing = center_.addObserver("x", [](const Notification&) { throw std::runtime_error{"observer"}; });
    const auto after = observe("after", "x");
    EXPECT_THROW(center_.post({"x", nullptr}), std::runtime_error);
    EXPECT_THAT(calls_, IsEmpty());
    failing.remove();
    EXPECT_THAT(callsOf({"x", nullptr}), ElementsAre("after"));
}

TEST(NotificationCenter, MayGoBeforeItsObservationsAndWhilePosting) {
    auto center = std::make_unique<NotificationCenter>();
    int calls = 0;
    auto observation = center->addObserver("x", [&](const Notification&) {
        ++calls;
        center.reset();
    });
    center->post({"x", nullptr});
    EXPECT_EQ(calls, 1);
    observation.remove();
}

TEST(NotificationCenter, TakesCallsFromManyThreads) {
    auto& center = NotificationCenter::defaultCenter();
    std::atomic<int> calls = 0;
    {
        const auto lasting = center.addObserver("x", [&](const Notification&) { ++calls; });
        std::vector<std::jthread> threads;
        threads.reserve(4);
        for (int thread = 0; thread < 4; ++thread) {
            threads.emplace_back([&center] {
                for (int count = 0; count < 250; ++count) {
                    const auto passing = center.addObserver("y", [](const Notification&) {});
                    center.post({"x", nullptr});
                    center.post({"y", nullptr});
                }
            });
        }
    }
    EXPECT_EQ(calls, 1000);
}

}  // namespace
}  // namespace Tarnwick_API::Platform
