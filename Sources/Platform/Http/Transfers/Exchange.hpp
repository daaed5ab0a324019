#pragma once

#include <Tarnwick_API/Platform/Concurrency/MainQueue.hpp>
#include <Tarnwick_API/Platform/Http/HttpSession.hpp>

#include <Platform/Http/Caching/CacheUse.hpp>
#include <Platform/Http/Transfers/Redirects.hpp>

#include <memory>

namespace Tarnwick_API::Platform {

class SessionState;

/// One request on its way, from `HttpSession::send` to its completion.
struct Exchange {
    std::shared_ptr<SessionState> session;
    std::shared_ptr<const HttpRequest> request;
    HttpSession::Completion completion;
    std::shared_ptr<MainQueue> queue;
    /// None before the first redirect.
    std::unique_ptr<Hop> hop;
    /// None without a cache, and for what no cache has to know of.
    std::unique_ptr<CacheUse> cacheUse = nullptr;

    [[nodiscard]] const Url& url() const noexcept { return hop ? hop->url : request->url(); }
    [[nodiscard]] HttpMethod method() const noexcept { return hop ? hop->method : request->method(); }
    /// The request's own headers to send now. What was asked about a stored answer concerns no other URL.
    [[nodiscard]] const HttpHeaders& headers() const noexcept {
        return !hop && cacheUse && cacheUse->conditional ? cacheUse->conditional->headers() : request->headers();
    }
    /// The body to send now, or null.
    [[nodiscard]] const Bytes* body() const noexcept {
        const auto& own = request->body();
        return own && (!hop || hop->sendsBody) ? &*own : nullptr;
    }
};

/// Hands `answer` to the completion, on the exchange's queue and without copying the body.
void complete(Exchange exchange, HttpAnswer answer);

/// `complete`, by way of the cache when the exchange has one.
void conclude(Exchange exchange, HttpAnswer answer);

/// Completes an exchange that came to no answer.
void fail(Exchange exchange, HttpError error);

}  // namespace Tarnwick_API::Platform
