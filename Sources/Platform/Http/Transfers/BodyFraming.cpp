#include <Platform/Http/Transfers/BodyFraming.hpp>

#include <Platform/Text/AsciiText.hpp>

#include <algorithm>
#include <charconv>
#include <system_error>

namespace Tarnwick_API::Platform {

namespace {

/// Takes the first element off a field that is a list.
std::string_view takeElement(std::string_view& field) noexcept {
    const auto end = std::min(field.find(','), field.size());
    const auto element = trimmed(field.substr(0, end));
    field.remove_prefix(std::min(end + 1, field.size()));
    return element;
}

std::optional<std::uint64_t> number(std::string_view text) noexcept {
    std::uint64_t value = 0;
    const auto* const end = text.data() + text.size();
    const auto [rest, error] = std::from_chars(text.data(), end, value);
    return error == std::errc{} && rest == end ? std::optional{value} : std::nullopt;
}

/// The one number that every element of the field gives.
std::optional<std::uint64_t> agreedLength(std::string_view field) noexcept {
    const auto length = number(takeElement(field));
    while (length && !field.empty()) {
        if (number(takeElement(field)) != length) {
            return std::nullopt;
        }
    }
    return length;
}

/// None for codings that can't be undone, and for one upon another.
std::optional<ContentCoding> contentCoding(std::string_view field) noexcept {
    auto coding = ContentCoding::identity;
    while (!field.empty()) {
        const auto element = takeElement(field);
        const auto is = [element](std::string_view name) { return equalsIgnoringAsciiCase(element, name); };
        if (element.empty() || is("identity") || is("none")) {
            continue;
        }
        const bool isGzip = is("gzip") || is("x-gzip");
        if (coding != ContentCoding::identity || (!isGzip && !is("deflate"))) {
            return std::nullopt;
        }
        coding = isGzip ? ContentCoding::gzip : ContentCoding::deflate;
    }
    return coding;
}

}  // namespace

std::string_view lineFault(std::string_view line) noexcept {
    for (const auto end : {'\n', '\r'}) {
        if (line.ends_with(end)) {
            line.remove_suffix(1);
        }
    }
    const auto holds = [line](char character) { return line.find(character) != std::string_view::npos; };
    return holds('\r') || holds('\0') ? "a line of the head holds CR or NUL" : "";
}

std::string_view readFraming(const HttpHeaders& headers, BodyFraming& framing) noexcept {
    framing = {};
    if (const auto field = headers.find("content-length"); field != headers.end()) {
        framing.length = agreedLength(field->second);
        if (!framing.length) {
            return "Content-Length is no number, or several";
        }
    }
    if (const auto field = headers.find("transfer-encoding"); field != headers.end()) {
        std::string_view rest = field->second;
        while (!rest.empty()) {
            const auto coding = takeElement(rest);
            const bool isChunked = equalsIgnoringAsciiCase(coding, "chunked");
            if (!isChunked && !equalsIgnoringAsciiCase(coding, "identity")) {
                return "a transfer coding that nobody asked for";
            }
            framing.isChunked = framing.isChunked || isChunked;
        }
        if (framing.length && !framing.isChunked) {
            return "Content-Length beside a Transfer-Encoding that is not chunked";
        }
    }
    if (const auto field = headers.find("content-encoding"); field != headers.end()) {
        framing.coding = contentCoding(field->second);
    }
    return {};
}

}  // namespace Tarnwick_API::Platform
