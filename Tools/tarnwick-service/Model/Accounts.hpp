#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <map>
#include <mutex>
#include <optional>
#include <random>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace TarnwickService {

struct Account {
    /// Given by the service; what a caller puts here is ignored.
    std::int64_t id = 0;
    std::string username{};
    std::string password{};
    std::string email{};
    bool active = true;
    /// The account still lives in the legacy system: signing in needs the client's consent to import it.
    bool migrationRequired = false;
};

struct Machine {
    std::string name{};
    std::string id{};
    std::string consumerName = "Tarnwick for Mac";
    std::string deviceType = "mac";
};

/// An access token: one machine on which an account is signed in.
struct Session {
    std::int64_t id = 0;
    std::int64_t accountId = 0;
    std::string token{};
    std::string secret{};
    Machine machine{};
    std::chrono::sys_seconds created{};
};

enum class AccountField { username, password, email };

/// The accounts and their sessions. Every operation may be called from any thread.
class Accounts {
public:
    Accounts();

    /// None when the user name is taken.
    std::optional<Account> create(Account account);
    std::optional<Account> find(std::int64_t id) const;
    std::optional<Account> findByName(std::string_view username) const;
    std::vector<Account> all() const;
    /// False when the new value is a user name that is taken.
    bool update(std::int64_t id, AccountField field, const std::string& value);
    void completeMigration(std::int64_t id);

    Session openSession(std::int64_t accountId, Machine machine);
    std::optional<Session> findSession(std::string_view token) const;
    /// All of an account, oldest first.
    std::vector<Session> sessionsOf(std::int64_t accountId) const;
    std::vector<Session> allSessions() const;
    /// False when the account has no such session.
    bool closeSession(std::int64_t accountId, std::string_view token);

    /// Forgets all sessions, and all accounts too.
    void clear();

private:
    struct TextHash {
        using is_transparent = void;
        std::size_t operator()(std::string_view text) const { return std::hash<std::string_view>{}(text); }
    };

    std::string randomText();

    mutable std::mutex mutex_;
    std::map<std::int64_t, Account> accounts_;
    std::map<std::string, std::int64_t, std::less<>> idsByName_;
    std::unordered_map<std::string, Session, TextHash, std::equal_to<>> sessions_;
    std::int64_t nextAccountId_ = 1001;
    std::int64_t nextSessionId_ = 1;
    std::mt19937_64 random_;
};

}  // namespace TarnwickService
