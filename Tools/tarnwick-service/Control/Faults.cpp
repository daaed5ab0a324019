#include "Control/Faults.hpp"

#include <algorithm>

namespace TarnwickService {
namespace {

bool isOfConnections(const Fault& fault) {
    return fault.cut == Cut::beforeHandshake;
}

bool applies(const Fault& fault, std::string_view method, std::string_view path) {
    if (isOfConnections(fault)) {
        return false;
    }
    if (!fault.method.empty() && fault.method != method) {
        return false;
    }
    if (fault.path.ends_with('*')) {
        return path.starts_with(std::string_view(fault.path).substr(0, fault.path.size() - 1));
    }
    return fault.path.empty() || fault.path == path;
}

}  // namespace

void Faults::add(Fault fault) {
    const std::lock_guard lock(mutex_);
    if (fault.count > 0) {
        faults_.push_back(std::move(fault));
    }
}

void Faults::clear() {
    const std::lock_guard lock(mutex_);
    faults_.clear();
}

std::vector<Fault> Faults::pending() const {
    const std::lock_guard lock(mutex_);
    return {faults_.begin(), faults_.end()};
}

std::optional<Fault> Faults::take(std::string_view method, std::string_view path) {
    return takeIf([&](const Fault& fault) { return applies(fault, method, path); });
}

std::optional<Fault> Faults::takeForConnection() {
    return takeIf(isOfConnections);
}

template <typename Applies>
std::optional<Fault> Faults::takeIf(const Applies& applies) {
    const std::lock_guard lock(mutex_);
    const auto found = std::ranges::find_if(faults_, applies);
    if (found == faults_.end()) {
        return std::nullopt;
    }
    Fault fault = *found;
    if (--found->count == 0) {
        faults_.erase(found);
    }
    return fault;
}

bool Faults::pause(std::chrono::milliseconds duration) {
    std::unique_lock lock(mutex_);
    return !cancelled_.wait_for(lock, duration, [this] { return pausesCancelled_; });
}

void Faults::cancelPauses() {
    {
        const std::lock_guard lock(mutex_);
        pausesCancelled_ = true;
    }
    cancelled_.notify_all();
}

void Faults::allowPauses() {
    const std::lock_guard lock(mutex_);
    pausesCancelled_ = false;
}

}  // namespace TarnwickService
