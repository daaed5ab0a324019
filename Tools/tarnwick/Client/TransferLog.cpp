#include "Client/TransferLog.hpp"

namespace TarnwickClient {

namespace {

int& count(TransferLog& log, Tarnwick_API::Platform::HttpAnswer::Source source) {
    switch (source) {
        case Tarnwick_API::Platform::HttpAnswer::Source::cache:
            return log.fromCache;
        case Tarnwick_API::Platform::HttpAnswer::Source::revalidated:
            return log.confirmed;
        case Tarnwick_API::Platform::HttpAnswer::Source::network:
            break;
    }
    return log.fromService;
}

}  // namespace

void TransferLog::note(const Tarnwick_API::RequestAttempt& ended) {
    attempt = ended.number;
    lastError = ended.failure ? ended.failure->description : std::string{};
    if (!ended.failure) {
        ++count(*this, ended.source);
    }
}

std::string sourcesText(const TransferLog& log) {
    std::string text;
    const auto add = [&](int count, const char* source) {
        if (count > 0) {
            text.append(text.empty() ? "" : ", ").append(std::to_string(count)).append(source);
        }
    };
    add(log.fromCache, " from the cache");
    add(log.confirmed, " from the cache, confirmed by the service");
    add(log.fromService, " from the service");
    return "Answers: " + (text.empty() ? "none" : text) + ".";
}

}  // namespace TarnwickClient
