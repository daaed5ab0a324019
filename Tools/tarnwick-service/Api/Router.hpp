#pragma once

#include "Api/AccountApi.hpp"
#include "Api/CatalogueApi.hpp"
#include "Api/StatusApi.hpp"

#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace TarnwickService {

/// What follows the service's base path, or all of a path that does not start with it.
std::string_view pathBelowBase(std::string_view path);

/// Finds the operation that a request asks for.
class Router {
public:
    /// What a path goes on with behind that of its operation.
    enum class Rest { none, number, text };

    struct Operation {
        std::string_view method;
        /// Below the base path.
        std::string_view path;
        Rest rest;
        Answer (*serve)(const Router& router, const Request& request, std::string_view rest);

        /// The path for people, with '*' for its rest.
        std::string pattern() const;
        /// What a path below the base has behind this one's; none when it is not this one's.
        std::optional<std::string_view> restOf(std::string_view path) const;
    };

    /// All that the service can be asked.
    static std::span<const Operation> operations();

    /// The arguments must outlive the router.
    Router(const RequestCheck& check, AccountApi& accounts, CatalogueApi& catalogue, const StatusApi& status)
        : check_(check), accounts_(accounts), catalogue_(catalogue), status_(status) {}

    Answer answer(const Request& request) const;

private:
    const RequestCheck& check_;
    AccountApi& accounts_;
    CatalogueApi& catalogue_;
    const StatusApi& status_;
};

}  // namespace TarnwickService
