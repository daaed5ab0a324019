#include <Facade/FacadeUse.hpp>

#include <cstdio>
#include <exception>

namespace Tarnwick_API {

TarnwickApi::Use::Use(const TarnwickApi& facade, [[maybe_unused]] const char* operation) noexcept
    : facade_{facade.shared_from_this()}, backend_{facade.api_} {
#ifndef NDEBUG
    std::thread::id user;
    if (facade.user_.compare_exchange_strong(user, std::this_thread::get_id())) {
        facade.usedFor_ = operation;
        isOutermost_ = true;
    } else if (user != std::this_thread::get_id()) {
        const char* const other = facade.usedFor_;
        std::fprintf(stderr, "Tarnwick_API: TarnwickApi is used by two threads at once, here for %s, there for %s\n",
                     operation, other == nullptr ? "another operation" : other);
        std::terminate();
    }
#endif
}

TarnwickApi::Use::~Use() {
    if (isOutermost_) {
        facade_->usedFor_ = nullptr;
        facade_->user_ = std::thread::id{};
    }
}

}  // namespace Tarnwick_API
