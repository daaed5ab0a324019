#include <Platform/Http/Transfers/UnframedBody.hpp>

#include <Tarnwick_API/Platform/Json/Json.hpp>

#include <Platform/Text/AsciiText.hpp>

namespace Tarnwick_API::Platform {

namespace {

bool isJson(std::string_view contentType) noexcept {
    constexpr std::string_view suffix = "+json";
    const auto type = trimmed(contentType.substr(0, contentType.find(';')));
    return equalsIgnoringAsciiCase(type, "application/json") || equalsIgnoringAsciiCase(type, "text/json") ||
           (type.size() > suffix.size() && equalsIgnoringAsciiCase(type.substr(type.size() - suffix.size()), suffix));
}

}  // namespace

Wholeness wholeness(const Bytes& body, std::string_view contentType) {
    if (body.empty() || !isJson(contentType)) {
        return Wholeness::unknown;
    }
    try {
        // A cut number is a number.
        const JsonDocument document{body};
        return document.root().type() == JsonType::number ? Wholeness::unknown : Wholeness::whole;
    } catch (const DecodingError&) {
        return Wholeness::cut;
    }
}

}  // namespace Tarnwick_API::Platform
