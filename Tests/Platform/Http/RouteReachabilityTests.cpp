// Run in a network namespace of its own, so that routes can be had and lacked at will.

#include <Tarnwick_API/Platform/Http/HttpSession.hpp>

#include <Platform/Http/Transfers/ConnectionRoute.hpp>
#include <Platform/Http/Transfers/ConnectionTarget.hpp>

#include "SessionFixture.hpp"
#include "TemporaryFolder.hpp"

#include <cstdlib>
#include <fstream>
#include <iostream>
#include <string>
#include <utility>
#include <vector>

#include <arpa/inet.h>
#include <gtest/gtest.h>
#include <netinet/in.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/resource.h>

namespace {

using namespace Tarnwick_API::Platform;

bool isReachable(const std::string& host) {
    return makeRouteReachability()->isReachable("https://" + host + "/vb/status");
}

void ip(const std::string& arguments) {
    ASSERT_EQ(std::system(("ip " + arguments).c_str()), 0) << arguments;  // NOLINT(cert-env33-c)
}

class RouteReachability : public SessionFixture {
protected:
    void SetUp() override {
        constexpr int spaces = CLONE_NEWNET | CLONE_NEWNS;
        if (::unshare(spaces) != 0 && ::unshare(CLONE_NEWUSER | spaces) != 0) {
            GTEST_SKIP() << "this system gives out no network namespaces: routes were NOT tested";
        }
    }

    /// A network interface behind which there is nobody.
    static void addInterface(const std::string& name, const std::string& address) {
        ip("link add " + name + " type veth peer name " + name + "-end");
        ip("address add " + address + " dev " + name);
        ip("link set " + name + " up");
        ip("link set " + name + "-end up");
    }
};

/// Shows `text` to this process in the place of `file`.
void replace(const std::string& file, const std::string& text, const TemporaryFolder& folder) {
    const auto own = folder.path() / "own";
    std::ofstream{own} << text;
    ASSERT_EQ(::mount(own.c_str(), file.c_str(), nullptr, MS_BIND, nullptr), 0);
    std::filesystem::remove(own);
}

TEST_F(RouteReachability, WithoutANetworkIsLeftToLoopback) {
    for (const auto* host :
         {"localhost", "LOCALHOST:8443", "a.b.localhost", "127.0.0.1", "127.255.0.3:1", "[::1]:8443"}) {
        EXPECT_TRUE(isReachable(host)) << host;
    }
    for (const auto* host : {"203.0.113.7", "[2001:db8::7]", "api.example.test", "localhost.example.test",
                             "notlocalhost", "128.0.0.1", "127.example.test", "[::2]"}) {
        EXPECT_FALSE(isReachable(host)) << host;
    }
    EXPECT_FALSE(makeRouteReachability()->isReachable(""));
    EXPECT_FALSE(makeRouteReachability()->isReachable("not a URL"));
}

TEST_F(RouteReachability, FollowsTheRoutes) {
    ip("link set lo up");
    ip("route add 203.0.113.0/24 dev lo");
    EXPECT_TRUE(isReachable("203.0.113.7:8443"));
    EXPECT_FALSE(isReachable("198.51.100.7"));
    EXPECT_FALSE(isReachable("api.example.test")) << "a route to one net is no way to the internet";

    for (const auto* kind : {"unreachable", "blackhole", "prohibit"}) {
        ip("route add " + std::string{kind} + " 198.51.100.0/24");
        EXPECT_FALSE(isReachable("198.51.100.7")) << kind;
        ip("route del " + std::string{kind} + " 198.51.100.0/24");
    }

    ip("route add default dev lo");
    EXPECT_TRUE(isReachable("198.51.100.7"));
    EXPECT_TRUE(isReachable("api.example.test"));
    EXPECT_TRUE(makeRouteReachability()->isReachable("not a URL"));
    ip("route del default");

    ip("-6 address add 2001:db8:1::1/128 dev lo nodad");
    ip("-6 route add default dev lo");
    EXPECT_TRUE(isReachable("[2001:db8::7]"));
    EXPECT_TRUE(isReachable("api.example.test")) << "IPv6 alone is enough";
    EXPECT_FALSE(isReachable("198.51.100.7"));
}

TEST_F(RouteReachability, IsNotDeniedForWantOfDescriptors) {
    const auto reachability = makeRouteReachability();
    const auto reachesAddress = [&] { return reachability->isReachable("https://203.0.113.7"); };
    const auto reachesName = [&] { return reachability->isReachable("https://api.example.test"); };
    // Also lets the sanitizers, which need descriptors to look at a type the first time, have their look.
    EXPECT_FALSE(reachesAddress());
    EXPECT_FALSE(reachesName());
    rlimit before{};
    ASSERT_EQ(::getrlimit(RLIMIT_NOFILE, &before), 0);
    const rlimit none{0, before.rlim_max};
    ASSERT_EQ(::setrlimit(RLIMIT_NOFILE, &none), 0);
    const bool address = reachesAddress();
    const bool name = reachesName();
    ASSERT_EQ(::setrlimit(RLIMIT_NOFILE, &before), 0);
    EXPECT_TRUE(address);
    EXPECT_TRUE(name);
}

TEST_F(RouteReachability, OfConnectionsIsNoticed) {
    ip("link set lo up");
    ScriptedServer server;
    server.answerAlways(okAnswer("x"));
    const auto session = makeHttpSession(plainConfiguration());
    exchange(*session, request(server.url()));
    ip("route add 203.0.113.0/24 dev lo");
    EXPECT_TRUE(server.waitForClosed(1)) << "an idle connection outlived a change of the routes";

    addInterface("one", "192.0.2.1/24");
    addInterface("two", "198.51.100.1/24");
    ip("route replace 203.0.113.0/24 dev one");
    sockaddr_storage peer{};
    auto& fourth = reinterpret_cast<sockaddr_in&>(peer);
    fourth.sin_family = AF_INET;
    fourth.sin_port = htons(443);
    ASSERT_EQ(::inet_pton(AF_INET, "203.0.113.7", &fourth.sin_addr), 1);
    const int connection = ::socket(AF_INET, SOCK_STREAM | SOCK_NONBLOCK, 0);
    EXPECT_EQ(::connect(connection, reinterpret_cast<const sockaddr*>(&peer), sizeof fourth), -1);
    const std::pair<std::string, bool> rows[] = {
        {"replace 203.0.113.0/24 dev one", false},
        {"replace 203.0.113.0/24 dev two", true},
        {"del 203.0.113.0/24", false},
        {"add 203.0.113.0/24 dev one src 192.0.2.2", false},
    };
    ip("address add 192.0.2.2/24 dev one");
    for (const auto& [change, isLost] : rows) {
        ip("route " + change);
        EXPECT_EQ(leadsElsewhere(connection, peer), isLost) << change;
    }
}

TEST_F(RouteReachability, OfAHostsSecondAddressIsTried) {
    if (::mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0) {
        GTEST_SKIP() << "the root folder is no mount of its own, so files can't be replaced: NOT tested";
    }
    ip("link set lo up");
    addInterface("one", "192.0.2.1/24");
    const TemporaryFolder folder;
    replace("/etc/hosts", "192.0.2.7 two.test\n127.0.0.1 two.test\n", folder);
    // The silent one first.
    replace("/etc/gai.conf", "precedence ::ffff:192.0.2.7/128 100\n", folder);
    ScriptedServer server;
    server.answer(okAnswer("x"));
    auto configuration = plainConfiguration();
    configuration.idleTimeout = std::chrono::seconds{1};
    const auto answer =
        exchange(*makeHttpSession(configuration), request("http://two.test:" + std::to_string(server.port())));
    EXPECT_EQ(answer.body, "x");
}

TEST(ConnectionTarget, IsWhereTheFirstMatchingRuleLeads) {
    const std::vector<std::string> rules{"203.0.113.7:443:127.0.0.1:8443", "api.example:8080:[::1]:1",
                                         "[2001:db8::1]:443:localhost:2"};
    const std::pair<const char*, const char*> rows[] = {
        {"https://203.0.113.7/vb", "https://127.0.0.1:8443"},
        {"https://api.example:8080/", "https://[::1]:1"},
        {"https://[2001:db8::1]/", "https://localhost:2"},
        {"https://203.0.113.7:8443/", "https://203.0.113.7:8443/"},
        {"https://api.example/", "https://api.example/"},
        {"no URL", "no URL"},
    };
    for (const auto& [url, target] : rows) {
        EXPECT_EQ(connectionTarget(url, rules), target);
    }
    EXPECT_EQ(connectionTarget("https://api.example/", {}), "https://api.example/");
}

}  // namespace
