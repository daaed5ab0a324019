#include <Platform/Http/Transport.hpp>

#include <utility>

namespace Tarnwick_API::Platform {

HttpAnswer failedAnswer(HttpError error) {
    HttpAnswer answer;
    answer.error = std::move(error);
    answer.body.emplace();
    return answer;
}

HttpAnswer cancelledAnswer() {
    return failedAnswer({HttpError::Kind::cancelled, "the session was dropped"});
}

}  // namespace Tarnwick_API::Platform
