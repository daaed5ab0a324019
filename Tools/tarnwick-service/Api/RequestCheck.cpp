#include "Api/RequestCheck.hpp"

#include "Api/Refusals.hpp"

#include <algorithm>

namespace TarnwickService {
namespace {

constexpr std::string_view prefix =
    R"(OAuth oauth_version="1.0", oauth_signature_method="PLAINTEXT", oauth_consumer_key=")";
constexpr std::string_view tokenOpener = R"(,oauth_token=")";
constexpr std::string_view signatureAfterToken = R"(" ,oauth_signature=")";
constexpr std::string_view signatureWithoutToken = R"(, oauth_signature=")";
static_assert(prefix.size() == 83 && tokenOpener.size() == 14 && signatureAfterToken.size() == 20 &&
              signatureWithoutToken.size() == 19);

[[noreturn]] void refuseForm(std::string_view header) {
    refuseMalformed("Authorization: not in the form that clients write: " + std::string(header));
}

bool takePrefix(std::string_view& text, std::string_view start) {
    if (!text.starts_with(start)) {
        return false;
    }
    text.remove_prefix(start.size());
    return true;
}

void requireSignature(std::string_view rest, std::string_view consumerSecret, std::string_view tokenSecret,
                      std::string_view header) {
    if (!takePrefix(rest, consumerSecret) || !takePrefix(rest, "%26") || !takePrefix(rest, tokenSecret) ||
        rest != "\"") {
        const bool wellFormed = header.ends_with('"') && header.find("%26") != std::string_view::npos;
        if (wellFormed) {
            throw Refusal(401, "Invalid signature");
        }
        refuseForm(header);
    }
}

std::string_view oneHeader(const Request& request, std::string_view name) {
    if (request.headerCount(name) != 1) {
        refuseMalformed(std::string(name) + ": expected once, found " + std::to_string(request.headerCount(name)));
    }
    return *request.header(name);
}

void requireHeader(const Request& request, std::string_view name, std::string_view expected) {
    if (const std::string_view value = oneHeader(request, name); value != expected) {
        refuseMalformed(std::string(name) + ": \"" + std::string(value) + "\" instead of \"" + std::string(expected) +
                        '"');
    }
}

bool isAll(std::string_view text, std::string_view low, std::string_view high) {
    return std::ranges::all_of(text, [&](char c) { return c >= low.front() && c <= high.front(); });
}

bool isLanguage(std::string_view text) {
    return (text.size() == 2 || text.size() == 3) && isAll(text, "a", "z");
}

bool isRegion(std::string_view text) {
    return (text.size() == 2 && isAll(text, "A", "Z")) || (text.size() == 3 && isAll(text, "0", "9"));
}

}  // namespace

RequestCheck::RequestCheck(const Configuration& configuration, std::string apiHost, const Accounts& accounts)
    : accounts_(accounts),
      apiHost_(std::move(apiHost)),
      consumerKey_(configuration.consumerKey),
      restrictedConsumerKey_(configuration.restrictedConsumerKey),
      consumerSecret_(configuration.consumerSecret),
      partnersId_(std::to_string(configuration.partnersId)),
      strict_(configuration.strict) {
}

void RequestCheck::host(const Request& request) const {
    if (strict_) {
        requireHeader(request, "Host", apiHost_);
    }
}

std::optional<Session> RequestCheck::authorization(const Request& request, SessionRule rule) const {
    if (request.headerCount("Authorization") == 0) {
        refuseSession(consumerKeyMissing);
    }
    const std::string_view header = oneHeader(request, "Authorization");
    std::string_view rest = header;
    if (!takePrefix(rest, prefix)) {
        refuseForm(header);
    }
    const auto isKey = [&](const std::string& key) {
        return rest.starts_with(key) && rest.substr(key.size(), 1) == "\"";
    };
    if (isKey(consumerKey_)) {
        rest.remove_prefix(consumerKey_.size() + 1);
    } else if (!restrictedConsumerKey_.empty() && isKey(restrictedConsumerKey_)) {
        rest.remove_prefix(restrictedConsumerKey_.size() + 1);
    } else {
        refuseSession(rest.starts_with('"') ? consumerKeyMissing : invalidConsumerKey);
    }
    if (takePrefix(rest, signatureWithoutToken)) {
        requireSignature(rest, consumerSecret_, "", header);
        if (rule == SessionRule::required) {
            refuseSession(notLoggedIn);
        }
        return std::nullopt;
    }
    const auto tokenEnd = rest.find(signatureAfterToken);
    if (!takePrefix(rest, tokenOpener) || tokenEnd == std::string_view::npos || tokenEnd <= tokenOpener.size()) {
        refuseForm(header);
    }
    const std::string_view token = rest.substr(0, tokenEnd - tokenOpener.size());
    rest.remove_prefix(token.size() + signatureAfterToken.size());
    std::optional<Session> session = accounts_.findSession(token);
    if (session) {
        requireSignature(rest, consumerSecret_, session->secret, header);
    } else if (rule != SessionRule::ignored) {
        refuseSession(notLoggedIn);
    }
    return session;
}

void RequestCheck::fullRights(const Request& request) const {
    const std::string_view header = request.header("Authorization").value_or("");
    if (!restrictedConsumerKey_.empty() && header.size() > prefix.size() &&
        header.substr(prefix.size()).starts_with(restrictedConsumerKey_ + '"')) {
        refuseSession(invalidConsumerRights);
    }
}

Parameters RequestCheck::parameters(const Request& request, Encoding encoding) const {
    if (strict_) {
        standardHeaders(request);
    }
    return withoutDefaults(read(request, encoding));
}

Parameters RequestCheck::bareParameters(const Request& request) const {
    if (strict_) {
        noStandardHeaders(request);
    }
    return withoutDefaults(read(request, Encoding::query));
}

void RequestCheck::nothingButAuthorization(const Request& request) const {
    if (!strict_) {
        return;
    }
    noStandardHeaders(request);
    if (request.query()) {
        refuseMalformed("no query belongs to this operation");
    }
    if (!request.body.empty()) {
        refuseMalformed("no body belongs to this operation");
    }
}

void RequestCheck::standardHeaders(const Request& request) const {
    requireHeader(request, "Content-Type", "application/json");
    requireHeader(request, "Accept", "application/json");
}

void RequestCheck::noStandardHeaders(const Request& request) const {
    if (request.headerCount("Content-Type") != 0) {
        refuseMalformed("Content-Type: does not belong to this operation");
    }
    // HTTP libraries add this one by themselves.
    if (request.header("Accept").value_or("*/*") != "*/*") {
        refuseMalformed("Accept: does not belong to this operation");
    }
}

Parameters RequestCheck::read(const Request& request, Encoding encoding) const {
    if (encoding == Encoding::query) {
        if (strict_ && !request.body.empty()) {
            refuseMalformed("no body belongs to this operation");
        }
        return readUrlEncoded(request.query().value_or(""), strict_);
    }
    if (strict_ && request.query()) {
        refuseMalformed("no query belongs to this operation");
    }
    return encoding == Encoding::json ? readJsonObject(request.body, strict_) : readUrlEncoded(request.body, strict_);
}

Parameters RequestCheck::withoutDefaults(Parameters parameters) const {
    if (!strict_) {
        for (const char* key : {"language", "region", "version", "os", "partnersId", "clickid"}) {
            static_cast<void>(parameters.take(key));
        }
        return parameters;
    }
    if (const std::string language = parameters.require("language"); !isLanguage(language)) {
        refuseMalformed("parameter language: \"" + language + "\" is not a language code");
    }
    if (const std::string region = parameters.require("region"); !isRegion(region)) {
        refuseMalformed("parameter region: \"" + region + "\" is not a region code");
    }
    if (parameters.require("version").empty()) {
        refuseMalformed("parameter version is empty");
    }
    parameters.requireValue("os", "mac");
    parameters.requireValue("partnersId", partnersId_);
    static_cast<void>(parameters.take("clickid"));
    return parameters;
}

}  // namespace TarnwickService
