#pragma once

#include <Tarnwick_API/Calls/ApiResult.hpp>
#include <Tarnwick_API/Calls/Completion.hpp>

#include <Tarnwick API/Calls/DeliverCompletion.hpp>

#include <optional>
#include <utility>

namespace Tarnwick_API {

/// A request completion that decodes the body with `decode` (bytes to optional `Answer`) and completes with the answer,
/// or with the request's error, which is none when only the decoding failed.
template <typename Answer, typename Decode>
[[nodiscard]] RequestCompletion decodingCompletion(Decode decode, Completion<Answer> onCompletion) {
    return [decode = std::move(decode), onCompletion = std::move(onCompletion)](std::optional<Platform::Bytes> body,
                                                                                ApiResult result) {
        std::optional<Answer> answer;
        if (body && !result.error) {
            answer = decode(*body);
        }
        deliver(onCompletion, std::move(answer), std::move(result.error));
    };
}

}  // namespace Tarnwick_API
