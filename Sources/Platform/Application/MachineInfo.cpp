#include <Platform/Application/MachineInfo.hpp>

#include <algorithm>
#include <utility>

namespace Tarnwick_API::Platform {

namespace {

constexpr std::string_view blanks = " \t\r";

/// Reads the assignments of a text in turn, one character after the other, as quoted values may span lines.
class AssignmentReader {
public:
    explicit AssignmentReader(std::string_view text) : rest_{text} {}

    [[nodiscard]] bool atEnd() const { return rest_.empty(); }

    /// The name before "=" on this line; empty, with the line skipped, when the line assigns nothing.
    std::string_view readName() {
        skipBlanks();
        const auto end = rest_.find_first_of("=\n#");
        if (end == std::string_view::npos || end == 0 || rest_[end] != '=') {
            skipLine();
            return {};
        }
        const auto name = rest_.substr(0, end);
        rest_.remove_prefix(end + 1);
        return name;
    }

    /// The value up to the end of the line, or up to the end of the text when a quote is not closed.
    std::string readValue() {
        skipBlanks();
        std::string value;
        std::size_t quotedEnd = 0;
        while (!atEnd()) {
            const char character = take();
            if (character == '\n') {
                break;
            }
            if (character == '\'') {
                readSingleQuoted(value);
            } else if (character == '"') {
                readDoubleQuoted(value);
            } else if (character == '\\') {
                readEscaped(value);
            } else {
                value += character;
                continue;
            }
            quotedEnd = value.size();
        }
        const auto lastVisible = value.find_last_not_of(blanks);
        const auto visibleEnd = lastVisible == std::string::npos ? 0 : lastVisible + 1;
        value.resize(std::max(quotedEnd, visibleEnd));
        return value;
    }

private:
    char take() {
        const char character = rest_.front();
        rest_.remove_prefix(1);
        return character;
    }

    void skipBlanks() { rest_.remove_prefix(std::min(rest_.find_first_not_of(blanks), rest_.size())); }

    void skipLine() {
        const auto end = rest_.find('\n');
        rest_.remove_prefix(end == std::string_view::npos ? rest_.size() : end + 1);
    }

    void readSingleQuoted(std::string& value) {
        while (!atEnd()) {
            const char character = take();
            if (character == '\'') {
                return;
            }
            value += character;
        }
    }

    void readDoubleQuoted(std::string& value) {
        constexpr std::string_view escapable = "\"\\$`";
        while (!atEnd()) {
            const char character = take();
            if (character == '"') {
                return;
            }
            if (character == '\\' && !atEnd() && (escapable.find(rest_.front()) != std::string_view::npos)) {
                value += take();
            } else if (character == '\\' && !atEnd() && rest_.front() == '\n') {
                take();
            } else {
                value += character;
            }
        }
    }

    /// What follows a backslash outside quotes: a character that stands for itself, or a line end that is none.
    void readEscaped(std::string& value) {
        if (atEnd()) {
            return;
        }
        if (const char character = take(); character != '\n') {
            value += character;
        }
    }

    std::string_view rest_;
};

}  // namespace

std::optional<std::string> prettyHostName(std::string_view machineInfo) {
    std::optional<std::string> found;
    AssignmentReader reader{machineInfo};
    while (!reader.atEnd()) {
        const auto name = reader.readName();
        if (name.empty()) {
            continue;
        }
        auto value = reader.readValue();
        if (name == "PRETTY_HOSTNAME") {
            found = std::move(value);
        }
    }
    return found;
}

}  // namespace Tarnwick_API::Platform
