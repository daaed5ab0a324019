#include "Http/AnswerEncoder.hpp"

#include "Http/HttpDate.hpp"

#include <algorithm>
#include <array>
#include <charconv>

#include <boost/beast/http/status.hpp>

namespace TarnwickService {
namespace {

// Small bodies travel in the same record and system call as their header block.
constexpr std::size_t largestJoinedBody = std::size_t{64} << 10U;

void appendNumber(std::string& text, std::uint64_t number) {
    std::array<char, 24> digits{};
    const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), number);
    text.append(digits.data(), end.ptr);
}

void appendReason(std::string& text, unsigned status) {
    const auto reason = boost::beast::http::obsolete_reason(boost::beast::http::int_to_status(status));
    text.append(reason.data(), reason.size());
}

bool mayHaveBody(unsigned status) {
    return status >= 200 && status != 204 && status != 304;
}

}  // namespace

AnswerEncoder::Message AnswerEncoder::encode(const Answer& answer, bool keepAlive) {
    const Damage& damage = answer.damage;
    if (damage.cut == Cut::beforeAnswer) {
        return {};
    }
    // After a false length neither side knows where the next answer begins.
    keepAlive = keepAlive && damage.cut == Cut::none && !damage.contentLength;
    out_.clear();
    appendHeaderBlock(answer, keepAlive);
    std::string_view body = mayHaveBody(answer.status) ? std::string_view(answer.bytes()) : std::string_view();
    if (damage.cut == Cut::insideHeader) {
        out_.resize(out_.size() / 2);
        body = {};
    } else if (damage.cut == Cut::afterBodyBytes) {
        body = body.substr(0, std::min(body.size(), damage.bodyBytes));
    }
    if (body.size() <= largestJoinedBody) {
        out_ += body;
        body = {};
    }
    return {out_, body, keepAlive};
}

void AnswerEncoder::appendHeaderBlock(const Answer& answer, bool keepAlive) {
    out_ += "HTTP/1.1 ";
    appendNumber(out_, answer.status);
    out_ += ' ';
    appendReason(out_, answer.status);
    out_ += "\r\nServer: tarnwick-service\r\n";
    if (!answer.hasHeader("Date")) {
        out_ += "Date: ";
        out_ += date();
        out_ += "\r\n";
    }
    if (mayHaveBody(answer.status)) {
        if (!answer.contentType.empty()) {
            out_ += "Content-Type: ";
            out_ += answer.contentType;
            out_ += "\r\n";
        }
        out_ += "Content-Length: ";
        appendNumber(out_, answer.damage.contentLength.value_or(answer.bytes().size()));
        out_ += "\r\n";
    }
    for (const auto& [name, value] : answer.headers) {
        out_ += name;
        out_ += ": ";
        out_ += value;
        out_ += "\r\n";
    }
    if (!keepAlive) {
        out_ += "Connection: close\r\n";
    }
    out_ += "\r\n";
}

// Formatting a date takes longer than the rest of a small answer, and it changes but once a second.
const std::string& AnswerEncoder::date() {
    const std::time_t second = std::time(nullptr);
    if (second != dateSecond_) {
        dateSecond_ = second;
        dateText_ = httpDate(second);
    }
    return dateText_;
}

}  // namespace TarnwickService
