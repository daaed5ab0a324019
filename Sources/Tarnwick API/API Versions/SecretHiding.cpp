#include "SecretHiding.hpp"

#include <Platform/Logging/DebugChannel.hpp>
#include <Platform/Text/AsciiCharacters.hpp>
#include <Platform/Text/AsciiText.hpp>

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <optional>
#include <string_view>
#include <utility>

namespace Tarnwick_API::SecretHiding {

namespace {

constexpr std::string_view hidden = "HIDDEN";
constexpr std::string_view separator = "://";

constexpr std::string_view harmlessHeaders[] = {
    "Accept", "Accept-Encoding", "Accept-Language", "Content-Type", "Host", "User-Agent",
};

// Not here, besides credentials: names and addresses of the user, machines and their ids, positions, "clickid".
constexpr std::string_view harmlessParameters[] = {
    "filter", "filter_content_id", "filter_country", "filter_protocol", "flags",   "import",      "language",
    "os",     "partnersId",        "region",         "source",          "version", "x_auth_mode",
};

constexpr std::string_view pathWords[] = {
    "", "access_token", "access_tokens", "authtoken", "me", "oauth", "servers", "status", "users", "vb",
};
/// What is behind this word is the number of something that everybody sees.
constexpr std::string_view wordBeforeNumber = "servers";

template <typename Names>
bool isAmong(const Names& names, std::string_view name) {
    return std::ranges::find(names, name) != std::end(names);
}

bool isNumber(std::string_view text) {
    return std::ranges::all_of(text, Platform::isAsciiDigit);
}

/// Takes the part before the first `separator` off `rest`; none when nothing is left.
std::optional<std::string_view> takePart(std::optional<std::string_view>& rest, char separator) {
    if (!rest) {
        return std::nullopt;
    }
    const auto end = rest->find(separator);
    const auto part = rest->substr(0, end);
    rest = end == std::string_view::npos ? std::nullopt : std::optional{rest->substr(end + 1)};
    return part;
}

void appendPath(std::string& output, std::string_view path) {
    std::optional rest{path};
    std::string_view before;
    while (const auto segment = takePart(rest, '/')) {
        const bool isShown = isAmong(pathWords, *segment) || (before == wordBeforeNumber && isNumber(*segment));
        output.append(isShown ? *segment : hidden).append(rest ? "/" : "");
        before = *segment;
    }
}

void appendQuery(std::string& output, std::string_view query) {
    std::optional rest{query};
    while (auto pair = takePart(rest, '&')) {
        const auto nameSize = pair->find('=');
        if (nameSize != std::string_view::npos && isAmong(harmlessParameters, pair->substr(0, nameSize))) {
            output.append(*pair);
        } else {
            // What has no value may be one itself.
            output.append(nameSize == std::string_view::npos ? "" : pair->substr(0, nameSize + 1)).append(hidden);
        }
        output.append(rest ? "&" : "");
    }
}

}  // namespace

bool isWanted() noexcept {
    const auto reader = Platform::DebugChannel::reader();
    return reader && reader.secrets() == Platform::Logging::Secrets::hidden;
}

Platform::HttpHeaders shown(Platform::HttpHeaders headers) {
    for (auto& [name, value] : headers) {
        const auto isThis = [&name = name](std::string_view other) {
            return Platform::equalsIgnoringAsciiCase(name, other);
        };
        if (std::ranges::none_of(harmlessHeaders, isThis)) {
            value = hidden;
        }
    }
    return headers;
}

Platform::Parameters shown(Platform::Parameters parameters) {
    for (auto& [name, value] : parameters) {
        if (!isAmong(harmlessParameters, name)) {
            value = hidden;
        }
    }
    return parameters;
}

std::string shown(const Platform::Url& url) {
    if (url.scheme().empty() || url.host().empty()) {
        return std::string{hidden};
    }
    std::string_view rest = url.absoluteString();
    std::string output{url.scheme()};
    rest.remove_prefix(output.size() + separator.size());
    const auto authorityEnd = std::min(rest.find_first_of("/?#"), rest.size());
    const auto authority = rest.substr(0, authorityEnd);
    const auto userEnd = authority.rfind('@');
    output.append(separator).append(userEnd == std::string_view::npos ? authority : authority.substr(userEnd + 1));
    rest = rest.substr(authorityEnd);
    rest = rest.substr(0, rest.find('#'));
    const auto pathEnd = std::min(rest.find('?'), rest.size());
    appendPath(output, rest.substr(0, pathEnd));
    if (pathEnd < rest.size()) {
        output += '?';
        appendQuery(output, rest.substr(pathEnd + 1));
    }
    return output;
}

std::shared_ptr<const Platform::HttpRequest> shownRequest(Platform::HttpMethod method, const Platform::Url& url,
                                                          const Platform::Parameters& parameters,
                                                          Platform::ParameterEncoding encoding,
                                                          const Platform::HttpHeaders& headers) {
    // What is shown of a URL is one, as a word has taken the place of whole parts.
    return std::make_shared<const Platform::HttpRequest>(method, Platform::Url::fromString(shown(url)).value(),
                                                         shown(parameters), encoding, shown(headers));
}

std::shared_ptr<const Platform::HttpRequest> shownRequest(const Platform::HttpRequest& request) {
    using Platform::ParameterEncoding;
    return request.body()
               ? shownRequest(request.method(), request.url(), {{"body", hidden}}, ParameterEncoding::json,
                              request.headers())
               : shownRequest(request.method(), request.url(), {}, ParameterEncoding::url, request.headers());
}

std::string shownBody(const Platform::Bytes& body) {
    return std::string{hidden} + ", " + std::to_string(body.size()) + " bytes";
}

}  // namespace Tarnwick_API::SecretHiding
