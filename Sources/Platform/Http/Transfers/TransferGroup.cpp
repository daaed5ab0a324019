#include <Platform/Http/Transfers/TransferGroup.hpp>

#include <Platform/Text/AsciiText.hpp>

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

TransferGroup::TransferGroup(std::shared_ptr<const HttpSessionConfiguration> configuration)
    : configuration_{std::move(configuration)}, connectTo_{makeList(configuration_->connectTo)} {
}

bool TransferGroup::allowsScheme(std::string_view scheme) const noexcept {
    return equalsIgnoringAsciiCase(scheme, "https") ||
           (configuration_->allowsPlainHttp && equalsIgnoringAsciiCase(scheme, "http"));
}

HostValidation TransferGroup::hostValidation(std::string_view host) const {
    const auto policy = configuration_->trustPolicies.find(host);
    return policy == configuration_->trustPolicies.end() ? HostValidation::full : policy->second;
}

const std::string* TransferGroup::pinnedPublicKeys(std::string_view host) const {
    const auto keys = configuration_->pinnedPublicKeys.find(host);
    return keys == configuration_->pinnedPublicKeys.end() ? nullptr : &keys->second;
}

OriginQueue& TransferGroup::originQueue(const Url& url) {
    const auto key = originKey(url);
    return originQueues_.try_emplace(key, key, configuration_->connectionsPerHost, configuration_->streamsPerConnection)
        .first->second;
}

std::vector<Exchange> TransferGroup::takeWaiting() {
    std::vector<Exchange> exchanges;
    for (auto& [key, queue] : originQueues_) {
        while (queue.hasWaiting()) {
            exchanges.push_back(queue.takeWaiting());
        }
    }
    return exchanges;
}

}  // namespace Tarnwick_API::Platform
