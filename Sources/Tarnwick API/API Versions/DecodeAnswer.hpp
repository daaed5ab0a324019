#pragma once

#include <Tarnwick_API/Calls/ApiResult.hpp>
#include <Tarnwick_API/Calls/Completion.hpp>

#include <Calls/DeliverCompletion.hpp>

#include <exception>
#include <optional>
#include <utility>

namespace Tarnwick_API {

/// A request completion that decodes the body with `decode` (from bytes to an `Answer`, throwing when it can't) and
/// completes with the answer, or with the request's error, which is none when only the decoding failed.
template <typename Answer, typename Decode>
[[nodiscard]] RequestCompletion decodingCompletion(Decode decode, Completion<Answer> onCompletion) {
    return [decode = std::move(decode), onCompletion = std::move(onCompletion)](std::optional<Platform::Bytes> body,
                                                                                ApiResult result) {
        std::optional<Answer> answer;
        if (body && !result.error) {
            try {
                answer = decode(*body);
            } catch (const std::exception&) {
                answer.reset();
            }
            body.reset();
        }
        deliver(onCompletion, std::move(answer), std::move(result.error));
    };
}

}  // namespace Tarnwick_API
