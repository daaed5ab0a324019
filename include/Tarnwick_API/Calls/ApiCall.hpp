#pragma once

#include <Tarnwick_API/Calls/ApiBase.hpp>
#include <Tarnwick_API/Calls/ApiEndpoint.hpp>
#include <Tarnwick_API/Export.hpp>
#include <Tarnwick_API/Facade/ApiEnvironment.hpp>
#include <Tarnwick_API/Platform/Application/Url.hpp>
#include <Tarnwick_API/Platform/Http/HttpRequest.hpp>

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <utility>

namespace Tarnwick_API {

struct RequestParts;

/// Where one call of the service goes.
class TARNWICK_API_EXPORT ApiCall {
public:
    ApiCall(const ApiCall&) = delete;
    ApiCall& operator=(const ApiCall&) = delete;
    virtual ~ApiCall() = default;

    /// The backend's base URL when the call was made.
    [[nodiscard]] const std::string& baseUrl() const noexcept { return baseUrl_; }
    void setBaseUrl(std::string baseUrl) { baseUrl_ = std::move(baseUrl); }

    /// The path below the base URL, without a leading slash.
    [[nodiscard]] const std::string& urlPath() const noexcept { return urlPath_; }

    /// The base URL with the path appended. A base URL that is none is a programming error and ends the
    /// process, with a sentence on the standard error stream; `ApiUrl::fault` finds it before.
    [[nodiscard]] Platform::Url url() const;

protected:
    ApiCall(std::string baseUrl, std::string urlPath) : baseUrl_{std::move(baseUrl)}, urlPath_{std::move(urlPath)} {}

private:
    std::string baseUrl_;
    std::string urlPath_;
};

/// Everything about one call of the version-1 service. Each endpoint has a class of its own; the type that its
/// answer decodes to is the class's `Answer`, where it has one. `ApiVersion1::dispatchCall` sends any of them, an
/// application's own classes included.
class TARNWICK_API_EXPORT ApiCallV1 : public ApiCall {
public:
    [[nodiscard]] Platform::HttpMethod method() const noexcept { return method_; }
    /// Headers beside the standard ones; none for most calls.
    [[nodiscard]] const std::optional<Platform::HttpHeaders>& headers() const noexcept { return headers_; }
    /// The call's own parameters and the default ones; of two with one name the default one counts.
    [[nodiscard]] std::optional<Platform::Parameters> parameters() const;
    [[nodiscard]] ApiEnvironment environment() const noexcept { return environment_; }
    [[nodiscard]] Platform::ParameterEncoding encoding() const noexcept { return encoding_; }
    [[nodiscard]] std::int64_t partnersId() const noexcept { return partnersId_; }

    /// What every call sends: "language", "region", "version", "os", "partnersId", and "clickid" when the preference
    /// "cid" is set. Made afresh from the user's locale, the main bundle and the preferences.
    [[nodiscard]] std::map<std::string, std::string> defaultParameters() const;

protected:
    ApiCallV1(ApiEndpoint endpoint, ApiBase base);

    /// The call's own parameters, without the default ones.
    [[nodiscard]] virtual Platform::Parameters ownParameters() const { return {}; }

    void setEnvironment(ApiEnvironment environment) noexcept { environment_ = environment; }
    void setEncoding(Platform::ParameterEncoding encoding) noexcept { encoding_ = encoding; }

private:
    friend struct RequestParts;

    Platform::HttpMethod method_;
    std::optional<Platform::HttpHeaders> headers_;
    ApiEnvironment environment_;
    Platform::ParameterEncoding encoding_;
    std::int64_t partnersId_;
};

}  // namespace Tarnwick_API
