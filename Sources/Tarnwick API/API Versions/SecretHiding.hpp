#pragma once

#include <Tarnwick_API/Platform/Application/Url.hpp>
#include <Tarnwick_API/Platform/Http/HttpRequest.hpp>

#include <memory>
#include <string>

namespace Tarnwick_API {

/// Requests as a log may show them that nobody but the user should be able to use: each value that is not known to be
/// harmless reads "HIDDEN". What is known is the service's: the words of its paths, and the names of those headers and
/// parameters whose values are the same for every user. So a parameter that is added later is hidden until somebody
/// decides otherwise, and so is whatever an application sends of its own.
namespace SecretHiding {

/// Whether there is a log, and it hides secrets.
[[nodiscard]] bool isWanted() noexcept;

[[nodiscard]] Platform::HttpHeaders shown(Platform::HttpHeaders headers);
[[nodiscard]] Platform::Parameters shown(Platform::Parameters parameters);
/// Without user information and fragment.
[[nodiscard]] std::string shown(const Platform::Url& url);

/// A request of these that hides what the headers, parameters and URL must not show. It is for rendering alone.
[[nodiscard]] std::shared_ptr<const Platform::HttpRequest> shownRequest(Platform::HttpMethod method,
                                                                        const Platform::Url& url,
                                                                        const Platform::Parameters& parameters,
                                                                        Platform::ParameterEncoding encoding,
                                                                        const Platform::HttpHeaders& headers);

/// The same of a request whose parameters are not at hand any more: of its body there is only that it has one.
[[nodiscard]] std::shared_ptr<const Platform::HttpRequest> shownRequest(const Platform::HttpRequest& request);

/// What stands for an answer's body.
[[nodiscard]] std::string shownBody(const Platform::Bytes& body);

}  // namespace SecretHiding

}  // namespace Tarnwick_API
