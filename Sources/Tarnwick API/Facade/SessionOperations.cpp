#include <Tarnwick_API/Facade/ApiNotification.hpp>
#include <Tarnwick_API/Facade/TarnwickApi.hpp>
#include <Tarnwick_API/Operations/StoppableScope.hpp>
#include <Tarnwick_API/Platform/Application/NotificationCenter.hpp>
#include <Tarnwick_API/Platform/Concurrency/MainQueue.hpp>

#include <Calls/DeliverCompletion.hpp>
#include <Facade/FacadeUse.hpp>

#include <exception>
#include <memory>
#include <utility>

namespace Tarnwick_API {

void TarnwickApi::postDidLogout() {
    Platform::NotificationCenter::defaultCenter().post(
        {.name = ApiNotification{ApiNotification::DidLogout}.name(), .object = shared_from_this()});
}

template <typename Finish>
void TarnwickApi::postDidLogoutAnd(const Finish& finish) {
    std::exception_ptr thrown;
    try {
        postDidLogout();
    } catch (...) {
        thrown = std::current_exception();
    }
    finish();
    if (thrown) {
        std::rethrow_exception(thrown);
    }
}

template <typename Finish>
void TarnwickApi::endSessionAnd(const Finish& finish) {
    internalCurrentUser_ = std::nullopt;
    postDidLogoutAnd(finish);
}

void TarnwickApi::login(const std::string& username, const std::string& password, bool qvImport,
                        Completion<User> onCompletion) {
    const Use use{*this, "login"};
    auto fetchUser = [self = shared_from_this(), stop = StoppableScope::current(),
                      onCompletion = std::move(onCompletion)](std::optional<ApiError> loginError) mutable {
        if (loginError) {
            self->endSessionAnd([&] { deliver(onCompletion, std::nullopt, std::move(loginError)); });
            return;
        }
        const StoppableScope scope{std::move(stop)};
        self->api_->currentUser(
            [self, onCompletion = std::move(onCompletion)](std::optional<User> user, std::optional<ApiError> error) {
                if (!user) {
                    self->endSessionAnd([&] { deliver(onCompletion, std::nullopt, std::move(error)); });
                    return;
                }
                self->internalCurrentUser_ = user;
                deliver(onCompletion, std::move(user), std::nullopt);
            });
    };
    api_->login(username, password, qvImport, std::move(fetchUser));
}

void TarnwickApi::restoreSession(Completion<User> onCompletion) {
    const Use use{*this, "restoreSession"};
    auto why = api_->adoptKeptToken();
    if (!why) {
        getCurrentUser(std::move(onCompletion));
        return;
    }
    // A task must be copyable.
    auto completion = std::make_shared<Completion<User>>(std::move(onCompletion));
    Platform::MainQueue::main()->soon(
        [completion = std::move(completion), why] { deliver(*completion, std::nullopt, ApiError{*why}); });
}

std::optional<SessionError> TarnwickApi::adoptKeptToken() {
    const Use use{*this, "adoptKeptToken"};
    return api_->adoptKeptToken();
}

std::optional<Platform::KeychainStatus> TarnwickApi::tokenKeeping() const {
    const Use use{*this, "tokenKeeping"};
    return api_->tokenKeeping();
}

Platform::KeychainStatus TarnwickApi::forgetSession() {
    const Use use{*this, "forgetSession"};
    const auto status = api_->forgetToken();
    endSessionAnd([] {});
    return status;
}

void TarnwickApi::logout(Completion<void> onCompletion) {
    const Use use{*this, "logout"};
    api_->logout([self = shared_from_this(), onCompletion = std::move(onCompletion)](std::optional<ApiError> error) {
        self->endSessionAnd([&] { deliver(onCompletion, std::move(error)); });
    });
}

void TarnwickApi::getCurrentUser(Completion<User> onCompletion) {
    const Use use{*this, "getCurrentUser"};
    api_->currentUser([self = shared_from_this(), onCompletion = std::move(onCompletion)](
                          std::optional<User> user, std::optional<ApiError> error) {
        if (!user) {
            deliver(onCompletion, std::nullopt, std::move(error));
            return;
        }
        self->internalCurrentUser_ = user;
        deliver(onCompletion, std::move(user), std::nullopt);
    });
}

void TarnwickApi::setToken(const std::string& token, const std::string& secret, Completion<User> onCompletion) {
    const Use use{*this, "setToken"};
    api_->setToken(token, secret,
                   [self = shared_from_this(), onCompletion = std::move(onCompletion)](std::optional<User> user,
                                                                                       std::optional<ApiError> error) {
                       if (user && !error) {
                           self->internalCurrentUser_ = user;
                           deliver(onCompletion, std::move(user), std::nullopt);
                           return;
                       }
                       // Observers still see the old user here, unlike after a failed sign-in.
                       self->postDidLogoutAnd([&] {
                           self->internalCurrentUser_ = std::nullopt;
                           deliver(onCompletion, std::nullopt, std::move(error));
                       });
                   });
}

void TarnwickApi::getStatus(Completion<Status> onCompletion) {
    const Use use{*this, "getStatus"};
    api_->getStatus([self = shared_from_this(), onCompletion = std::move(onCompletion)](
                        std::optional<Status>&& status, std::optional<ApiError>&& error) {
        self->internalCurrentStatus_ = status;
        deliver(onCompletion, std::move(status), std::move(error));
    });
}

}  // namespace Tarnwick_API
