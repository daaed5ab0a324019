#pragma once

#include <Tarnwick_API/Calls/ApiResult.hpp>
#include <Tarnwick_API/Calls/Completion.hpp>
#include <Tarnwick_API/Platform/Json/Json.hpp>
#include <Tarnwick_API/Platform/Json/JsonDecoder.hpp>

#include <Calls/DeliverCompletion.hpp>

#include <exception>
#include <optional>
#include <utility>
#include <vector>

namespace Tarnwick_API {

/// An operation and where it stands, for the log.
struct Operation {
    constexpr explicit Operation(const char* operationName, const char* itsFile = __builtin_FILE(),
                                 int itsLine = __builtin_LINE())
        : name{operationName}, file{itsFile}, line{itsLine} {}

    const char* name;
    const char* file;
    int line;
};

/// Writes to the debug channel why, and where in it, an answer could not be decoded. The errors of decoding repeat no
/// text of an answer, at most a number that is too long.
void logDecodingFailure(const Operation& operation, const std::exception& error);

/// What `decode` (from bytes to an `Answer`, throwing when it can't) makes of a body; none, and a line in the log, when
/// it throws.
template <typename Answer, typename Decode>
[[nodiscard]] std::optional<Answer> decodedOrLogged(const Operation& operation, const Decode& decode,
                                                    const Platform::Bytes& body) {
    try {
        return decode(body);
    } catch (const std::exception& error) {
        logDecodingFailure(operation, error);
        return std::nullopt;
    }
}

/// Completes with what `decode` makes of the body, or with the request's error, which is none when only the decoding
/// failed.
template <typename Answer, typename Decode>
void deliverDecoded(const Operation& operation, const Decode& decode, std::optional<Platform::Bytes>&& body,
                    ApiResult&& result, const Completion<Answer>& onCompletion) {
    auto answer = body && !result.error ? decodedOrLogged<Answer>(operation, decode, *body) : std::optional<Answer>{};
    body.reset();
    deliver(onCompletion, std::move(answer), std::move(result.error));
}

/// A request completion that does so. What it is made with takes room in each request that waits: the operation
/// doesn't.
template <typename Answer, const Operation& operation, typename Decode>
[[nodiscard]] RequestCompletion decodingCompletion(Decode decode, Completion<Answer> onCompletion) {
    return [decode = std::move(decode), onCompletion = std::move(onCompletion)](std::optional<Platform::Bytes> body,
                                                                                ApiResult result) {
        deliverDecoded<Answer>(operation, decode, std::move(body), std::move(result), onCompletion);
    };
}

/// The same with a function to decode, which takes no room either.
template <typename Answer, const Operation& operation, auto decode>
[[nodiscard]] RequestCompletion decodingCompletion(Completion<Answer> onCompletion) {
    return [onCompletion = std::move(onCompletion)](std::optional<Platform::Bytes> body, ApiResult result) {
        deliverDecoded<Answer>(operation, decode, std::move(body), std::move(result), onCompletion);
    };
}

template <Platform::Decodable Record>
[[nodiscard]] Record decodeRecord(const Platform::Bytes& body) {
    return Platform::JsonDecoder{}.decode<Record>(body);
}

/// As `decodeRecord`, and leaves nothing of the text in the parser's memory.
template <Platform::Decodable Record>
[[nodiscard]] Record decodeSecretRecord(const Platform::Bytes& body) {
    const Platform::JsonDocument document{body, Platform::JsonDocument::Content::secret};
    return Record::decode(document.root().template require<Platform::JsonObject>(), Platform::JsonDecoder{});
}

template <Platform::Decodable Record>
[[nodiscard]] std::vector<Record> decodeRecords(const Platform::Bytes& body) {
    return Platform::JsonDecoder{}.decodeArray<Record>(body);
}

}  // namespace Tarnwick_API
