#pragma once

#include <Tarnwick_API/Platform/Http/HttpRequest.hpp>
#include <Tarnwick_API/Platform/Http/HttpSession.hpp>

#include <Platform/Http/Transfers/BodyBuffer.hpp>
#include <Platform/Http/Transfers/BodyFraming.hpp>
#include <Platform/Http/Transfers/ContentDecoder.hpp>
#include <Platform/Http/Transfers/ResponseHeadParser.hpp>
#include <Platform/Http/Transport.hpp>

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

namespace Tarnwick_API::Platform {

/// Takes one answer as it comes, judges it, and decodes its body. Made anew for each, so that nothing of one tells on
/// another.
class AnswerReceiver {
public:
    /// `method`: that of the request. `configuration` must outlive this.
    AnswerReceiver(const HttpSessionConfiguration& configuration, HttpMethod method) noexcept;

    /// Take the next line of the head, or of the trailers, its line end included; the next bytes of the body. False
    /// when the answer is refused. Throw std::bad_alloc.
    /// @{
    [[nodiscard]] bool takeLine(std::string_view line);
    [[nodiscard]] bool takeBody(std::string_view bytes);
    /// @}
    /// Refuses the answer, for a callback that has met with that exception.
    void refuseForWantOfMemory() noexcept;

    [[nodiscard]] const ResponseHeadParser& head() const noexcept { return head_; }
    /// Whether all has come that the head announces.
    [[nodiscard]] bool isWhole() const noexcept;

    /// Why the answer was refused; none when it wasn't.
    [[nodiscard]] std::optional<HttpError> refusal() const;
    /// Why the answer, at whose end libcurl sees no fault, is none.
    [[nodiscard]] std::optional<HttpError> faultAtEnd() const;

    /// What has come, and with it `error`, or why the body is not whole. Once, and last.
    [[nodiscard]] TransportResult take(std::optional<HttpError> error);

private:
    struct Refusal {
        HttpError::Kind kind;
        std::string_view description;
    };

    [[nodiscard]] bool takeFraming();
    /// Returns false, for `takeLine` and `takeBody` to hand on.
    bool refuse(HttpError::Kind kind, std::string_view description) noexcept;
    [[nodiscard]] bool hasNoBody() const noexcept;

    const HttpSessionConfiguration& configuration_;
    HttpMethod method_;
    ResponseHeadParser head_;
    BodyFraming framing_;
    ContentDecoder decoder_;
    BodyBuffer body_;
    std::size_t headSize_ = 0;
    /// Bytes of the body as they came, before decoding.
    std::uint64_t received_ = 0;
    std::optional<Refusal> refusal_;
    bool isBodyTooLarge_ = false;
};

}  // namespace Tarnwick_API::Platform
