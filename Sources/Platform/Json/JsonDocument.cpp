#include <Tarnwick_API/Platform/Json/Json.hpp>

#include <Platform/Json/InvalidJson.hpp>
#include <Platform/Json/LongIntegers.hpp>
#include <Platform/Json/NestingScanner.hpp>
#include <Platform/Json/ParsedText.hpp>
#include <Platform/Text/Utf8.hpp>
#include <Platform/Text/Wiping.hpp>

#include <algorithm>
#include <bit>
#include <cstdint>
#include <new>
#include <utility>

#include <simdjson.h>

namespace Tarnwick_API::Platform {

namespace {

constexpr std::size_t greatestDepth = 512;

/// What a thread's idle parser may hold: enough for the pieces of long lists, and for most other answers whole. Beyond
/// that its memory is worth more than the time of getting it again.
constexpr std::size_t greatestMemoryToKeep = std::size_t{16} << 20U;

static_assert(JsonDocument::padding >= simdjson::SIMDJSON_PADDING);

/// Whether no container lies within `greatestDepth` others, in a text that is good JSON otherwise.
bool nestsWithinLimit(std::string_view json) noexcept {
    NestingScanner scanner;
    return std::ranges::all_of(json, [&scanner](char character) {
        scanner.take(character);
        return scanner.depth() <= greatestDepth;
    });
}

}  // namespace

class JsonDocument::Parser {
public:
    Parser() {
        if (parser_.allocate(0, greatestDepth) != simdjson::SUCCESS) {
            throw std::bad_alloc{};
        }
    }

    simdjson::error_code parse(std::string_view text, bool padded, simdjson::dom::element& root) noexcept {
        longestCopy_ = std::max(longestCopy_, padded ? 0 : text.size());
        parsed_.layouts.forgetObjects();
        auto error = parser_.parse_into_document(parsed_, text.data(), text.size(), !padded).get(root);
        // The parser counts an empty container as no level, and so refuses the last level unless it is empty.
        if (error == simdjson::DEPTH_ERROR && nestsWithinLimit(text)) {
            error = parser_.allocate(parser_.capacity(), greatestDepth + 1);
            if (error == simdjson::SUCCESS) {
                error = parser_.parse_into_document(parsed_, text.data(), text.size(), !padded).get(root);
                const auto restored = parser_.allocate(parser_.capacity(), greatestDepth);
                error = error == simdjson::SUCCESS ? restored : error;
            }
        }
        return error;
    }

    [[nodiscard]] bool isWorthKeeping() const noexcept {
        // The parser gets this much for each byte of the longest text: a value, 5/3 bytes of unescaped text, a place.
        const auto capacity = parser_.capacity();
        return capacity * (sizeof(std::uint64_t) + sizeof(std::uint32_t)) + capacity * 5 / 3 + longestCopy_ <=
               greatestMemoryToKeep;
    }

    void setSecret() noexcept { parsed_.isSecret = true; }

    /// Overwrites the texts of a secret document: it has unescaped them into a buffer of its own.
    void forget() noexcept {
        if (std::exchange(parsed_.isSecret, false)) {
            wipe(parsed_.string_buf.get(), parsed_.capacity());
        }
    }

    /// The calling thread's parser while no document uses it.
    static std::unique_ptr<Parser>& idle() noexcept {
        thread_local std::unique_ptr<Parser> parser;
        return parser;
    }

private:
    simdjson::dom::parser parser_;
    ParsedText parsed_;
    std::size_t longestCopy_ = 0;
};

void JsonDocument::GiveBack::operator()(Parser* parser) const noexcept {
    std::unique_ptr<Parser> owned{parser};
    owned->forget();
    if (owned->isWorthKeeping()) {
        Parser::idle() = std::move(owned);
    }
}

JsonDocument::Lease JsonDocument::leaseParser() {
    auto& idle = Parser::idle();
    return Lease{idle ? idle.release() : std::make_unique<Parser>().release()};
}

JsonDocument::JsonDocument(const Bytes& text, Content content) : parser_{leaseParser()} {
    if (content == Content::secret) {
        parser_->setSecret();
    }
    const auto json = withoutByteOrderMark(text);
    simdjson::dom::element root;
    simdjson::error_code error = parser_->parse(json, text.capacity() - text.size() >= padding, root);
    if (error == simdjson::NUMBER_ERROR) {
        error = parser_->parse(withLongIntegersAsReals(json), true, root);
    }
    if (error == simdjson::MEMALLOC) {
        throw std::bad_alloc{};
    }
    if (error != simdjson::SUCCESS) {
        throw invalidJson();
    }
    root_ = std::bit_cast<JsonHandle>(root);
}

}  // namespace Tarnwick_API::Platform
