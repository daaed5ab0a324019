#include "Api/Router.hpp"

namespace TarnwickService {
namespace {

constexpr std::string_view basePath = "/vb/";
constexpr std::string_view sessionsPath = "users/me/access_tokens/";
constexpr std::string_view serversPath = "servers/";

Answer wrongMethod(const char* allowed) {
    Answer answer = plainText(405, "Method not allowed");
    answer.headers.emplace_back("Allow", allowed);
    return answer;
}

}  // namespace

std::string_view pathBelowBase(std::string_view path) {
    return path.starts_with(basePath) ? path.substr(basePath.size()) : path;
}

Answer Router::answer(const Request& request) const {
    check_.host(request);
    const std::string_view path = pathBelowBase(request.path());
    const bool isGet = request.method == "GET";
    const bool isPost = request.method == "POST";
    if (path.size() == request.path().size()) {
        return plainText(404, "Not found");
    }
    if (path == "status") {
        return isGet ? status_.status(request) : wrongMethod("GET");
    }
    if (path == "servers") {
        return isGet ? catalogue_.list(request) : wrongMethod("GET");
    }
    if (path.starts_with(serversPath)) {
        return isGet ? catalogue_.server(request, path.substr(serversPath.size())) : wrongMethod("GET");
    }
    if (path == "oauth/access_token") {
        return isPost ? accounts_.issueToken(request) : wrongMethod("POST");
    }
    if (path == "users") {
        return isPost ? accounts_.createAccount(request) : wrongMethod("POST");
    }
    if (path == "users/me") {
        if (request.method == "PUT") {
            return accounts_.updateAccount(request);
        }
        return isGet ? accounts_.currentAccount(request) : wrongMethod("GET, PUT");
    }
    if (path == "users/me/authtoken") {
        return isGet ? accounts_.authenticationToken(request) : wrongMethod("GET");
    }
    if (path == "users/me/access_tokens") {
        return isGet ? accounts_.devices(request) : wrongMethod("GET");
    }
    if (path.starts_with(sessionsPath)) {
        return request.method == "DELETE" ? accounts_.revokeToken(request, path.substr(sessionsPath.size()))
                                          : wrongMethod("DELETE");
    }
    return plainText(404, "Not found");
}

}  // namespace TarnwickService
