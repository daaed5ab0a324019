#pragma once

#include <Tarnwick_API/Records/OAuthToken.hpp>
#include <Tarnwick_API/Tarnwick_API.hpp>

#include "Service.hpp"

#include <map>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace Tarnwick_API::Testing {

/// An application with a service of its own, and what it was told.
struct Caller {
    std::unique_ptr<TarnwickService::Service> service;
    std::shared_ptr<TarnwickApi> api;
    AttemptObservers::Observation observation;
    OAuthToken token;
    int completions = 0;
    std::string outcome;
    /// Of each attempt the failure's kind, or nothing.
    std::vector<std::string> attempts;
};

/// An operation of the facade, and the one of its requests that faults meet.
struct Operation {
    const char* name;
    std::string method;
    const char* path;
    void (*begin)(Caller& caller);
    /// What comes of a good status with a body that is no record.
    std::string ofWords = "no data";
    /// What comes of statuses that have a meaning of their own here; empty where nobody is told.
    std::map<unsigned, std::string> ofStatus{};
    /// What comes of asking for what has been done.
    std::string again = "answer";
    /// Requests before the one that faults meet, and after it when that has gone well.
    std::size_t before = 0;
    std::size_t after = 0;

    [[nodiscard]] std::string outcomeOf(unsigned status, const std::string& body) const;
};

[[nodiscard]] std::span<const Operation> operations();
[[nodiscard]] std::string textOf(const ApiError& error);

}  // namespace Tarnwick_API::Testing
