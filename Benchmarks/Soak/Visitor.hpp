#pragma once

#include <Tarnwick_API/Facade/TarnwickApi.hpp>

#include "Ending.hpp"

#include <array>
#include <cstddef>
#include <functional>
#include <memory>
#include <string>

namespace Benchmarks {

/// A user who signs in, goes through what belongs to a session, and signs out, over and over, one step at a time.
class Visitor {
public:
    using Ended = std::function<void(Ending)>;
    static constexpr std::array steps{"createUser, name taken", "login", "restoreSession", "setToken", "logout"};

    Visitor(std::shared_ptr<Tarnwick_API::TarnwickApi> api, std::string name);

    /// Begins the next step; gives its number.
    std::size_t goOn(Ended onEnd);

private:
    void createUser(Ended onEnd);
    void login(Ended onEnd);
    void restoreSession(Ended onEnd);
    void setToken(Ended onEnd);
    void logout(Ended onEnd);
    [[nodiscard]] auto isMe() const;

    std::shared_ptr<Tarnwick_API::TarnwickApi> api_;
    std::string name_;
    std::size_t next_ = 0;
};

}  // namespace Benchmarks
