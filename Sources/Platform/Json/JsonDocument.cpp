#include <Tarnwick_API/Platform/Json/Json.hpp>

#include <Platform/Json/LongIntegers.hpp>
#include <Platform/Text/Utf8.hpp>
#include <Platform/Text/Wiping.hpp>

#include <bit>
#include <new>
#include <utility>

#include <simdjson.h>

namespace Tarnwick_API::Platform {

namespace {

constexpr std::size_t greatestDepth = 512;

/// A parser keeps some three times the longest text it has read. Beyond this length its memory is worth more than the
/// time of getting it again.
constexpr std::size_t longestTextToKeepBuffersFor = std::size_t{8} << 20U;

static_assert(JsonDocument::padding >= simdjson::SIMDJSON_PADDING);

}  // namespace

class JsonDocument::Parser {
public:
    Parser() {
        if (parser_.allocate(0, greatestDepth) != simdjson::SUCCESS) {
            throw std::bad_alloc{};
        }
    }

    simdjson::error_code parse(std::string_view text, bool padded, simdjson::dom::element& root) noexcept {
        return parser_.parse(text.data(), text.size(), !padded).get(root);
    }

    [[nodiscard]] bool isWorthKeeping() const noexcept { return parser_.capacity() <= longestTextToKeepBuffersFor; }

    void setSecret() noexcept { isSecret_ = true; }

    /// Overwrites the texts of a secret document: it has unescaped them into a buffer of its own.
    void forget() noexcept {
        if (std::exchange(isSecret_, false)) {
            wipe(parser_.doc.string_buf.get(), parser_.doc.capacity());
        }
    }

    /// The calling thread's parser while no document uses it.
    static std::unique_ptr<Parser>& idle() noexcept {
        thread_local std::unique_ptr<Parser> parser;
        return parser;
    }

private:
    simdjson::dom::parser parser_;
    bool isSecret_ = false;
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
        throw DecodingError{DecodingError::Kind::dataCorrupted, {}, "The given data was not valid JSON."};
    }
    root_ = std::bit_cast<JsonHandle>(root);
}

}  // namespace Tarnwick_API::Platform
