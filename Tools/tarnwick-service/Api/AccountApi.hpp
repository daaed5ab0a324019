#pragma once

#include "Api/RequestCheck.hpp"
#include "Http/Exchange.hpp"
#include "Model/Accounts.hpp"
#include "Model/Caller.hpp"

namespace TarnwickService {

/// Everything below "users" and "oauth".
class AccountApi {
public:
    /// The arguments must outlive the object.
    AccountApi(Accounts& accounts, const RequestCheck& check, const Caller& caller)
        : accounts_(accounts), check_(check), caller_(caller) {}

    /// POST users
    Answer createAccount(const Request& request);
    /// POST oauth/access_token: signs in with credentials in a JSON body, or gives a signed-in account one more token
    /// when the body is a form without any.
    Answer issueToken(const Request& request);
    /// DELETE users/me/access_tokens/TOKEN
    Answer revokeToken(const Request& request, std::string_view escapedToken);
    /// GET users/me/access_tokens
    Answer devices(const Request& request);
    /// GET users/me
    Answer currentAccount(const Request& request);
    /// PUT users/me
    Answer updateAccount(const Request& request);
    /// GET users/me/authtoken
    Answer authenticationToken(const Request& request);

private:
    Answer signIn(const Request& request);
    Answer addDevice(const Request& request);
    Session session(const Request& request) const;
    Account accountOf(const Session& session) const;
    Answer accountRecord(const Account& account, unsigned status) const;

    Accounts& accounts_;
    const RequestCheck& check_;
    const Caller& caller_;
};

}  // namespace TarnwickService
