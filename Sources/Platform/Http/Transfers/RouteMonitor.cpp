#include <Platform/Http/Transfers/RouteMonitor.hpp>

namespace Tarnwick_API::Platform {

// Hosts tell of changes by `HttpSession::networkChanged`.
RouteMonitor::RouteMonitor() noexcept = default;
RouteMonitor::~RouteMonitor() = default;

bool RouteMonitor::takeChanges() noexcept {
    return false;
}

}  // namespace Tarnwick_API::Platform
