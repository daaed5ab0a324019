#include "Api/Router.hpp"

namespace TarnwickService {
namespace {

constexpr std::string_view basePath = "/vb/";

}  // namespace

std::string_view pathBelowBase(std::string_view path) {
    return path.starts_with(basePath) ? path.substr(basePath.size()) : path;
}

std::string Router::Operation::pattern() const {
    return std::string(path) + (rest == Rest::none ? "" : "*");
}

std::optional<std::string_view> Router::Operation::restOf(std::string_view given) const {
    const bool fits = rest == Rest::none ? given == path : given.starts_with(path);
    return fits ? std::optional(given.substr(path.size())) : std::nullopt;
}

std::span<const Router::Operation> Router::operations() {
    using std::string_view;
    static constexpr Operation all[] = {
        {"GET", "status", Rest::none,
         [](const Router& router, const Request& request, string_view) { return router.status_.status(request); }},
        {"GET", "servers", Rest::none,
         [](const Router& router, const Request& request, string_view) { return router.catalogue_.list(request); }},
        {"GET", "servers/", Rest::number,
         [](const Router& router, const Request& request, string_view id) {
             return router.catalogue_.server(request, id);
         }},
        {"POST", "oauth/access_token", Rest::none,
         [](const Router& router, const Request& request, string_view) {
             return router.accounts_.issueToken(request);
         }},
        {"POST", "users", Rest::none,
         [](const Router& router, const Request& request, string_view) {
             return router.accounts_.createAccount(request);
         }},
        {"GET", "users/me", Rest::none,
         [](const Router& router, const Request& request, string_view) {
             return router.accounts_.currentAccount(request);
         }},
        {"PUT", "users/me", Rest::none,
         [](const Router& router, const Request& request, string_view) {
             return router.accounts_.updateAccount(request);
         }},
        {"GET", "users/me/authtoken", Rest::none,
         [](const Router& router, const Request& request, string_view) {
             return router.accounts_.authenticationToken(request);
         }},
        {"GET", "users/me/access_tokens", Rest::none,
         [](const Router& router, const Request& request, string_view) { return router.accounts_.devices(request); }},
        {"DELETE", "users/me/access_tokens/", Rest::text,
         [](const Router& router, const Request& request, string_view token) {
             return router.accounts_.revokeToken(request, token);
         }},
    };
    return all;
}

Answer Router::answer(const Request& request) const {
    check_.host(request);
    const std::string_view path = pathBelowBase(request.path());
    std::string allowed;
    if (path.size() != request.path().size()) {
        for (const Operation& operation : operations()) {
            const auto rest = operation.restOf(path);
            if (rest && operation.method == request.method) {
                return operation.serve(*this, request, *rest);
            }
            if (rest) {
                allowed.append(allowed.empty() ? "" : ", ").append(operation.method);
            }
        }
    }
    if (allowed.empty()) {
        return plainText(404, "Not found");
    }
    Answer answer = plainText(405, "Method not allowed");
    answer.headers.emplace_back("Allow", allowed);
    return answer;
}

}  // namespace TarnwickService
