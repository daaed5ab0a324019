#pragma once

#include "Api/WireParameters.hpp"
#include "Configuration.hpp"
#include "Http/Exchange.hpp"
#include "Model/Accounts.hpp"

#include <optional>
#include <string>

namespace TarnwickService {

/// Where an operation's parameters are.
enum class Encoding { query, form, json };

/// Which session a request must name in its Authorization header.
enum class SessionRule {
    /// The token must be alive.
    required,
    /// There may be no token, but one that is there must be alive.
    ifGiven,
    /// A token is not looked at: the operation serves those whose token has died, too.
    ignored
};

/// Judges requests by what the service's clients send, to the byte. Everything wrong ends in a `Refusal`.
class RequestCheck {
public:
    /// `apiHost` is the exact "Host" that is accepted. The accounts must outlive the check.
    RequestCheck(const Configuration& configuration, std::string apiHost, const Accounts& accounts);

    void host(const Request& request) const;

    /// The session that the request's token names, if it has one that is alive.
    std::optional<Session> authorization(const Request& request, SessionRule rule) const;

    /// Refuses applications that may not do more than read the status.
    void fullRights(const Request& request) const;

    /// Checks the two standard headers besides Authorization and the parameters that every call sends, and hands over
    /// the operation's own.
    Parameters parameters(const Request& request, Encoding encoding) const;

    /// As `parameters`, for calls that send no header of their own but Authorization.
    Parameters bareParameters(const Request& request) const;

    /// Refuses a query, a body and the headers that describe one.
    void nothingButAuthorization(const Request& request) const;

private:
    void standardHeaders(const Request& request) const;
    void noStandardHeaders(const Request& request) const;
    Parameters read(const Request& request, Encoding encoding) const;
    Parameters withoutDefaults(Parameters parameters) const;

    const Accounts& accounts_;
    std::string apiHost_;
    std::string consumerKey_;
    std::string restrictedConsumerKey_;
    std::string consumerSecret_;
    std::string partnersId_;
    bool strict_;
};

}  // namespace TarnwickService
