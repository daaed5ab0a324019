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

std::string inChunks(std::string_view body, Chunks chunks) {
    std::string text;
    const auto appendChunk = [&](std::string_view bytes, bool isMalformed) {
        std::array<char, 16> size{};
        const auto end = std::to_chars(size.data(), size.data() + size.size(), bytes.size(), 16);
        text.append(isMalformed ? "none" : std::string_view(size.data(), end.ptr)).append("\r\n");
        text.append(bytes).append("\r\n");
    };
    const auto half = (body.size() + 1) / 2;
    for (const std::string_view part : {body.substr(0, half), body.substr(half)}) {
        // One of no bytes would be the last.
        if (!part.empty()) {
            appendChunk(part, chunks == Chunks::malformed && part.data() != body.data());
        }
    }
    appendChunk({}, chunks == Chunks::malformed && text.empty());
    return text;
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
    if (damage.raw) {
        return {.start = *damage.raw};
    }
    const bool isCutInside = damage.cut == Cut::insideHeader || damage.cut == Cut::afterBodyBytes;
    // After a false length neither side knows where the next answer begins.
    keepAlive = keepAlive && !isCutInside && !damage.contentLength && damage.chunks != Chunks::malformed;
    out_.clear();
    if (damage.interim) {
        appendInterimAnswer(*damage.interim);
    }
    const auto headerBlock = out_.size();
    appendHeaderBlock(answer, keepAlive);
    std::string_view body = mayHaveBody(answer.status) ? std::string_view(answer.bytes()) : std::string_view();
    if (damage.chunks != Chunks::none && mayHaveBody(answer.status)) {
        chunks_ = inChunks(body, damage.chunks);
        body = chunks_;
    }
    if (damage.cut == Cut::insideHeader) {
        out_.resize((headerBlock + out_.size()) / 2);
        body = {};
    } else if (damage.cut == Cut::afterBodyBytes) {
        body = body.substr(0, std::min(body.size(), damage.bodyBytes));
    }
    if (body.size() <= largestJoinedBody) {
        out_ += body;
        body = {};
    }
    return {.start = out_,
            .rest = body,
            .leftover = damage.leftover,
            .keepAlive = keepAlive && damage.cut != Cut::afterAnswer};
}

void AnswerEncoder::appendInterimAnswer(unsigned status) {
    out_ += "HTTP/1.1 ";
    appendNumber(out_, status);
    out_ += ' ';
    appendReason(out_, status);
    out_ += "\r\nLink: </vb/status>; rel=preload\r\n\r\n";
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
        if (answer.damage.chunks != Chunks::none) {
            out_ += "Transfer-Encoding: chunked\r\n";
        } else {
            out_ += "Content-Length: ";
            appendNumber(out_, answer.damage.contentLength.value_or(answer.bytes().size()));
            out_ += "\r\n";
        }
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
