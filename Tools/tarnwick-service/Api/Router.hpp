#pragma once

#include "Api/AccountApi.hpp"
#include "Api/CatalogueApi.hpp"
#include "Api/StatusApi.hpp"

#include <string_view>

namespace TarnwickService {

/// What follows the service's base path, or all of a path that does not start with it.
std::string_view pathBelowBase(std::string_view path);

/// Finds the operation that a request asks for.
class Router {
public:
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
