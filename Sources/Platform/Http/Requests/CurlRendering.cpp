#include <Tarnwick_API/Platform/Http/HttpRequest.hpp>

#include <Platform/Text/Utf8.hpp>

#include <string>
#include <string_view>
#include <utility>

namespace Tarnwick_API::Platform {

namespace {

constexpr std::string_view separator = " \\\n\t";

void appendWithEscapedQuotes(std::string& output, std::string_view text) {
    for (const char character : text) {
        if (character == '"') {
            output += '\\';
        }
        output += character;
    }
}

void appendHeaders(std::string& output, HttpHeaders headers) {
    headers.erase("Cookie");
    for (const auto& [name, value] : headers) {
        output.append(separator).append("-H \"").append(name).append(": ");
        appendWithEscapedQuotes(output, value);
        output += '"';
    }
}

/// An escaped quote gets one more backslash before every quote gets its own; other backslashes stay single.
void appendBody(std::string& output, std::string_view body) {
    output.append(separator).append("-d \"");
    char previous = '\0';
    for (const char character : body) {
        if (character == '"') {
            output += previous == '\\' ? "\\\\" : "\\";
        }
        output += character;
        previous = character;
    }
    output += '"';
}

}  // namespace

std::string HttpRequest::curlRendering(const HttpHeaders& sessionHeaders) const {
    if (url_.host().empty()) {
        return "$ curl command could not be created";
    }
    std::string output{"$ curl -v"};
    if (method_ != HttpMethod::get) {
        output.append(separator).append("-X ").append(name(method_));
    }
    HttpHeaders headers = this->headers();
    headers.insert(sessionHeaders.begin(), sessionHeaders.end());
    appendHeaders(output, std::move(headers));
    if (body_ && isValidUtf8(*body_)) {
        appendBody(output, *body_);
    }
    output.append(separator).append("\"").append(url_.absoluteString()).append("\"");
    return output;
}

}  // namespace Tarnwick_API::Platform
