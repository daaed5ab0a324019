#include <Platform/Http/Transfers/Redirects.hpp>

#include <Platform/Text/AsciiText.hpp>

namespace Tarnwick_API::Platform {

namespace {

/// Whether a redirect of this status is followed, and if so whether `method` turns into a GET without body.
std::optional<bool> turnsIntoGet(std::int64_t status, HttpMethod method) noexcept {
    switch (status) {
        case 301:
        case 302:
            return method == HttpMethod::post;
        case 303:
            return true;
        case 305:
        case 306:
        case 307:
        case 308:
            return false;
        default:
            return std::nullopt;
    }
}

/// Empty for the scheme's own, as a "Host" header leaves it out.
std::string_view unusualPort(const Url& url) noexcept {
    const auto port = url.port();
    return port == (equalsIgnoringAsciiCase(url.scheme(), "http") ? "80" : "443") ? std::string_view{} : port;
}

bool haveSameAuthority(const Url& one, const Url& other) noexcept {
    return equalsIgnoringAsciiCase(one.host(), other.host()) && unusualPort(one) == unusualPort(other);
}

}  // namespace

std::optional<std::string> withinDocument(const Url& url, std::string_view location) {
    if (!location.starts_with('#')) {
        return std::nullopt;
    }
    const auto& document = url.absoluteString();
    return document.substr(0, document.find('#')).append(location);
}

std::unique_ptr<Hop> nextHop(const HttpRequest& request, const Hop* current, std::int64_t status,
                             std::string_view location) {
    const auto method = current == nullptr ? request.method() : current->method;
    const auto toGet = turnsIntoGet(status, method);
    const auto url = Url::fromString(location);
    if (!toGet || !url || url->scheme().empty() || url->host().empty()) {
        return nullptr;
    }
    const bool hadBody = current == nullptr ? request.body().has_value() : current->sendsBody;
    return std::make_unique<Hop>(Hop{
        .url = *url,
        .method = *toGet ? HttpMethod::get : method,
        .sendsBody = hadBody && !*toGet,
        .keepsHost = haveSameAuthority(*url, request.url()),
        .number = current == nullptr ? 1 : current->number + 1,
    });
}

}  // namespace Tarnwick_API::Platform
