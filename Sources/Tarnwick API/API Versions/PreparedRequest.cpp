#include "PreparedRequest.hpp"

#include <utility>

#include "SecretHiding.hpp"

namespace Tarnwick_API {

std::shared_ptr<const PreparedRequest> prepareRequest(Platform::HttpMethod method, const Platform::Url& url,
                                                      const Platform::Parameters& parameters,
                                                      Platform::ParameterEncoding encoding,
                                                      Platform::HttpHeaders headers, const std::string& host) {
    auto shown =
        SecretHiding::isWanted() ? SecretHiding::shownRequest(method, url, parameters, encoding, headers) : nullptr;
    return std::make_shared<const PreparedRequest>(PreparedRequest{
        url, Platform::HttpRequest{method, url, parameters, encoding, std::move(headers)}.withHeader("Host", host),
        std::move(shown)});
}

RequestParts::RequestParts(const ApiCallV1& call)
    : method{call.method()},
      baseUrl{call.baseUrl()},
      urlPath{call.urlPath()},
      ownParameters{call.ownParameters()},
      defaultParameters{DefaultParameters::current(call.partnersId())},
      encoding{call.encoding()} {
}

Platform::Parameters RequestParts::parameters() const {
    auto parameters = ownParameters;
    defaultParameters.assignTo(parameters);
    return parameters;
}

std::shared_ptr<const PreparedRequest> LastRequest::prepare(const ApiCallV1& call, RequestParts parts) {
    const bool isHidden = SecretHiding::isWanted();
    if (request_ && !isHidden && parts_ == parts) {
        return request_;
    }
    const auto url = call.url();
    const auto parameters = parts.parameters();
    auto shown =
        isHidden ? SecretHiding::shownRequest(parts.method, url, parameters, parts.encoding, parts.headers->fields())
                 : nullptr;
    auto request = std::make_shared<const PreparedRequest>(PreparedRequest{
        url, Platform::RequestHeaders::request(parts.headers, parts.method, url, parameters, parts.encoding),
        std::move(shown)});
    if (!request->request.body()) {
        parts_ = std::move(parts);
        request_ = request;
    }
    return request;
}

}  // namespace Tarnwick_API
