#pragma once

#include <Tarnwick_API/Platform/HttpSession.hpp>
#include <Tarnwick_API/Platform/VirtualTimeMainQueue.hpp>

#include "ScriptedServer.hpp"

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

/// A main queue of the test's own, and sessions without headers, proxies or encryption.
class SessionFixture : public testing::Test {
protected:
    SessionFixture() { Platform::MainQueue::setMain(queue); }
    ~SessionFixture() override { Platform::MainQueue::setMain(nullptr); }

    static Platform::HttpSessionConfiguration plainConfiguration() {
        Platform::HttpSessionConfiguration configuration;
        configuration.additionalHeaders = {};
        configuration.usesProxy = false;
        configuration.allowsPlainHttp = true;
        return configuration;
    }

    static std::shared_ptr<const Platform::HttpRequest> request(
        const std::string& url, Platform::HttpMethod method = Platform::HttpMethod::get,
        const Platform::Parameters& parameters = {},
        Platform::ParameterEncoding encoding = Platform::ParameterEncoding::url, Platform::HttpHeaders headers = {}) {
        return std::make_shared<const Platform::HttpRequest>(method, Platform::Url::fromString(url).value(), parameters,
                                                             encoding, std::move(headers));
    }

    /// Sends without waiting; the answer is added to `answers` when the queue runs.
    void send(Platform::HttpSession& session, std::shared_ptr<const Platform::HttpRequest> request) {
        session.send(std::move(request), [this](Platform::HttpAnswer answer) { answers.push_back(std::move(answer)); });
    }

    [[nodiscard]] bool waitForAnswers(std::size_t count) {
        return queue->runUntil([&] { return answers.size() >= count; });
    }

    Platform::HttpAnswer exchange(Platform::HttpSession& session,
                                  std::shared_ptr<const Platform::HttpRequest> request) {
        answers.clear();
        send(session, std::move(request));
        EXPECT_TRUE(answers.empty()) << "completed inside send";
        EXPECT_TRUE(waitForAnswers(1)) << "no answer";
        return answers.empty() ? Platform::HttpAnswer{} : std::move(answers.front());
    }

    std::shared_ptr<Platform::VirtualTimeMainQueue> queue = std::make_shared<Platform::VirtualTimeMainQueue>();
    std::vector<Platform::HttpAnswer> answers;
};

/// "timedOut" and the like; "none" for no error.
[[nodiscard]] std::string errorName(const Platform::HttpAnswer& answer);
