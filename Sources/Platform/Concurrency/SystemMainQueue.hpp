#pragma once

#include <Tarnwick_API/Platform/Concurrency/MainQueue.hpp>

namespace Tarnwick_API::Platform {

/// The queue of a program that has installed none, always the same one.
[[nodiscard]] std::shared_ptr<MainQueue> systemMainQueue();

}  // namespace Tarnwick_API::Platform
