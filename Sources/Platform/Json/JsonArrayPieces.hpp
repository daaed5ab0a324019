#pragma once

#include <Tarnwick_API/Platform/Json/Json.hpp>
#include <Tarnwick_API/Platform/Text/Bytes.hpp>

#include <concepts>
#include <cstddef>
#include <exception>
#include <optional>
#include <type_traits>
#include <vector>

namespace Tarnwick_API::Platform {

/// A JSON text whose root is an array, cut between elements, when it is long, into pieces that the processor's cache
/// holds. A parsed text takes several times its length; so only that of one piece at a time does.
///
/// The cuts are found by counting brackets alone; that a piece is valid by itself proves its cut right. A piece that
/// isn't is cut again by telling texts from the rest, and so proves the text wrong when it is still not valid.
class JsonArrayPieces {
public:
    /// The parsed form of this much text, some three times as long, still fits the second-level caches of today.
    static constexpr std::size_t defaultPieceLength = std::size_t{256} * 1024;

    /// The text must outlive this. One of up to two pieces' length is not cut.
    explicit JsonArrayPieces(const Bytes& text, std::size_t pieceLength = defaultPieceLength);
    JsonArrayPieces(const JsonArrayPieces&) = delete;
    JsonArrayPieces& operator=(const JsonArrayPieces&) = delete;

    /// The next piece's elements, which are valid until the next call; none after the last piece. Throws
    /// `DecodingError` when the text is no JSON up to the end of that piece, and when its root is no array.
    [[nodiscard]] std::optional<JsonArray> next();

    /// How many elements there are in all, if those to come are as long as the `soFar` ones up to the end of this
    /// piece.
    [[nodiscard]] std::size_t expectedCount(std::size_t soFar) const noexcept;

private:
    /// Where a piece ends, and where the next one begins; no next one for the last piece.
    struct Cut {
        std::size_t end = 0;
        std::optional<std::size_t> next;
    };

    [[nodiscard]] std::optional<Cut> probableCut() const noexcept;
    [[nodiscard]] Cut certainCut() const noexcept;
    [[nodiscard]] JsonArray parse(const Cut& cut);

    const Bytes& text_;
    std::size_t pieceLength_;
    std::size_t position_ = 0;
    bool isLong_ = false;
    bool hasCut_ = false;
    bool needsCertainCuts_ = false;
    bool isComplete_ = false;
    Bytes piece_;
    std::optional<JsonDocument> document_;
};

/// How many records there is room for while the text of a list is read. They are many times as long as the elements
/// that a hostile text may be made of, so the room follows what has been read, and ends at a multiple of the text.
class RecordRoom {
public:
    RecordRoom(const Bytes& text, std::size_t recordSize) noexcept;

    [[nodiscard]] std::size_t count() const noexcept { return count_; }

    /// More of it, when all is taken; `expectedCount` is a guess at how much will do. Throws `DecodingError` when the
    /// text is too short for as many records.
    void grow(std::size_t expectedCount);

private:
    std::size_t count_ = 0;
    std::size_t greatestCount_;
};

/// Gives `read` each element of the array that is the root of `text`. The element makes a record of `recordSize` bytes;
/// `reserve` is called with the number of records to have room for before there are more. Throws `DecodingError`, with
/// the path to what is at fault, and what `read` throws. What is no JSON comes before what is wrong with an element.
template <std::invocable<std::size_t> Reserve, std::invocable<JsonValue> Read>
void readArrayText(const Bytes& text, const std::size_t recordSize, const Reserve& reserve, const Read& read) {
    JsonArrayPieces pieces{text};
    RecordRoom room{text, recordSize};
    std::size_t index = 0;
    std::exception_ptr failure;
    while (const auto elements = pieces.next()) {
        if (failure) {
            continue;
        }
        const auto soFar = index + elements->size();
        try {
            for (const JsonValue element : *elements) {
                if (index == room.count()) {
                    room.grow(pieces.expectedCount(soFar));
                    reserve(room.count());
                }
                read(element);
                ++index;
            }
        } catch (const DecodingError& error) {
            failure = std::make_exception_ptr(error.within(index));
        } catch (const std::exception&) {
            failure = std::current_exception();
        }
    }
    if (failure) {
        std::rethrow_exception(failure);
    }
}

/// The records that can be made of what `read` makes of each element; otherwise as `readArrayText`.
template <typename Record, std::invocable<JsonValue> Read>
[[nodiscard]] std::vector<Record> mapArrayText(const Bytes& text, const Read& read) {
    std::vector<Record> records;
    readArrayText(
        text, sizeof(Record), [&records](const std::size_t count) { records.reserve(count); },
        [&](const JsonValue& element) { records.emplace_back(read(element)); });
    return records;
}

}  // namespace Tarnwick_API::Platform
