// What the library does to the process that it is part of: its descriptors, its signals, its children.

#include <Tarnwick_API/Platform/Cache/UrlCache.hpp>
#include <Tarnwick_API/Platform/Keychain/KeychainStore.hpp>
#include <Tarnwick_API/Platform/Logging/Logging.hpp>

#include "ChildProcess.hpp"
#include "PrivateKeyring.hpp"
#include "SessionFixture.hpp"

#include <csignal>
#include <fstream>

#include <gmock/gmock.h>

namespace {

using namespace Tarnwick_API::Platform;

int statusOfChild = -1;
// Runs after the exit handlers of the library, and before a leak checker that would miss the threads a child lacks.
[[maybe_unused]] const int lastHandler = std::atexit([] {
    if (statusOfChild >= 0) {
        ::_exit(statusOfChild);
    }
});

class HostProcess : public SessionFixture {
protected:
    HostProcess() {
        keyring.startKeyring();
        server.answerAlways(okAnswer("x", "Cache-Control: no-cache\r\nETag: \"x\"\r\n"));
    }

    HttpSessionConfiguration cachingConfiguration() const {
        auto configuration = plainConfiguration();
        configuration.cache =
            std::make_shared<UrlCache>(std::size_t{0}, std::size_t{1'000'000}, keyring.folder() / "cache");
        return configuration;
    }

    void useEverything() {
        for (const auto& session : {plain, caching}) {
            EXPECT_EQ(errorName(exchange(*session, request(server.url()))), "none");
            EXPECT_EQ(errorName(exchange(*session, request(server.url()))), "none");
        }
        for (const auto& store : {inKeyring, inFile}) {
            EXPECT_NE(store->remove({}), KeychainStatus::notAvailable);
            EXPECT_EQ(store->add({"s", "a", "secret", "", {}, ""}), KeychainStatus::success);
        }
    }

    /// Whether nothing fails in a child that runs `work` and exits as programs do.
    template <class Work>
    static bool succeedsInAChild(Work work) {
        return ChildProcess{[&] {
                   ::alarm(60);
                   work();
                   statusOfChild = HasFailure() ? EXIT_FAILURE : EXIT_SUCCESS;
                   std::exit(statusOfChild);
               }}.wait() == 0;
    }

    /// How many threads take signals.
    static std::size_t interruptibleThreads() {
        std::size_t count = 0;
        for (const auto& thread : std::filesystem::directory_iterator{"/proc/self/task"}) {
            std::ifstream status{thread.path() / "status"};
            std::string word;
            while (status >> word && word != "SigBlk:") {
            }
            unsigned long blocked = 0;
            status >> std::hex >> blocked;
            count += (blocked >> (SIGPIPE - 1) & blocked >> (SIGTERM - 1) & 1U) == 0 ? 1 : 0;
        }
        return count;
    }

    /// Whether all threads but this one come to sleep, and stay so through a hundred looks.
    static bool othersComeToRest() {
        const auto own = std::filesystem::read_symlink("/proc/thread-self").filename();
        int quietLooks = 0;
        for (int look = 0; look < 100'000 && quietLooks < 100; ++look) {
            ++quietLooks;
            for (const auto& thread : std::filesystem::directory_iterator{"/proc/self/task"}) {
                std::string status;
                std::getline(std::ifstream{thread.path() / "stat"}, status);
                const bool sleeps = status.find(") S ") != std::string::npos;
                quietLooks = sleeps || thread.path().filename() == own ? quietLooks : 0;
            }
        }
        return quietLooks == 100;
    }

    PrivateKeyring keyring;
    ScriptedServer server;
    const std::shared_ptr<HttpSession> plain = makeHttpSession(plainConfiguration());
    std::shared_ptr<HttpSession> caching = makeHttpSession(cachingConfiguration());
    const std::shared_ptr<KeychainStore> inKeyring = makeSecretServiceKeychainStore(std::chrono::minutes{2});
    const std::shared_ptr<KeychainStore> inFile = makeFileKeychainStore(keyring.folder() / "keychain");
    const std::shared_ptr<KeychainStore> users =
        makeUserKeychainStore(keyring.folder() / "users", std::chrono::minutes{2});
};

TEST_F(HostProcess, MayForkBeforeAndAfterItsFirstUse) {
    EXPECT_TRUE(succeedsInAChild([&] { useEverything(); }));
    useEverything();
    EXPECT_EQ(users->state().status, KeychainStatus::success);
    server.answer({"", ScriptedAnswer::Then::hold});
    send(*plain, request(server.url()));
    EXPECT_TRUE(succeedsInAChild([&] {
        std::string log;
        Logging::setSink([&](const auto& entry) { log += entry.message; });
        for (const auto& session : {plain, caching, makeHttpSession(cachingConfiguration())}) {
            const auto answer = exchange(*session, request(server.url()));
            EXPECT_EQ(errorName(answer), "other");
            EXPECT_THAT(answer.error.value_or(HttpError{}).description, testing::HasSubstr("child of fork"));
        }
        for (const auto& store : {inKeyring, users, makeSecretServiceKeychainStore(std::chrono::minutes{2})}) {
            log.clear();
            EXPECT_EQ(store->copyMatching({}, {}).status, KeychainStatus::notAvailable);
            EXPECT_THAT(log, testing::HasSubstr("child of fork"));
            std::optional<KeychainStatus> unlocked;
            store->unlock([&](KeychainStatus status) { unlocked = status; });
            EXPECT_TRUE(queue->runUntil([&] { return unlocked.has_value(); }));
            EXPECT_EQ(unlocked, KeychainStatus::notAvailable);
        }
        EXPECT_EQ(inFile->copyMatching({}, {}).status, KeychainStatus::success);
        caching.reset();
    }));
    useEverything();
}

TEST_F(HostProcess, LeavesNothingToExecutedProgramsAndTakesNoSignals) {
    const std::vector<std::string> list{"ls", "/proc/self/fd"};
    const auto inherited = outputOf(list);
    const auto threads = interruptibleThreads();
    useEverything();
    EXPECT_EQ(outputOf(list), inherited) << outputOf({"ls", "-l", "/proc/self/fd"});
    EXPECT_EQ(interruptibleThreads(), threads + server.connections()) << "but those of the server";
}

TEST_F(HostProcess, IsLeftAtRestWhileNothingComes) {
    useEverything();
    server.answer({"HTTP/1.1 200 OK\r\nContent-Length: 9\r\n\r\nhalf", ScriptedAnswer::Then::hold});
    const auto before = server.requests().size();
    send(*caching, request(server.url()));
    ASSERT_TRUE(server.waitForRequests(before + 1));
    EXPECT_TRUE(othersComeToRest());
}

}  // namespace
