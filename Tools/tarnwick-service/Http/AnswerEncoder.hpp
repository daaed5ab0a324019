#pragma once

#include "Http/Exchange.hpp"

#include <ctime>
#include <string>
#include <string_view>

namespace TarnwickService {

/// Puts the answers of one connection into the bytes that go over the wire, spoilt where an answer says so.
class AnswerEncoder {
public:
    struct Message {
        /// Empty where the connection is to be cut before the answer.
        std::string_view start{};
        /// What remains of a large body.
        std::string_view rest{};
        /// Goes out by itself, after the answer.
        std::string_view leftover{};
        /// Whether another answer may follow on the same connection.
        bool keepAlive = false;
    };

    /// The message holds as long as the answer, and until the next call.
    Message encode(const Answer& answer, bool keepAlive);

private:
    void appendInterimAnswer(unsigned status);
    void appendHeaderBlock(const Answer& answer, bool keepAlive);
    const std::string& date();

    std::string out_;
    std::string chunks_;
    std::time_t dateSecond_ = -1;
    std::string dateText_;
};

}  // namespace TarnwickService
