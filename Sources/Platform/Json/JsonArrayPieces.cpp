#include <Platform/Json/JsonArrayPieces.hpp>

#include <Platform/Text/Utf8.hpp>

#include <algorithm>
#include <string_view>

namespace Tarnwick_API::Platform {

namespace {

/// The parsed form of this much text, some three times as long, still fits the second-level caches of today.
constexpr std::size_t pieceLength = std::size_t{256} * 1024;

constexpr std::string_view blanks = " \t\r\n";

std::size_t skipBlanks(std::string_view text, std::size_t position) noexcept {
    return std::min(text.find_first_not_of(blanks, position), text.size());
}

/// Where the object begins that follows the object whose last character is at `closing`; none when none follows.
std::optional<std::size_t> followingObject(std::string_view text, std::size_t closing) noexcept {
    const auto comma = skipBlanks(text, closing + 1);
    if (comma >= text.size() || text[comma] != ',') {
        return std::nullopt;
    }
    const auto next = skipBlanks(text, comma + 1);
    return next < text.size() && text[next] == '{' ? std::optional{next} : std::nullopt;
}

}  // namespace

JsonArrayPieces::JsonArrayPieces(const Bytes& text) : text_{text} {
    const auto opening = skipBlanks(text, text.size() - withoutByteOrderMark(text).size());
    if (opening < text.size() && text[opening] == '[') {
        position_ = opening + 1;
    }
    piece_.reserve(2 * pieceLength);
}

bool JsonArrayPieces::isWorthwhile(const Bytes& text) noexcept {
    return text.size() > 2 * pieceLength;
}

std::optional<JsonArray> JsonArrayPieces::next() {
    if (!position_) {
        return std::nullopt;
    }
    auto cut = needsCertainCuts_ ? certainCut() : probableCut();
    bool isValid = parse(cut);
    if (!isValid && !needsCertainCuts_) {
        needsCertainCuts_ = true;
        cut = certainCut();
        isValid = parse(cut);
    }
    if (!isValid) {
        position_ = std::nullopt;
        return std::nullopt;
    }
    position_ = cut.next;
    isComplete_ = !cut.next;
    return document_->root().array();
}

std::size_t JsonArrayPieces::expectedCount(std::size_t read) const noexcept {
    // A little more than the rule of three, as growing costs more than room that stays empty.
    const auto done = position_.value_or(text_.size());
    return done == 0 ? read
                     : static_cast<std::size_t>(1.01 * static_cast<double>(read) * static_cast<double>(text_.size()) /
                                                static_cast<double>(done)) +
                           1;
}

/// Behind an object that another one follows. They may be members of an element rather than elements.
JsonArrayPieces::Cut JsonArrayPieces::probableCut() const noexcept {
    const std::string_view text = text_;
    auto closing = text.find('}', *position_ + pieceLength);
    while (closing != std::string_view::npos) {
        if (const auto next = followingObject(text, closing)) {
            return {closing + 1, next};
        }
        closing = text.find('}', closing + 1);
    }
    return {text.size(), std::nullopt};
}

/// At the first comma between elements behind a piece's length, by reading all characters before it.
JsonArrayPieces::Cut JsonArrayPieces::certainCut() const noexcept {
    const std::string_view text = text_;
    const auto earliest = *position_ + pieceLength;
    std::size_t depth = 0;
    bool isInText = false;
    for (auto position = *position_; position < text.size(); ++position) {
        const char character = text[position];
        if (isInText) {
            position += character == '\\' ? 1 : 0;
            isInText = character != '"';
        } else if (character == '"') {
            isInText = true;
        } else if (character == '{' || character == '[') {
            ++depth;
        } else if ((character == '}' || character == ']') && depth > 0) {
            --depth;
        } else if (character == ',' && depth == 0 && position >= earliest) {
            return {position, position + 1};
        }
    }
    return {text.size(), std::nullopt};
}

bool JsonArrayPieces::parse(const Cut& cut) {
    // The parser's lease of the piece before ends first, so that this one gets the same parser.
    document_.reset();
    piece_.clear();
    piece_.push_back('[');
    piece_.append(text_, *position_, cut.end - *position_);
    if (cut.next) {
        // The last piece has the text's own end.
        piece_.push_back(']');
    }
    piece_.reserve(piece_.size() + JsonDocument::padding);
    try {
        document_.emplace(piece_);
        const auto elements = document_->root().array();
        // A comma without an element beside it leaves an empty piece, which by itself would be valid.
        return elements && elements->size() > 0;
    } catch (const DecodingError&) {
        return false;
    }
}

}  // namespace Tarnwick_API::Platform
