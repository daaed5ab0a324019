#pragma once

#include <Tarnwick_API/Facade/ApiCommunicateable.hpp>

#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace Testing {

/// A backend that holds every completion until the test answers it, and keeps the arguments it was given.
class HeldBackend final : public Tarnwick_API::ApiCommunicateable {
public:
    template <typename T>
    using Completion = Tarnwick_API::Completion<T>;

    std::optional<std::string> name;
    Tarnwick_API::ApiEnvironment selected = Tarnwick_API::ApiEnvironment::live;
    bool fallback = false;
    /// The arguments of every operation, as one line each.
    std::vector<std::string> asked;

    Completion<void> pendingVoid;
    Completion<Tarnwick_API::User> pendingUser;
    Completion<Tarnwick_API::Status> pendingStatus;

    [[nodiscard]] std::optional<std::string> username() const override { return name; }
    [[nodiscard]] Tarnwick_API::ApiEnvironment environment() const override { return selected; }
    void setEnvironment(Tarnwick_API::ApiEnvironment environment) override { selected = environment; }
    [[nodiscard]] std::string apiHost() const override { return "host"; }
    [[nodiscard]] std::string baseUrl() const override { return "base"; }
    [[nodiscard]] std::string fallbackIp() const override { return "address"; }
    [[nodiscard]] bool useFallbackIp() const override { return fallback; }
    void setUseFallbackIp(bool useFallbackIp) override { fallback = useFallbackIp; }

    void currentUser(Completion<Tarnwick_API::User> onCompletion) override {
        asked.emplace_back("currentUser");
        pendingUser = std::move(onCompletion);
    }
    void login(const std::string& username, const std::string& password, bool qvImport,
               Completion<void> onCompletion) override {
        asked.push_back("login " + username + " " + password + (qvImport ? " import" : ""));
        pendingVoid = std::move(onCompletion);
    }
    void logout(Completion<void> onCompletion) override {
        asked.emplace_back("logout");
        pendingVoid = std::move(onCompletion);
    }
    void setToken(const std::string& token, const std::string& secret,
                  Completion<Tarnwick_API::User> onCompletion) override {
        asked.push_back("setToken " + token + " " + secret);
        pendingUser = std::move(onCompletion);
    }
    void getCountries(std::int64_t filterId, std::optional<double> latitude, std::optional<double> longitude,
                      Completion<std::vector<Tarnwick_API::Country>> /*onCompletion*/) override {
        asked.push_back("getCountries " + std::to_string(filterId) + text(latitude) + text(longitude));
    }
    void getServers(std::int64_t filterId, const std::string& countryCode, std::optional<double> latitude,
                    std::optional<double> longitude,
                    Completion<std::vector<Tarnwick_API::Server>> /*onCompletion*/) override {
        asked.push_back("getServers " + std::to_string(filterId) + " " + countryCode + text(latitude) +
                        text(longitude));
    }
    void getServer(std::int64_t id, Completion<Tarnwick_API::Server> /*onCompletion*/) override {
        asked.push_back("getServer " + std::to_string(id));
    }
    void getCandidateServers(std::int64_t filterId, const std::optional<std::string>& countryCode,
                             std::optional<std::int64_t> serviceId,
                             Completion<std::vector<Tarnwick_API::Server>> /*onCompletion*/) override {
        asked.push_back("getCandidateServers " + std::to_string(filterId) + " " + countryCode.value_or("-") +
                        (serviceId ? " " + std::to_string(*serviceId) : " -"));
    }
    void updateUser(Tarnwick_API::UserField field, const std::string& newValue,
                    Completion<void> onCompletion) override {
        asked.push_back("updateUser " + std::string{updateParameter(field)} + " " + newValue);
        pendingVoid = std::move(onCompletion);
    }
    void createUser(const std::string& username, const std::string& password, Completion<void> onCompletion) override {
        asked.push_back("createUser " + username + " " + password);
        pendingVoid = std::move(onCompletion);
    }
    void getStatus(Completion<Tarnwick_API::Status> onCompletion) override {
        asked.emplace_back("getStatus");
        pendingStatus = std::move(onCompletion);
    }
    void getAuthToken(Completion<std::string> /*onCompletion*/) override { asked.emplace_back("getAuthToken"); }
    void getDevices(Completion<std::vector<Tarnwick_API::Device>> /*onCompletion*/) override {
        asked.emplace_back("getDevices");
    }
    void getDefaultFavorites(std::int64_t filterId,
                             Completion<std::vector<Tarnwick_API::FavoriteEntry>> /*onCompletion*/) override {
        asked.push_back("getDefaultFavorites " + std::to_string(filterId));
    }
    void sendRequest(const Tarnwick_API::Platform::Url& /*url*/,
                     const Tarnwick_API::Platform::Parameters& /*parameters*/,
                     Tarnwick_API::Platform::ParameterEncoding /*encoding*/,
                     const Tarnwick_API::Platform::HttpHeaders& /*headers*/,
                     Tarnwick_API::Platform::HttpMethod /*method*/, std::int64_t /*retryCount*/,
                     Tarnwick_API::RequestCompletion /*onCompletion*/) override {}

private:
    static std::string text(std::optional<double> coordinate) {
        return coordinate ? " " + std::to_string(*coordinate) : " -";
    }
};

}  // namespace Testing
