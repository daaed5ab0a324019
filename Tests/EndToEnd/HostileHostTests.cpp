#include "ServiceFixture.hpp"

#include <Platform/Logging/DebugChannel.hpp>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <functional>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>
#include <thread>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

namespace Tarnwick_API {
namespace {

using namespace Platform;

/// What code of the host's does where the library calls it.
using Deed = std::function<void()>;

class HostileKeychain final : public KeychainStore {
public:
    explicit HostileKeychain(Deed deed) : deed_{std::move(deed)} {}
    KeychainAnswer copyMatching(const KeychainQuery& query, const KeychainReturn& wanted) override {
        return deed_(), store_->copyMatching(query, wanted);
    }
    KeychainStatus update(const KeychainQuery& target, const KeychainChanges& changes) override {
        return deed_(), store_->update(target, changes);
    }
    KeychainStatus add(const KeychainItem& item) override { return deed_(), store_->add(item); }
    KeychainStatus remove(const KeychainQuery& target) override { return deed_(), store_->remove(target); }

private:
    Deed deed_;
    std::shared_ptr<KeychainStore> store_ = makeMemoryKeychainStore();
};

class HostileCache final : public UrlCache {
public:
    explicit HostileCache(Deed deed) : UrlCache{1 << 20, 0, std::nullopt}, deed_{std::move(deed)} {}
    std::shared_ptr<const CachedUrlResponse> cachedResponse(const HttpRequest& request) override {
        return deed_(), UrlCache::cachedResponse(request);
    }
    void storeCachedResponse(const std::shared_ptr<const CachedUrlResponse>& response,
                             const HttpRequest& request) override {
        return deed_(), UrlCache::storeCachedResponse(response, request);
    }
    void removeCachedResponse(const HttpRequest& request) override {
        return deed_(), UrlCache::removeCachedResponse(request);
    }

private:
    Deed deed_;
};

class HostileSession final : public HttpSession {
public:
    HostileSession(Deed before, Deed after) : before_{std::move(before)}, after_{std::move(after)} {}
    [[nodiscard]] const HttpHeaders& defaultHeaders() const override { return session_->defaultHeaders(); }
    [[nodiscard]] bool isReachable(std::string_view url) const override {
        return before_(), session_->isReachable(url);
    }
    void send(std::shared_ptr<const HttpRequest> request, Completion onCompletion) override {
        return session_->send(std::move(request), std::move(onCompletion)), after_();
    }

private:
    Deed before_;
    Deed after_;
    std::shared_ptr<HttpSession> session_ = ApiVersion1::sessionManager();
};

class HostileQueue final : public MainQueue {
public:
    HostileQueue(std::shared_ptr<MainQueue> queue, Deed soon, Deed after)
        : queue_{std::move(queue)}, soon_{std::move(soon)}, after_{std::move(after)} {}
    void soon(Task task) override { return soon_(), queue_->soon(std::move(task)); }
    void after(std::chrono::nanoseconds delay, Task task) override {
        return after_(), queue_->after(delay, std::move(task));
    }

private:
    std::shared_ptr<MainQueue> queue_;
    Deed soon_;
    Deed after_;
};

class HostileHost : public Testing::ServiceFixture {
protected:
    [[nodiscard]] bool isMainThread() const { return std::this_thread::get_id() == mainThread; }

    auto counted() {
        return [this, &times = *times.emplace_back(std::make_unique<int>(0))](const auto&... /*outcome*/) {
            ++times;
            inCompletion();
        };
    }

    void callEverything() {
        api->createUser("eve", "pw", counted());
        api->login("ada", "pw", false, counted());
        api->restoreSession(counted());
        api->getCurrentUser(counted());
        api->setToken("t", "s", counted());
        api->getStatus(counted());
        api->getAuthToken(counted());
        api->getDevices(counted());
        api->updateUser(UserField::email, "a@b", counted());
        api->getCountries(ServerProfile::general, {}, {}, counted());
        api->getServers("DE", {}, {}, counted());
        api->getServer(1000, counted());
        api->getCandidateServers({}, ServerProfile::general, {}, counted());
        api->getDefaultFavorites(counted());
        static_cast<void>(api->forgetSession());
        api->logout(counted());
    }

    /// What comes out of `attempt`, an operation's call or the queue's run, is the application's to catch.
    void guarded(const Deed& attempt) {
        try {
            attempt();
        } catch (...) {
            ++escaped;
        }
    }

    void step(const std::function<void(TarnwickApi&)>& start) {
        api = api ? api : makeFacade();
        guarded([&] { start(*api); });
        const auto hasEnded = [&] { return std::ranges::none_of(times, [](const auto& each) { return *each == 0; }); };
        while (!hasEnded() && !HasFatalFailure()) {
            guarded([&] { runUntil(hasEnded); });
        }
    }

    /// A user's session, in which a transfer fails.
    void live() {
        service.faults().add({.cut = TarnwickService::Cut::beforeAnswer});
        step([&](auto& facade) { facade.login("ada", "pw", false, counted()); });
        step([&](auto& facade) { facade.getStatus(counted()); });
        step([&](auto& facade) { facade.getCountries(ServerProfile::general, {}, {}, counted()); });
        step([&](auto& facade) { facade.logout(counted()); });
    }

    Deed inCompletion = [] {};
    int escaped = 0;
    /// How often each completion was called.
    std::vector<std::unique_ptr<int>> times;
    const std::thread::id mainThread = std::this_thread::get_id();
};

TEST_F(HostileHost, GetsEachCompletionOnceWhereverItDoesWhatever) {
    Deed kind;
    std::atomic<int> done = 0;
    const Deed deed = [&] { done++ < 2 ? kind() : void(); };
    const auto observe = [&](const auto& /*told*/) { deed(); };
    struct Place {
        const char* name;
        std::function<void()> install;
        bool letsExceptionsOut = false;
    };
    auto& center = NotificationCenter::defaultCenter();
    NotificationCenter::Observation logouts;
    AttemptObservers::Observation attempts;
    const Place places[] = {
        {"completion", [&] { inCompletion = deed; }, true},
        {"observer of attempts", [&] { attempts = api->observeAttempts(observe); }, true},
        {"observer of DidLogout", [&] { logouts = center.addObserver("DidLogout", observe); }, true},
        {"log sink", [&] { Logging::setSink(observe); }},
        {"keychain", [&] { Keychain::setStore(std::make_shared<HostileKeychain>(deed)); }},
        {"cache", [&] { UrlCache::setShared(std::make_shared<HostileCache>(deed)); }},
        {"preferences", [&] { Preferences::setLookup([&](auto /*key*/) { return deed(), std::nullopt; }); }},
        {"locale", [&] { Locale::setIdentifierLookup([&] { return deed(), "de_DE"; }); }},
        {"host name", [&] { HostName::setLookup([&] { return deed(), "desk"; }); }},
        {"clock",
         [&] {
             UrlCache::setShared(std::make_shared<CustomUrlCache>(1 << 20, 0, std::nullopt));
             WallClock::setSource([&] { return deed(), WallTime{}; });
         }},
        {"session", [&] { ApiVersion1::setSessionManager(std::make_shared<HostileSession>(deed, [] {})); }},
        {"session that has sent",
         [&] { ApiVersion1::setSessionManager(std::make_shared<HostileSession>([] {}, deed)); }},
        {"main queue",
         [&] {
             MainQueue::setMain(std::make_shared<HostileQueue>(
                 queue, [] {}, deed));
         },
         true},
    };
    const std::pair<std::string_view, Deed> kinds[] = {
        {"throws an exception", [] { throw std::runtime_error{"of the host"}; }},
        {"throws a number", [] { throw 1; }},
        {"calls everything",
         [this] {
             Keychain::setPassword("other", "a", "b");
             ApiVersion1::sessionManager()->networkChanged();
             DebugChannel::write("line", "function");
             if (isMainThread() && api) {
                 callEverything();
             }
         }},
        {"waits for another thread that calls",
         [] {
             std::thread{[] {
                 DebugChannel::write("line", "function");
                 static_cast<void>(Keychain::getLoginData("end-to-end"));
             }}.join();
         }},
        {"runs a loop of its own", [this] { isMainThread() ? queue->runAll() : void(); }},
        {"drops everything",
         [this] {
             if (isMainThread() && api) {
                 api->setVersion(ApiVersion::v1);
                 api.reset();
             }
             use(sessionConfiguration());
             Keychain::setStore(makeMemoryKeychainStore());
             Logging::setSink(nullptr);
             UrlCache::setShared(nullptr);
         }},
    };
    for (const auto& place : places) {
        for (const auto& [name, does] : kinds) {
            SCOPED_TRACE(std::string{place.name} + " " + std::string{name});
            const ScopedProcessValues values;
            service.reset();
            createAccount("ada", "pw");
            api = makeFacade();
            kind = does;
            done = 0;
            escaped = 0;
            times.clear();
            place.install();
            live();
            EXPECT_GT(done, 0) << "never called";
            EXPECT_EQ(escaped > 0, name.starts_with("throws") && place.letsExceptionsOut);
            EXPECT_TRUE(std::ranges::all_of(times, [](const auto& each) { return *each == 1; }));
            inCompletion = [] {};
            logouts.remove();
            attempts.remove();
        }
    }
}

TEST_F(HostileHost, LosesWithItsQueueAnAnswerThatThatDoesNotTake) {
    std::atomic<bool> throws = true;
    const Deed deed = [&] { throws.exchange(false) ? throw std::runtime_error{"of the host"} : void(); };
    MainQueue::setMain(std::make_shared<HostileQueue>(queue, deed, [] {}));
    std::atomic<bool> isTold = false;
    Logging::setSink([&](const auto& entry) { isTold = isTold || entry.message.ends_with("answer: of the host"); });
    api->getStatus([](auto...) { FAIL() << "of an answer that was lost"; });
    while (!isTold) {
        std::this_thread::yield();
    }
    EXPECT_TRUE(getStatus().result);
}

}  // namespace
}  // namespace Tarnwick_API
