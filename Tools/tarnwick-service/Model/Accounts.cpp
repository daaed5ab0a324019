#include "Model/Accounts.hpp"

#include <algorithm>
#include <array>
#include <charconv>

namespace TarnwickService {

Accounts::Accounts() : random_(std::random_device{}()) {
}

std::optional<Account> Accounts::create(Account account) {
    const std::lock_guard lock(mutex_);
    if (idsByName_.contains(account.username)) {
        return std::nullopt;
    }
    account.id = nextAccountId_++;
    idsByName_.emplace(account.username, account.id);
    accounts_.emplace(account.id, account);
    return account;
}

std::optional<Account> Accounts::find(std::int64_t id) const {
    const std::lock_guard lock(mutex_);
    const auto found = accounts_.find(id);
    return found == accounts_.end() ? std::nullopt : std::optional(found->second);
}

std::optional<Account> Accounts::findByName(std::string_view username) const {
    const std::lock_guard lock(mutex_);
    const auto found = idsByName_.find(username);
    return found == idsByName_.end() ? std::nullopt : std::optional(accounts_.at(found->second));
}

std::vector<Account> Accounts::all() const {
    const std::lock_guard lock(mutex_);
    std::vector<Account> result;
    for (const auto& [id, account] : accounts_) {
        result.push_back(account);
    }
    return result;
}

bool Accounts::update(std::int64_t id, AccountField field, const std::string& value) {
    const std::lock_guard lock(mutex_);
    const auto found = accounts_.find(id);
    if (found == accounts_.end()) {
        return false;
    }
    Account& account = found->second;
    switch (field) {
        case AccountField::username: {
            const auto holder = idsByName_.find(value);
            if (holder != idsByName_.end()) {
                return holder->second == id;
            }
            idsByName_.erase(account.username);
            idsByName_.emplace(value, id);
            account.username = value;
            break;
        }
        case AccountField::password:
            account.password = value;
            break;
        case AccountField::email:
            account.email = value;
            break;
    }
    return true;
}

void Accounts::completeMigration(std::int64_t id) {
    const std::lock_guard lock(mutex_);
    if (const auto found = accounts_.find(id); found != accounts_.end()) {
        found->second.migrationRequired = false;
    }
}

Session Accounts::openSession(std::int64_t accountId, Machine machine) {
    const std::lock_guard lock(mutex_);
    Session session;
    session.id = nextSessionId_++;
    session.accountId = accountId;
    session.token = randomText();
    session.secret = randomText();
    session.machine = std::move(machine);
    session.created = std::chrono::floor<std::chrono::seconds>(std::chrono::system_clock::now());
    sessions_.emplace(session.token, session);
    return session;
}

std::optional<Session> Accounts::findSession(std::string_view token) const {
    const std::lock_guard lock(mutex_);
    const auto found = sessions_.find(token);
    return found == sessions_.end() ? std::nullopt : std::optional(found->second);
}

std::vector<Session> Accounts::sessionsOf(std::int64_t accountId) const {
    std::vector<Session> result = allSessions();
    std::erase_if(result, [&](const Session& session) { return session.accountId != accountId; });
    return result;
}

std::vector<Session> Accounts::allSessions() const {
    std::vector<Session> result;
    {
        const std::lock_guard lock(mutex_);
        for (const auto& [token, session] : sessions_) {
            result.push_back(session);
        }
    }
    std::ranges::sort(result, {}, &Session::id);
    return result;
}

bool Accounts::closeSession(std::int64_t accountId, std::string_view token) {
    const std::lock_guard lock(mutex_);
    const auto found = sessions_.find(token);
    if (found == sessions_.end() || found->second.accountId != accountId) {
        return false;
    }
    sessions_.erase(found);
    return true;
}

void Accounts::clear() {
    const std::lock_guard lock(mutex_);
    accounts_.clear();
    idsByName_.clear();
    sessions_.clear();
}

std::string Accounts::randomText() {
    std::string text;
    for (int part = 0; part < 2; ++part) {
        std::array<char, 16> digits{};
        const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), random_(), 16).ptr;
        text.append(16 - static_cast<std::size_t>(end - digits.data()), '0');
        text.append(digits.data(), end);
    }
    return text;
}

}  // namespace TarnwickService
