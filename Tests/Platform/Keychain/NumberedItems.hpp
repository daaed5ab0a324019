#pragma once

#include <Tarnwick_API/Platform/Keychain/KeychainStore.hpp>

#include <chrono>
#include <csignal>
#include <ctime>
#include <string>

namespace Tarnwick_API::Platform {

// Items each of whose parts has the same number, so that half a write shows.

inline Bytes secretOf(unsigned long number) {
    Bytes bytes;
    while (bytes.size() < 5'000) {
        bytes += std::to_string(number);
        bytes += '.';
    }
    return bytes;
}

inline KeychainItem itemOf(const std::string& service, unsigned long number) {
    const auto text = std::to_string(number);
    return {service, text, secretOf(number), "label", {}, text};
}

inline KeychainChanges changesOf(unsigned long number) {
    const auto text = std::to_string(number);
    return {.account = text, .data = secretOf(number), .comment = text};
}

/// The number of an item that is whole.
inline std::optional<unsigned long> numberOf(const KeychainAnswer& answer) {
    const auto* const item = std::get_if<KeychainDictionary>(&answer.value);
    if (item == nullptr || !item->account || item->account != item->comment) {
        return std::nullopt;
    }
    const auto number = std::stoul(*item->account);
    return item->data == secretOf(number) ? std::optional{number} : std::nullopt;
}

/// Has the system kill this process after `lifetime`.
inline bool killAfter(std::chrono::nanoseconds lifetime) {
    sigevent event{};
    event.sigev_notify = SIGEV_SIGNAL;
    event.sigev_signo = SIGKILL;
    timer_t timer{};
    const itimerspec end{{}, {lifetime / std::chrono::seconds{1}, (lifetime % std::chrono::seconds{1}).count()}};
    return ::timer_create(CLOCK_MONOTONIC, &event, &timer) == 0 && ::timer_settime(timer, 0, &end, nullptr) == 0;
}

}  // namespace Tarnwick_API::Platform
