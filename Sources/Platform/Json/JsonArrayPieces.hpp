#pragma once

#include <Tarnwick_API/Platform/Json/Json.hpp>
#include <Tarnwick_API/Platform/Text/Bytes.hpp>

#include <concepts>
#include <cstddef>
#include <exception>
#include <optional>
#include <type_traits>
#include <utility>
#include <vector>

namespace Tarnwick_API::Platform {

/// A long JSON text whose root is an array, cut between elements into pieces that the processor's cache holds. A parsed
/// text takes several times its length; so only that of one piece at a time does.
///
/// The cuts are found without reading the text up to there; that a piece is valid by itself proves its cut right. So
/// pieces that are all valid make a valid text, but an invalid one says nothing about what is wrong with the text.
class JsonArrayPieces {
public:
    /// The text must outlive this.
    explicit JsonArrayPieces(const Bytes& text);
    JsonArrayPieces(const JsonArrayPieces&) = delete;
    JsonArrayPieces& operator=(const JsonArrayPieces&) = delete;

    /// The next piece's elements, which are valid until the next call; none after the last piece, and when a piece was
    /// not valid.
    [[nodiscard]] std::optional<JsonArray> next();

    /// Whether all pieces have been read and were valid.
    [[nodiscard]] bool isComplete() const noexcept { return isComplete_; }

    /// How many elements there are in all, if those to come are as long as the `read` ones so far.
    [[nodiscard]] std::size_t expectedCount(std::size_t read) const noexcept;

    /// Whether the text is long enough to be cut.
    [[nodiscard]] static bool isWorthwhile(const Bytes& text) noexcept;

private:
    /// Where a piece ends, and where the next one begins; no next one for the last piece.
    struct Cut {
        std::size_t end = 0;
        std::optional<std::size_t> next;
    };

    [[nodiscard]] Cut probableCut() const noexcept;
    [[nodiscard]] Cut certainCut() const noexcept;
    [[nodiscard]] bool parse(const Cut& cut);

    const Bytes& text_;
    std::optional<std::size_t> position_;
    Bytes piece_;
    std::optional<JsonDocument> document_;
    bool needsCertainCuts_ = false;
    bool isComplete_ = false;
};

/// Gives `read` each element of the array that is the root of `text`, after `begin` the number of elements expected.
/// Throws `DecodingError`, with the path to what is at fault, and what `read` throws. A text with anything wrong is
/// read from the beginning once more, for the error and its place; so both may be called again.
template <std::invocable<std::size_t> Begin, std::invocable<JsonValue> Read>
void readArrayText(const Bytes& text, const Begin& begin, const Read& read) {
    if (JsonArrayPieces::isWorthwhile(text)) {
        try {
            JsonArrayPieces pieces{text};
            bool hasBegun = false;
            while (const auto elements = pieces.next()) {
                if (!std::exchange(hasBegun, true)) {
                    begin(pieces.expectedCount(elements->size()));
                }
                for (const JsonValue element : *elements) {
                    read(element);
                }
            }
            if (pieces.isComplete()) {
                return;
            }
        } catch (const std::exception&) {
            // Read as a whole below, the text tells what is wrong first, and where.
        }
    }
    const JsonDocument document{text};
    const auto elements = document.root().template require<JsonArray>();
    begin(elements.size());
    elements.forEach(read);
}

/// What `read` makes of each element; otherwise as `readArrayText`.
template <std::invocable<JsonValue> Read>
[[nodiscard]] auto mapArrayText(const Bytes& text, const Read& read) {
    std::vector<std::invoke_result_t<Read, JsonValue>> results;
    readArrayText(
        text,
        [&results](const std::size_t expectedCount) {
            results.clear();
            results.reserve(expectedCount);
        },
        [&](const JsonValue& element) { results.push_back(read(element)); });
    return results;
}

}  // namespace Tarnwick_API::Platform
