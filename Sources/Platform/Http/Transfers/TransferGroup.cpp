#include <Platform/Http/Requests/HeaderFields.hpp>
#include <Platform/Http/Transfers/TransferGroup.hpp>
#include <Platform/Text/AsciiText.hpp>

#include <algorithm>
#include <new>
#include <utility>

namespace Tarnwick_API::Platform {

namespace {

CurlList makeList(const std::vector<std::string>& lines) {
    CurlList list;
    for (const auto& line : lines) {
        auto* const longer = curl_slist_append(list.get(), line.c_str());
        if (longer == nullptr) {
            throw std::bad_alloc{};
        }
        // The same list, or its first element: appending moves nothing.
        static_cast<void>(list.release());  // NOLINT(bugprone-unused-return-value)
        list.reset(longer);
    }
    return list;
}

}  // namespace

SessionState::SessionState(HttpSessionConfiguration configuration)
    : configuration_{std::move(configuration)},
      fault_{headerFault(configuration_.additionalHeaders)},
      connectTo_{makeList(configuration_.connectTo)} {
    // A limit of nothing would let requests wait for ever.
    configuration_.connectionsPerHost = std::max<std::size_t>(configuration_.connectionsPerHost, 1);
    configuration_.streamsPerConnection = std::max<std::size_t>(configuration_.streamsPerConnection, 1);
    if (!configuration_.reachability) {
        configuration_.reachability = makeRouteReachability();
    }
}

bool SessionState::allowsScheme(std::string_view scheme) const noexcept {
    return equalsIgnoringAsciiCase(scheme, "https") ||
           (configuration_.allowsPlainHttp && equalsIgnoringAsciiCase(scheme, "http"));
}

HostValidation SessionState::hostValidation(std::string_view host) const {
    const auto policy = configuration_.trustPolicies.find(host);
    return policy == configuration_.trustPolicies.end() ? HostValidation::full : policy->second;
}

OriginQueue& SessionState::origin(const Url& url) {
    return origins_.try_emplace(originKey(url), configuration_.connectionsPerHost, configuration_.streamsPerConnection)
        .first->second;
}

std::vector<Exchange> SessionState::takeWaiting() {
    std::vector<Exchange> exchanges;
    for (auto& [key, origin] : origins_) {
        while (origin.hasWaiting()) {
            exchanges.push_back(origin.takeWaiting());
        }
    }
    return exchanges;
}

HttpError sessionDropped() {
    return {HttpError::Kind::cancelled, "the session was dropped"};
}

}  // namespace Tarnwick_API::Platform
