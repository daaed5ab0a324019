#include "Api/WireParameters.hpp"

#include "Api/Refusals.hpp"

#include <algorithm>
#include <array>
#include <charconv>

#include <nlohmann/json.hpp>

namespace TarnwickService {
namespace {

constexpr std::string_view upperHexDigits = "0123456789ABCDEF";
constexpr std::string_view lowerHexDigits = "0123456789abcdef";

bool staysUnescaped(char c) {
    return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') ||
           std::string_view("-._~/?").find(c) != std::string_view::npos;
}

int hexValue(char c) {
    if (c >= 'a' && c <= 'f') {
        c = static_cast<char>(c - 'a' + 'A');
    }
    const auto digit = upperHexDigits.find(c);
    return digit == std::string_view::npos ? -1 : static_cast<int>(digit);
}

std::string escaped(std::string_view text) {
    std::string result;
    for (const char c : text) {
        if (staysUnescaped(c)) {
            result += c;
        } else {
            const auto byte = static_cast<unsigned char>(c);
            result += '%';
            result += upperHexDigits[byte >> 4U];
            result += upperHexDigits[byte & 0xFU];
        }
    }
    return result;
}

std::string decodedPart(std::string_view part, bool strict) {
    std::optional<std::string> decoded = percentDecoded(part);
    if (!decoded) {
        refuseMalformed("parameters: broken escape in \"" + std::string(part) + '"');
    }
    if (strict && part.find('%') == std::string_view::npos && std::ranges::all_of(part, staysUnescaped)) {
        return std::move(*decoded);
    }
    if (strict && escaped(*decoded) != part) {
        refuseMalformed("parameters: \"" + std::string(part) + "\" should be escaped as \"" + escaped(*decoded) + '"');
    }
    return std::move(*decoded);
}

void appendJsonText(std::string& out, std::string_view text) {
    out += '"';
    for (const char c : text) {
        switch (c) {
            case '"':
                out += "\\\"";
                break;
            case '\\':
                out += "\\\\";
                break;
            case '/':
                out += "\\/";
                break;
            case '\b':
                out += "\\b";
                break;
            case '\f':
                out += "\\f";
                break;
            case '\n':
                out += "\\n";
                break;
            case '\r':
                out += "\\r";
                break;
            case '\t':
                out += "\\t";
                break;
            default:
                if (static_cast<unsigned char>(c) < 0x20) {
                    out += "\\u00";
                    out += lowerHexDigits[static_cast<unsigned char>(c) >> 4U];
                    out += lowerHexDigits[static_cast<unsigned char>(c) & 0xFU];
                } else {
                    out += c;
                }
        }
    }
    out += '"';
}

std::string canonicalJson(const std::vector<std::pair<std::string, std::string>>& entries) {
    std::string out = "{";
    for (const auto& [key, value] : entries) {
        if (out.size() > 1) {
            out += ',';
        }
        appendJsonText(out, key);
        out += ':';
        appendJsonText(out, value);
    }
    out += '}';
    return out;
}

template <typename Number>
Number parseNumber(std::string_view key, const std::string& text) {
    Number number{};
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error != std::errc() || end != text.data() + text.size()) {
        refuseMalformed("parameter " + std::string(key) + ": \"" + text + "\" is not a number");
    }
    return number;
}

}  // namespace

std::optional<std::string> Parameters::take(std::string_view key) {
    const auto found = std::ranges::find_if(entries_, [&](const auto& entry) { return entry.first == key; });
    if (found == entries_.end()) {
        return std::nullopt;
    }
    std::string value = std::move(found->second);
    entries_.erase(found);
    return value;
}

std::string Parameters::require(std::string_view key) {
    std::optional<std::string> value = take(key);
    if (!value) {
        refuseMalformed("parameter " + std::string(key) + " is missing");
    }
    return std::move(*value);
}

void Parameters::requireValue(std::string_view key, std::string_view value) {
    const std::string given = require(key);
    if (given != value) {
        refuseMalformed("parameter " + std::string(key) + ": \"" + given + "\" instead of \"" + std::string(value) +
                        '"');
    }
}

std::optional<std::int64_t> Parameters::takeInteger(std::string_view key) {
    const std::optional<std::string> text = take(key);
    return text ? std::optional(parseNumber<std::int64_t>(key, *text)) : std::nullopt;
}

std::optional<double> Parameters::takeReal(std::string_view key) {
    const std::optional<std::string> text = take(key);
    return text ? std::optional(parseNumber<double>(key, *text)) : std::nullopt;
}

void Parameters::requireNoMore() const {
    if (!entries_.empty()) {
        refuseMalformed("parameter " + entries_.front().first + " is not one of this operation");
    }
}

std::optional<std::string> percentDecoded(std::string_view text) {
    std::string result;
    result.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] != '%') {
            result += text[i];
            continue;
        }
        if (i + 2 >= text.size() || hexValue(text[i + 1]) < 0 || hexValue(text[i + 2]) < 0) {
            return std::nullopt;
        }
        result += static_cast<char>(hexValue(text[i + 1]) * 16 + hexValue(text[i + 2]));
        i += 2;
    }
    return result;
}

Parameters readUrlEncoded(std::string_view text, bool strict) {
    std::vector<std::pair<std::string, std::string>> entries;
    entries.reserve(10);
    while (!text.empty()) {
        const auto ampersand = std::min(text.find('&'), text.size());
        const std::string_view pair = text.substr(0, ampersand);
        if (strict && ampersand + 1 == text.size()) {
            refuseMalformed("parameters: nothing follows the last '&'");
        }
        text.remove_prefix(std::min(ampersand + 1, text.size()));
        const auto equals = pair.find('=');
        if (equals == std::string_view::npos) {
            if (strict) {
                refuseMalformed("parameters: no '=' in \"" + std::string(pair) + '"');
            }
            continue;
        }
        std::string key = decodedPart(pair.substr(0, equals), strict);
        if (strict && !entries.empty() && key <= entries.back().first) {
            refuseMalformed("parameters: key " + key + " does not sort after " + entries.back().first);
        }
        entries.emplace_back(std::move(key), decodedPart(pair.substr(equals + 1), strict));
    }
    return Parameters(std::move(entries));
}

Parameters readJsonObject(std::string_view text, bool strict) {
    nlohmann::json object;
    try {
        object = nlohmann::json::parse(text);
    } catch (const nlohmann::json::exception& error) {
        refuseMalformed(std::string("JSON body: ") + error.what());
    }
    if (!object.is_object()) {
        refuseMalformed("JSON body: not an object");
    }
    std::vector<std::pair<std::string, std::string>> entries;
    for (auto& [key, value] : object.items()) {
        if (!value.is_string()) {
            refuseMalformed("JSON body: the value of " + key + " is not a text");
        }
        entries.emplace_back(key, value.get<std::string>());
    }
    if (strict) {
        if (const std::string canonical = canonicalJson(entries); canonical != text) {
            refuseMalformed("JSON body: should be written " + canonical);
        }
    }
    return Parameters(std::move(entries));
}

}  // namespace TarnwickService
