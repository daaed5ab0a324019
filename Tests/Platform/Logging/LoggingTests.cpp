#include <Tarnwick_API/Platform/Application/ScopedProcessValues.hpp>
#include <Tarnwick_API/Platform/Logging/Logging.hpp>

#include <Platform/Logging/DebugChannel.hpp>

#include <memory>
#include <sstream>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <spdlog/sinks/ostream_sink.h>
#include <spdlog/spdlog.h>

namespace Tarnwick_API::Platform {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

class LoggingTest : public testing::Test {
protected:
    void recordMessages() {
        Logging::setSink([this](const Logging::Entry& entry) { messages_.emplace_back(entry.message); });
    }

    std::vector<std::string> messages_;

private:
    ScopedProcessValues scope_;
};

TEST_F(LoggingTest, IsSilentUnlessTheHostSwitchesItOn) {
    testing::internal::CaptureStdout();
    testing::internal::CaptureStderr();
    EXPECT_FALSE(DebugChannel::isOpen());
    EXPECT_EQ(Logging::logger(), nullptr);
    DebugChannel::write("lost", "function");
    recordMessages();
    EXPECT_TRUE(DebugChannel::isOpen());
    DebugChannel::write("kept", "function");
    Logging::setSink(nullptr);
    EXPECT_FALSE(DebugChannel::isOpen());
    DebugChannel::write("lost again", "function");
    Logging::setLogger(nullptr);
    EXPECT_THAT(messages_, ElementsAre("kept"));
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

TEST_F(LoggingTest, TellsWhereAnEntryComesFrom) {
    std::vector<std::string> places;
    Logging::setSink([&](const Logging::Entry& entry) {
        places.push_back(std::string{entry.function} + ' ' + entry.file + ' ' + std::to_string(entry.line));
        EXPECT_EQ(entry.severity, Logging::Severity::debug);
    });
    const int line = __LINE__ + 1;
    [] { DebugChannel::write("text", "sendRequest(url:)"); }();
    EXPECT_THAT(places, ElementsAre("sendRequest(url:) " __FILE__ " " + std::to_string(line)));
}

TEST_F(LoggingTest, PassesTextAsItStands) {
    recordMessages();
    const std::vector<std::string> texts{
        R"({"a":{},"b":"{0}{:d}%s%n"})", "curl -v \\\n\t-X GET\n", "", std::string("a\0b", 3), "\xFF\u00E9",
        std::string(100'000, 'x')};
    for (const auto& text : texts) {
        DebugChannel::write(text, "function");
    }
    EXPECT_EQ(messages_, texts);
}

TEST_F(LoggingTest, GivesItsLoggerOutUnregisteredAndTranslatesSeverities) {
    std::vector<Logging::Severity> severities;
    Logging::setSink([&](const Logging::Entry& entry) {
        severities.push_back(entry.severity);
        EXPECT_STREQ(entry.function, "");
        EXPECT_STREQ(entry.file, "");
    });
    const auto logger = Logging::logger();
    EXPECT_EQ(logger->name(), "Tarnwick_API");
    EXPECT_EQ(spdlog::get("Tarnwick_API"), nullptr);
    for (int level = spdlog::level::trace; level < spdlog::level::off; ++level) {
        logger->log(static_cast<spdlog::level::level_enum>(level), "text");
    }
    using enum Logging::Severity;
    EXPECT_THAT(severities, ElementsAre(debug, info, warning, error, error));
}

TEST_F(LoggingTest, UsesTheHostsLoggerAtItsOwnLevel) {
    std::ostringstream text;
    const auto logger =
        std::make_shared<spdlog::logger>("host", std::make_shared<spdlog::sinks::ostream_sink_mt>(text));
    logger->set_pattern("%n %l %! %v");
    Logging::setLogger(logger);
    EXPECT_EQ(Logging::logger(), logger);
    EXPECT_FALSE(DebugChannel::isOpen());
    DebugChannel::write("below {}", "function");
    EXPECT_EQ(text.str(), "");

    logger->set_level(spdlog::level::debug);
    EXPECT_TRUE(DebugChannel::isOpen());
    DebugChannel::write("above {}", "function");
    EXPECT_EQ(text.str(), "host debug function above {}\n");

    logger->set_level(spdlog::level::info);
    logger->enable_backtrace(1);
    EXPECT_TRUE(DebugChannel::isOpen()) << "the host keeps lower entries for later";
}

TEST_F(LoggingTest, FailuresOfASinkAreReportedAndStayThere) {
    int calls = 0;
    Logging::setSink([&](const Logging::Entry&) {
        if (++calls == 1) {
            throw std::runtime_error{"disk full"};
        }
        throw calls;
    });
    testing::internal::CaptureStderr();
    EXPECT_NO_THROW(DebugChannel::write("text", "function"));
    EXPECT_THAT(testing::internal::GetCapturedStderr(), HasSubstr("disk full"));
    EXPECT_NO_THROW(DebugChannel::write("text", "function"));
    EXPECT_EQ(calls, 2);

    std::string reported;
    Logging::logger()->set_error_handler([&](const std::string& text) {
        reported = text;
        throw std::runtime_error{"from the error handler"};
    });
    EXPECT_NO_THROW(DebugChannel::write("text", "function"));
    EXPECT_THAT(reported, HasSubstr("no standard exception"));
}

TEST_F(LoggingTest, ASinkThatMakesTheLibraryLogIsNotCalledForThat) {
    Logging::setSink([this, owned = std::string(100, 'x')](const Logging::Entry& entry) {
        EXPECT_FALSE(DebugChannel::isOpen());
        DebugChannel::write("from inside", "function");
        Logging::setSink(nullptr);
        messages_.push_back(std::string{entry.message} + owned.back());
    });
    DebugChannel::write("text", "function");
    EXPECT_THAT(messages_, ElementsAre("textx"));
    recordMessages();
    DebugChannel::write("next", "function");
    EXPECT_THAT(messages_, ElementsAre("textx", "next"));
}

TEST_F(LoggingTest, CallsASinkOnceAtATimeWhileItMayBeReplaced) {
    int callsWithoutLock = 0;
    const auto sink = [&callsWithoutLock](const Logging::Entry&) { ++callsWithoutLock; };
    Logging::setSink(sink);
    const auto first = Logging::logger();
    std::vector<std::jthread> threads;
    threads.reserve(4);
    for (int thread = 0; thread < 3; ++thread) {
        threads.emplace_back([] {
            for (int count = 0; count < 300; ++count) {
                DebugChannel::write("text", "function");
            }
        });
    }
    threads.clear();
    EXPECT_EQ(callsWithoutLock, 900);
    for (int thread = 0; thread < 2; ++thread) {
        threads.emplace_back([] {
            for (int count = 0; count < 300; ++count) {
                if (DebugChannel::isOpen()) {
                    DebugChannel::write("text", "function");
                }
            }
        });
    }
    for (int count = 0; count < 300; ++count) {
        Logging::setLogger(count % 2 == 0 ? nullptr : first);
    }
    threads.clear();
    EXPECT_TRUE(DebugChannel::isOpen());
}

}  // namespace
}  // namespace Tarnwick_API::Platform
