// Asks servers on loopback in every way in which an application reaches a service, and prints what became of it.
// Without arguments it prints the two fallback addresses that were built in; else it takes a file of roots and the port
// of a server that redirects "/HOST" to "https://HOST/answer", and reads lines of a host's name, the port of the server
// that stands at it and at the addresses, and the public keys that are known of it.

#include <Tarnwick_API/Tarnwick_API.hpp>

#include <iostream>
#include <map>
#include <memory>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace {

using namespace Tarnwick_API;
using Platform::HostValidation;

std::string fallbackAddress(ApiEnvironment environment) {
    return ApiVersion1::create({}, {}, 0, {}, environment, ApiUrl{ApiHosts{}})->fallbackIp();
}

/// Which connections go where: "HOST:443:127.0.0.1:PORT".
std::string rule(const std::string& host, const std::string& port) {
    return host + ":443:127.0.0.1:" + port;
}

/// "accepted", or the kind of the error.
std::string outcome(const Platform::HttpSessionConfiguration& configuration, const std::string& url,
                    const std::string& hostHeader, Platform::VirtualTimeMainQueue& queue) {
    const auto session = Platform::makeHttpSession(configuration);
    const auto request = std::make_shared<const Platform::HttpRequest>(
        Platform::HttpMethod::get, Platform::Url::fromString(url).value(), Platform::Parameters{},
        Platform::ParameterEncoding::url, Platform::HttpHeaders{{"Host", hostHeader + ":443"}});
    std::string result;
    session->send(request, [&result](const Platform::HttpAnswer& answer) {
        const bool isServed = answer.response && answer.response->status == 200;
        result = answer.error ? name(answer.error->kind) : isServed ? "accepted" : "unexpected";
    });
    if (!queue.runUntil([&result] { return !result.empty(); })) {
        throw std::runtime_error{"no answer from " + url};
    }
    return result;
}

/// One way to reach a service: what stands in the URL, and how the session judges the server there.
using Way = std::pair<std::string, Platform::HttpSessionConfiguration>;

/// The lenient ones first, so that what they leave behind could show in the strict ones.
std::vector<Way> waysTo(const std::string& host, const std::string& keys,
                        const Platform::HttpSessionConfiguration& standard) {
    const auto address = fallbackAddress(ApiEnvironment::live);
    auto byHostHeader = standard;
    byHostHeader.trustPolicies[address] = HostValidation::hostHeader;
    auto byKeys = standard;
    byKeys.pinnedPublicKeys[address] = keys;
    return {{address, standard},
            {address, byHostHeader},
            {address, byKeys},
            {fallbackAddress(ApiEnvironment::dev), standard},
            {host, standard}};
}

}  // namespace

int main(int count, char** words) try {
    const auto address = fallbackAddress(ApiEnvironment::live);
    if (count == 1) {
        std::cout << address << ' ' << fallbackAddress(ApiEnvironment::dev) << '\n';
        return 0;
    }
    const std::string redirectingPort = words[2];
    const auto queue = std::make_shared<Platform::VirtualTimeMainQueue>();
    Platform::MainQueue::setMain(queue);
    auto standard = ApiVersion1::defaultSessionConfiguration();
    standard.trustedRootsFile = words[1];
    standard.usesProxy = false;
    for (std::string host, port, keys; std::cin >> host >> port >> keys;) {
        for (const auto& [urlHost, configuration] : waysTo(host, keys, standard)) {
            // A redirect begins elsewhere; one to a name at the address that is judged most leniently.
            const auto front = urlHost == address ? "front.example.test" : address;
            auto led = configuration;
            led.connectTo = {rule(urlHost, port)};
            std::cout << outcome(led, "https://" + urlHost + "/answer", host, *queue) << ' ';
            led.connectTo.push_back(rule(front, redirectingPort));
            std::cout << outcome(led, "https://" + front + '/' + urlHost, host, *queue) << ' ';
        }
        std::cout << '\n';
    }
} catch (const std::exception& error) {
    std::cerr << error.what() << '\n';
    return 1;
}
