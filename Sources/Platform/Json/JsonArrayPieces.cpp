#include <Platform/Json/JsonArrayPieces.hpp>

#include <Platform/Json/InvalidJson.hpp>
#include <Platform/Json/NestingScanner.hpp>
#include <Platform/Text/Utf8.hpp>

#include <algorithm>
#include <cstdint>
#include <string_view>

namespace Tarnwick_API::Platform {

namespace {

/// A record takes more than its text does, the shortest of those that say anything some fifteen times as much.
constexpr std::size_t greatestGrowth = 24;
/// What the records of a short text may take in any case.
constexpr std::size_t harmlessMemory = std::size_t{16} << 20U;

/// The first records are made before more get room, which then grows to no more than this many times what is taken.
constexpr std::size_t firstRecords = 1024;
constexpr std::size_t greatestStep = 1024;

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

/// How many more brackets open than close among so many characters. Their sum fits into a character, and there are
/// equally many in each block, so that the compiler adds up a vector of them at a time.
template <std::size_t count>
std::int8_t depthOfBlock(const char* characters) noexcept {
    // Makes braces of square brackets, and of nothing else.
    constexpr char braceBit = 0x20;
    std::int8_t depth = 0;
    for (std::size_t index = 0; index < count; ++index) {
        const auto brace = static_cast<char>(characters[index] | braceBit);
        depth = static_cast<std::int8_t>(depth + (brace == '{') - (brace == '}'));
    }
    return depth;
}

/// How many containers begin in the text and don't end there, brackets within texts counted too.
std::ptrdiff_t depthOf(std::string_view text) noexcept {
    constexpr std::size_t block = 96;
    std::ptrdiff_t depth = 0;
    for (; text.size() >= block; text.remove_prefix(block)) {
        depth += depthOfBlock<block>(text.data());
    }
    for (const char& character : text) {
        depth += depthOfBlock<1>(&character);
    }
    return depth;
}

}  // namespace

JsonArrayPieces::JsonArrayPieces(const Bytes& text, std::size_t pieceLength) : text_{text}, pieceLength_{pieceLength} {
    if (text.size() <= 2 * pieceLength_) {
        return;
    }
    const auto opening = skipBlanks(text, text.size() - withoutByteOrderMark(text).size());
    if (opening < text.size() && text[opening] == '[') {
        isLong_ = true;
        position_ = opening + 1;
        piece_.reserve(2 * pieceLength_);
    }
}

std::optional<JsonArray> JsonArrayPieces::next() {
    if (isComplete_) {
        return std::nullopt;
    }
    if (!isLong_) {
        isComplete_ = true;
        return document_.emplace(text_).root().require<JsonArray>();
    }
    if (const auto cut = needsCertainCuts_ ? std::nullopt : probableCut()) {
        try {
            return parse(*cut);
        } catch (const DecodingError&) {
            needsCertainCuts_ = true;
        }
    }
    return parse(certainCut());
}

std::size_t JsonArrayPieces::expectedCount(std::size_t soFar) const noexcept {
    if (isComplete_) {
        return soFar;
    }
    // A little more than the rule of three, as growing costs more than room that stays empty.
    return static_cast<std::size_t>(1.01 * static_cast<double>(soFar) * static_cast<double>(text_.size()) /
                                    static_cast<double>(position_)) +
           1;
}

/// Behind an object that another one follows, both within no other container if no text has a bracket in it. None when
/// there is no such place within a further piece's length.
std::optional<JsonArrayPieces::Cut> JsonArrayPieces::probableCut() const noexcept {
    const std::string_view text = text_;
    const auto end = text.size() - position_ <= 2 * pieceLength_ ? text.size() : position_ + 2 * pieceLength_;
    const auto earliest = std::min(position_ + pieceLength_, end);
    auto depth = depthOf(text.substr(position_, earliest - position_));
    for (auto position = earliest; position < end; ++position) {
        depth += depthOfBlock<1>(&text[position]);
        if (depth == 0 && text[position] == '}') {
            if (const auto next = followingObject(text, position)) {
                return Cut{position + 1, next};
            }
        }
    }
    return end == text.size() ? std::optional{Cut{end, std::nullopt}} : std::nullopt;
}

/// At the first comma between elements behind a piece's length, by reading all characters before it.
JsonArrayPieces::Cut JsonArrayPieces::certainCut() const noexcept {
    const std::string_view text = text_;
    const auto earliest = position_ + pieceLength_;
    NestingScanner scanner;
    for (auto position = position_; position < text.size(); ++position) {
        scanner.take(text[position]);
        if (position >= earliest && text[position] == ',' && scanner.depth() == 0 && !scanner.isInText()) {
            return {position, position + 1};
        }
    }
    return {text.size(), std::nullopt};
}

JsonArray JsonArrayPieces::parse(const Cut& cut) {
    // The parser's lease of the piece before ends first, so that this one gets the same parser.
    document_.reset();
    piece_.clear();
    piece_.push_back('[');
    piece_.append(text_, position_, cut.end - position_);
    if (cut.next) {
        // The last piece has the text's own end.
        piece_.push_back(']');
    }
    piece_.reserve(piece_.size() + JsonDocument::padding);
    const auto elements = document_.emplace(piece_).root().require<JsonArray>();
    // A comma without an element beside it leaves an empty piece, which by itself would be valid.
    if (elements.size() == 0 && (cut.next || hasCut_)) {
        throw invalidJson();
    }
    position_ = cut.next.value_or(text_.size());
    isComplete_ = !cut.next;
    hasCut_ = true;
    return elements;
}

RecordRoom::RecordRoom(const Bytes& text, std::size_t recordSize) noexcept
    : greatestCount_{std::max(greatestGrowth * text.size(), harmlessMemory) / recordSize} {
}

void RecordRoom::grow(std::size_t expectedCount) {
    if (count_ >= greatestCount_) {
        throw DecodingError{
            DecodingError::Kind::dataCorrupted, {}, "The list has more elements than its length allows."};
    }
    const auto wanted = std::min(expectedCount, count_ == 0 ? firstRecords : greatestStep * count_);
    count_ = std::min(std::max(wanted, 2 * count_), greatestCount_);
}

}  // namespace Tarnwick_API::Platform
