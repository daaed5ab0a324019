#pragma once

#include <Platform/Http/Transfers/Redirects.hpp>
#include <Platform/Http/Transport.hpp>

#include <memory>

namespace Tarnwick_API::Platform {

class TransferGroup;

/// What may stop an exchange.
struct ExchangeStop {
    StopToken token;
    /// Has the I/O thread look at the token for as long as this lives.
    StopToken::Registration watch = {};
};

/// One request on its way, from `CurlTransport::transfer` to its answer.
struct Exchange {
    std::shared_ptr<TransferGroup> group;
    std::shared_ptr<const HttpRequest> request;
    Transport::OnAnswer onAnswer;
    /// None when nothing may stop it.
    std::unique_ptr<ExchangeStop> stop = nullptr;
    /// None before the first redirect.
    std::unique_ptr<Hop> hop = nullptr;
    /// It met a connection that takes no further requests but still carries others: libcurl would choose that again.
    bool needsOwnConnection = false;

    [[nodiscard]] bool isStopped() const { return stop && stop->token.isStopped(); }
    [[nodiscard]] const Url& url() const noexcept { return hop ? hop->url : request->url(); }
    [[nodiscard]] HttpMethod method() const noexcept { return hop ? hop->method : request->method(); }
    /// The body to send now, or null.
    [[nodiscard]] const Bytes* body() const noexcept {
        const auto& own = request->body();
        return own && (!hop || hop->sendsBody) ? &*own : nullptr;
    }
};

/// Ends an exchange with what came of it, which is moved.
void complete(Exchange exchange, TransportResult result);
void complete(Exchange exchange, HttpAnswer answer);

}  // namespace Tarnwick_API::Platform
