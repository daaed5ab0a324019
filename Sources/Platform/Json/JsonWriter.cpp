#include <Platform/Json/JsonWriter.hpp>

#include <Platform/Text/Utf8.hpp>
#include <Platform/Text/Wiping.hpp>

#include <array>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <variant>

namespace Tarnwick_API::Platform {

namespace {

class JsonWriter {
public:
    /// Each returns whether the value could be written.
    bool operator()(const std::string& text) {
        writeText(text);
        return true;
    }
    bool operator()(std::int64_t integer) {
        writeNumber(integer);
        return true;
    }
    bool operator()(double real) {
        if (!std::isfinite(real)) {
            return false;
        }
        writeNumber(real);
        return true;
    }
    bool operator()(bool flag) {
        bytes_ += flag ? "true" : "false";
        return true;
    }
    bool operator()(const ParameterValue::List& list) {
        char separator = '[';
        for (const ParameterValue& element : list) {
            bytes_ += separator;
            separator = ',';
            if (!std::visit(*this, element.storage())) {
                return false;
            }
        }
        bytes_ += list.empty() ? "[]" : "]";
        return true;
    }
    bool operator()(const ParameterValue::Map& map) {
        char separator = '{';
        for (const auto& [key, value] : map) {
            bytes_ += separator;
            separator = ',';
            writeText(key);
            bytes_ += ':';
            if (!std::visit(*this, value.storage())) {
                return false;
            }
        }
        bytes_ += map.empty() ? "{}" : "}";
        return true;
    }

    [[nodiscard]] Bytes bytes() const { return Bytes{bytes_}; }

private:
    template <typename Number>
    void writeNumber(Number number) {
        // The longest is a real like -1.2345678901234567e-308.
        std::array<char, 32> digits{};
        const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), number).ptr;
        bytes_.append(digits.data(), end);
    }

    void writeText(std::string_view text) {
        if (!isValidUtf8(text)) {
            writeText(replaceInvalidUtf8(text));
            return;
        }
        bytes_ += '"';
        for (const char character : text) {
            writeCharacter(character);
        }
        bytes_ += '"';
    }

    void writeCharacter(char character) {
        switch (character) {
            case '"':
            case '\\':
            case '/':
                bytes_ += '\\';
                bytes_ += character;
                break;
            case '\b':
                bytes_ += "\\b";
                break;
            case '\f':
                bytes_ += "\\f";
                break;
            case '\n':
                bytes_ += "\\n";
                break;
            case '\r':
                bytes_ += "\\r";
                break;
            case '\t':
                bytes_ += "\\t";
                break;
            default:
                if (static_cast<unsigned char>(character) < 0x20) {
                    constexpr std::string_view hexDigits = "0123456789abcdef";
                    bytes_ += "\\u00";
                    bytes_ += hexDigits[static_cast<unsigned char>(character) >> 4U];
                    bytes_ += hexDigits[static_cast<unsigned char>(character) & 0xFU];
                } else {
                    bytes_ += character;
                }
        }
    }

    WipingText bytes_;
};

}  // namespace

std::optional<Bytes> encodeJson(const Parameters& parameters) {
    JsonWriter writer;
    if (!writer(parameters)) {
        return std::nullopt;
    }
    return writer.bytes();
}

}  // namespace Tarnwick_API::Platform
