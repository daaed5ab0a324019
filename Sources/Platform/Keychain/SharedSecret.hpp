#pragma once

#include <Platform/Text/Wiping.hpp>

#include <memory>
#include <utility>

namespace Tarnwick_API::Platform {

/// What carries a secret as its `data` (an item, changes of one) to another thread. It is overwritten when the last of
/// those who share it is done.
template <typename Carrier>
[[nodiscard]] std::shared_ptr<const Carrier> sharedSecret(Carrier carrier) {
    struct Wiped {
        Wiped() = default;
        Wiped(const Wiped&) = delete;
        Wiped& operator=(const Wiped&) = delete;
        ~Wiped() {
            if (carrier.data) {
                wipe(*carrier.data);
            }
        }
        Carrier carrier;
    };
    const auto wiped = std::make_shared<Wiped>();
    wiped->carrier = std::move(carrier);
    return {wiped, &wiped->carrier};
}

}  // namespace Tarnwick_API::Platform
