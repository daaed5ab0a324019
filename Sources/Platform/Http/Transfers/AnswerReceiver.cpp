#include <Platform/Http/Transfers/AnswerReceiver.hpp>

#include <Platform/Http/Transfers/UnframedBody.hpp>

#include <string>
#include <utility>

namespace Tarnwick_API::Platform {

namespace {

using Kind = HttpError::Kind;

constexpr std::int64_t switchingProtocols = 101;
constexpr std::int64_t noContent = 204;
constexpr std::int64_t resetContent = 205;
constexpr std::int64_t notModified = 304;

}  // namespace

AnswerReceiver::AnswerReceiver(const HttpSessionConfiguration& configuration, HttpMethod method) noexcept
    : configuration_{configuration}, method_{method} {
    body_.begin(configuration_.maximumBodySize);
}

bool AnswerReceiver::takeLine(std::string_view line) {
    headSize_ += line.size();
    if (headSize_ > configuration_.maximumHeadSize) {
        return refuse(Kind::tooLarge, "head and trailers pass the session's limit");
    }
    if (const auto fault = lineFault(line); !fault.empty()) {
        return refuse(Kind::badAnswer, fault);
    }
    const bool isTrailer = head_.isComplete();
    head_.add(line);
    if (head_.status() == switchingProtocols) {
        return refuse(Kind::badAnswer, "the server went over to a protocol that nobody asked for");
    }
    return isTrailer || !head_.isComplete() || takeFraming();
}

bool AnswerReceiver::takeFraming() {
    if (const auto fault = readFraming(head_.headers(), framing_); !fault.empty()) {
        static_cast<void>(head_.take());
        return refuse(Kind::badAnswer, fault);
    }
    decoder_.begin(framing_.coding.value_or(ContentCoding::identity));
    return true;
}

bool AnswerReceiver::takeBody(std::string_view bytes) {
    if (!framing_.coding) {
        return refuse(Kind::badAnswer, "the body's coding is neither gzip nor deflate");
    }
    if (received_ == 0 && framing_.length && *framing_.coding == ContentCoding::identity) {
        body_.expect(*framing_.length);
    }
    received_ += bytes.size();
    switch (decoder_.decode(bytes, body_)) {
        case ContentDecoder::Outcome::taken:
            return true;
        case ContentDecoder::Outcome::overLimit:
            isBodyTooLarge_ = true;
            return refuse(Kind::tooLarge, "the body passes the session's limit");
        case ContentDecoder::Outcome::damaged:
            break;
    }
    return refuse(Kind::badAnswer, "the body's coding is damaged, or something else follows it");
}

void AnswerReceiver::refuseForWantOfMemory() noexcept {
    refuse(Kind::other, "there is no memory for the answer");
}

bool AnswerReceiver::refuse(Kind kind, std::string_view description) noexcept {
    refusal_ = {kind, description};
    return false;
}

bool AnswerReceiver::hasNoBody() const noexcept {
    return method_ == HttpMethod::head || head_.status() == noContent || head_.status() == notModified;
}

bool AnswerReceiver::isWhole() const noexcept {
    return head_.isComplete() && (hasNoBody() || framing_.length == received_);
}

std::optional<HttpError> AnswerReceiver::refusal() const {
    return refusal_ ? std::optional{HttpError{refusal_->kind, std::string{refusal_->description}}} : std::nullopt;
}

std::optional<HttpError> AnswerReceiver::faultAtEnd() const {
    // libcurl calls it a success when the connection is closed within the header.
    if (!head_.isComplete()) {
        return HttpError{Kind::connectionLost, "the connection was closed within the header"};
    }
    if (decoder_.isInStream()) {
        return HttpError{Kind::badAnswer, "the body ends before its coding does"};
    }
    return std::nullopt;
}

TransportResult AnswerReceiver::take(std::optional<HttpError> error) {
    TransportResult result;
    auto& answer = result.answer;
    answer.error = std::move(error);
    const bool isEmptied = isBodyTooLarge_ || head_.status() == noContent || head_.status() == resetContent;
    answer.body = isEmptied ? Bytes{} : body_.take();
    if (!answer.error && !isWhole() && !framing_.isChunked && !decoder_.isAtEnd()) {
        const auto known = wholeness(*answer.body, head_.value("content-type"));
        result.isKnownWhole = known == Wholeness::whole;
        if (known == Wholeness::cut) {
            answer.error = HttpError{Kind::connectionLost, "the body ends before its JSON does"};
        }
    }
    if (head_.isComplete()) {
        answer.response = head_.take();
    }
    return result;
}

}  // namespace Tarnwick_API::Platform
