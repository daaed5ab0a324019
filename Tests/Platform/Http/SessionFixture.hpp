#pragma once

#include <Tarnwick_API/Platform/Application/ScopedProcessValues.hpp>
#include <Tarnwick_API/Platform/Concurrency/VirtualTimeMainQueue.hpp>
#include <Tarnwick_API/Platform/Http/HttpSession.hpp>

#include "ScriptedServer.hpp"

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

/// A main queue of the test's own, and sessions without headers, proxies or encryption.
class SessionFixture : public testing::Test {
protected:
    SessionFixture() { Tarnwick_API::Platform::MainQueue::setMain(queue); }

    static Tarnwick_API::Platform::HttpSessionConfiguration plainConfiguration() {
        Tarnwick_API::Platform::HttpSessionConfiguration configuration;
        configuration.additionalHeaders = {};
        configuration.usesProxy = false;
        configuration.allowsPlainHttp = true;
        return configuration;
    }

    static std::shared_ptr<const Tarnwick_API::Platform::HttpRequest> request(
        const std::string& url, Tarnwick_API::Platform::HttpMethod method = Tarnwick_API::Platform::HttpMethod::get,
        const Tarnwick_API::Platform::Parameters& parameters = {},
        Tarnwick_API::Platform::ParameterEncoding encoding = Tarnwick_API::Platform::ParameterEncoding::url,
        Tarnwick_API::Platform::HttpHeaders headers = {}) {
        return std::make_shared<const Tarnwick_API::Platform::HttpRequest>(
            method, Tarnwick_API::Platform::Url::fromString(url).value(), parameters, encoding, std::move(headers));
    }

    /// Sends without waiting; the answer is added to `answers` when the queue runs.
    void send(Tarnwick_API::Platform::HttpSession& session,
              std::shared_ptr<const Tarnwick_API::Platform::HttpRequest> request) {
        session.send(std::move(request),
                     [this](Tarnwick_API::Platform::HttpAnswer answer) { answers.push_back(std::move(answer)); });
    }

    [[nodiscard]] bool waitForAnswers(std::size_t count) {
        return queue->runUntil([&] { return answers.size() >= count; });
    }

    Tarnwick_API::Platform::HttpAnswer exchange(Tarnwick_API::Platform::HttpSession& session,
                                                std::shared_ptr<const Tarnwick_API::Platform::HttpRequest> request) {
        answers.clear();
        send(session, std::move(request));
        EXPECT_TRUE(answers.empty()) << "completed inside send";
        EXPECT_TRUE(waitForAnswers(1)) << "no answer";
        return answers.empty() ? Tarnwick_API::Platform::HttpAnswer{} : std::move(answers.front());
    }

    Tarnwick_API::Platform::ScopedProcessValues scope;
    std::shared_ptr<Tarnwick_API::Platform::VirtualTimeMainQueue> queue =
        std::make_shared<Tarnwick_API::Platform::VirtualTimeMainQueue>();
    std::vector<Tarnwick_API::Platform::HttpAnswer> answers;
};

/// "timedOut" and the like; "none" for no error.
[[nodiscard]] std::string errorName(const Tarnwick_API::Platform::HttpAnswer& answer);
