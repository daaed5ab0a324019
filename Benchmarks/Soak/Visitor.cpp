#include "Visitor.hpp"

#include <Tarnwick_API/Backends/ApiVersion1.hpp>

#include "Judged.hpp"
#include "ServiceAccess.hpp"

#include <optional>
#include <utility>

namespace Benchmarks {

using namespace Tarnwick_API;

Visitor::Visitor(std::shared_ptr<TarnwickApi> api, std::string name) : api_{std::move(api)}, name_{std::move(name)} {
}

auto Visitor::isMe() const {
    return [this](const User& user) { return user.username == name_; };
}

std::size_t Visitor::goOn(Ended onEnd) {
    using Step = void (Visitor::*)(Ended);
    constexpr std::array<Step, steps.size()> members{&Visitor::createUser, &Visitor::login, &Visitor::restoreSession,
                                                     &Visitor::setToken, &Visitor::logout};
    const auto step = next_;
    next_ = (next_ + 1) % steps.size();
    (this->*members[step])(std::move(onEnd));
    return step;
}

void Visitor::createUser(Ended onEnd) {
    api_->createUser(name_, ServiceAccess::password, [onEnd = std::move(onEnd)](std::optional<ApiError> error) {
        const auto* const taken = error ? error->as<SignupError>() : nullptr;
        onEnd(taken != nullptr ? Ending::value : error ? endingOf(error) : Ending::wrong);
    });
}

void Visitor::login(Ended onEnd) {
    api_->login(name_, ServiceAccess::password, false,
                judged<User>(
                    [this, onEnd = std::move(onEnd)](Ending ending) {
                        if (ending != Ending::value) {
                            static_cast<void>(api_->forgetSession());
                            next_ = 0;
                        }
                        onEnd(ending);
                    },
                    isMe()));
}

void Visitor::restoreSession(Ended onEnd) {
    api_->restoreSession(judged<User>(std::move(onEnd), isMe()));
}

void Visitor::setToken(Ended onEnd) {
    const auto token = dynamic_cast<const ApiVersion1&>(*api_->api()).oauthToken();
    if (!token) {
        onEnd(Ending::wrong);
        return;
    }
    api_->setToken(token->token, token->secret,
                   judged<User>(
                       [this, onEnd = std::move(onEnd)](Ending ending) {
                           if (ending != Ending::value) {
                               // An error gives the token up.
                               next_ = 0;
                           }
                           onEnd(ending);
                       },
                       isMe()));
}

void Visitor::logout(Ended onEnd) {
    api_->logout([this, onEnd = std::move(onEnd)](std::optional<ApiError> error) {
        auto ending = error ? endingOf(error) : Ending::value;
        // When the answer is lost on its way the token is dead, and the next attempt is told so.
        const auto* const response = error ? error->as<ResponseError>() : nullptr;
        if (response != nullptr && response->responseText() == "Not logged in") {
            ending = Ending::value;
        }
        static_cast<void>(api_->forgetSession());
        onEnd(ending);
    });
}

}  // namespace Benchmarks
