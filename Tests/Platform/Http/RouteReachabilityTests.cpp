// Run in a network namespace of its own, so that routes can be had and lacked at will.

#include <Tarnwick_API/Platform/Http/HttpSession.hpp>

#include <Platform/Http/Transfers/ConnectionTarget.hpp>

#include <cstdlib>
#include <iostream>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>
#include <sched.h>
#include <sys/resource.h>

namespace {

using namespace Tarnwick_API::Platform;

bool isReachable(const std::string& host) {
    return makeRouteReachability()->isReachable("https://" + host + "/vb/status");
}

void ip(const std::string& arguments) {
    ASSERT_EQ(std::system(("ip " + arguments).c_str()), 0) << arguments;  // NOLINT(cert-env33-c)
}

class RouteReachability : public testing::Test {
protected:
    void SetUp() override {
        if (::unshare(CLONE_NEWNET) != 0 && ::unshare(CLONE_NEWUSER | CLONE_NEWNET) != 0) {
            GTEST_SKIP() << "this system gives out no network namespaces: routes were NOT tested";
        }
    }
};

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
