#include <Platform/Http/Requests/QueryEncoding.hpp>

#include <Platform/Text/CharacterSet.hpp>
#include <Platform/Text/Utf8.hpp>
#include <Platform/Text/Wiping.hpp>

#include <array>
#include <charconv>
#include <cstdint>
#include <string_view>
#include <variant>

namespace Tarnwick_API::Platform {

namespace {

constexpr auto literalCharacters = CharacterSet::alphanumericAnd("-._~/?");

void appendPercentEncoded(WipingText& output, std::string_view text) {
    constexpr std::string_view digits = "0123456789ABCDEF";
    for (const char character : text) {
        const auto byte = static_cast<unsigned char>(character);
        if (literalCharacters.contains(character)) {
            output += character;
        } else {
            output += '%';
            output += digits[byte >> 4U];
            output += digits[byte & 0xFU];
        }
    }
}

/// Writes the pairs of one value; `name` is the unescaped name so far and is left as it came.
class PairWriter {
public:
    PairWriter(WipingText& output, std::string& name) : output_{output}, name_{name} {}

    void operator()(const std::string& text) const { append(text); }
    void operator()(std::int64_t integer) const { appendNumber(integer); }
    void operator()(bool flag) const { append(flag ? "1" : "0"); }

    // The shortest text that reads back the same is not what services of this kind are used to; 16 digits are.
    void operator()(double real) const { appendNumber(real, std::chars_format::general, 16); }

    void operator()(const ParameterValue::List& list) const {
        const auto length = name_.size();
        name_ += "[]";
        for (const auto& element : list) {
            std::visit(*this, element.storage());
        }
        name_.resize(length);
    }

    void operator()(const ParameterValue::Map& map) const {
        const auto length = name_.size();
        for (const auto& [key, value] : map) {
            name_.append("[").append(key).append("]");
            std::visit(*this, value.storage());
            name_.resize(length);
        }
    }

private:
    template <typename... Arguments>
    void appendNumber(Arguments... arguments) const {
        std::array<char, 32> buffer{};
        const auto result = std::to_chars(buffer.data(), buffer.data() + buffer.size(), arguments...);
        append({buffer.data(), result.ptr});
    }

    void append(std::string_view value) const {
        if (!output_.empty()) {
            output_ += '&';
        }
        appendText(name_);
        output_ += '=';
        appendText(value);
    }

    void appendText(std::string_view text) const {
        if (literalCharacters.containsAll(text)) {
            output_ += text;
        } else if (isValidUtf8(text)) {
            appendPercentEncoded(output_, text);
        } else {
            appendPercentEncoded(output_, replaceInvalidUtf8(text));
        }
    }

    WipingText& output_;
    std::string& name_;
};

}  // namespace

std::string encodeQuery(const Parameters& parameters) {
    // Where a text grows, its old memory has to be overwritten: most queries fit into this.
    constexpr std::size_t usualSize = 250;
    WipingText output;
    output.reserve(usualSize);
    std::string name;
    for (const auto& [key, value] : parameters) {
        name = key;
        std::visit(PairWriter{output, name}, value.storage());
    }
    return std::string{output};
}

}  // namespace Tarnwick_API::Platform
