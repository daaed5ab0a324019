// A coded body decodes, within its limit, to the same in whatever pieces it comes, and is not whole without its end.

#include <Platform/Http/Transfers/ContentDecoder.hpp>

#include "FuzzTarget.hpp"

#include <optional>

using namespace Tarnwick_API::Platform;

/// None when it is not taken, or does not come to its end.
std::optional<Bytes> decoded(ContentCoding coding, std::string_view bytes, std::size_t piece, std::size_t limit) {
    static ContentDecoder decoder;  // keeps its state from one body to the next, as that of a transfer does
    BodyBuffer body;
    body.begin(limit);
    decoder.begin(coding);
    for (; !bytes.empty(); bytes.remove_prefix(std::min(piece, bytes.size()))) {
        if (decoder.decode(bytes.substr(0, piece), body) != ContentDecoder::Outcome::taken) {
            return std::nullopt;
        }
    }
    auto taken = body.take();
    require(taken.size() <= limit, "no body is longer than its limit");
    return decoder.isInStream() ? std::nullopt : std::optional{taken};
}

void fuzz(FuzzInput input) {
    const auto coding = static_cast<ContentCoding>(input.choice(3));
    const auto piece = 1 + input.number<std::uint8_t>() % std::size_t{64};
    const std::size_t limit = input.number<std::uint16_t>();
    const auto bytes = input.rest();
    require(decoded(coding, bytes, bytes.size() + 1, limit) == decoded(coding, bytes, piece, limit),
            "pieces make the whole");

    const auto coded = coding != ContentCoding::identity && !bytes.empty();
    const auto whole = decoded(coding, bytes, piece, 2 * limit);
    require(!coded || !whole || !decoded(coding, bytes.substr(0, bytes.size() - 1), piece, limit), "a cut body is not");
    require(coding != ContentCoding::gzip || !whole || decoded(coding, bytes + bytes, 1, 4 * limit) == *whole + *whole,
            "streams follow each other");
}
