#include <Platform/Http/Transfers/ResponseHeadParser.hpp>

#include <Platform/Text/AsciiCharacters.hpp>
#include <Platform/Text/AsciiText.hpp>

#include <algorithm>
#include <charconv>
#include <utility>

namespace Tarnwick_API::Platform {

namespace {

std::int64_t statusOf(std::string_view line) noexcept {
    const auto blank = std::min(line.find(' '), line.size());
    const auto text = trimmed(line.substr(blank));
    std::int64_t status = 0;
    std::from_chars(text.data(), text.data() + text.size(), status);
    return status;
}

}  // namespace

void ResponseHeadParser::add(std::string_view line) {
    if (isComplete_) {
        return;
    }
    if (line.starts_with("HTTP/")) {
        headers_.clear();
        lastValue_ = nullptr;
        status_ = statusOf(line);
    } else if (line == "\r\n" || line == "\n") {
        constexpr std::int64_t firstFinal = 200;
        isComplete_ = status_ >= firstFinal;
    } else {
        addField(line);
    }
}

void ResponseHeadParser::addField(std::string_view line) {
    const bool isContinuation = line.front() == ' ' || line.front() == '\t';
    if (isContinuation) {
        const auto more = trimmed(line);
        if (lastValue_ != nullptr && !more.empty()) {
            lastValue_->append(lastValue_->empty() ? "" : " ").append(more);
        }
        return;
    }
    const auto colon = line.find(':');
    if (colon == std::string_view::npos) {
        return;
    }
    std::string name{trimmed(line.substr(0, colon))};
    std::transform(name.begin(), name.end(), name.begin(), asciiLower);
    const auto value = trimmed(line.substr(colon + 1));
    const auto [header, isNew] = headers_.try_emplace(std::move(name), value);
    if (!isNew) {
        header->second.append(", ").append(value);
    }
    lastValue_ = &header->second;
}

std::string_view ResponseHeadParser::value(std::string_view name) const noexcept {
    const auto header = headers_.find(name);
    return header == headers_.end() ? std::string_view{} : header->second;
}

HttpResponse ResponseHeadParser::take() {
    HttpResponse response{status_, std::move(headers_)};
    *this = {};
    return response;
}

}  // namespace Tarnwick_API::Platform
