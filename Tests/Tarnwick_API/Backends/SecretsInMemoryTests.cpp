#include "BackendFixture.hpp"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include <fcntl.h>
#include <unistd.h>

#include <gtest/gtest.h>

using namespace Tarnwick_API;
using namespace Tarnwick_API::Testing;

namespace {

/// A text that only exists while it is used: kept with each byte changed.
class Hidden {
public:
    explicit Hidden(std::string text) : changed_{std::move(text)} { flip(changed_); }
    /// How often the text stands in this process's memory, but for the stack, where the next calls overwrite it. No
    /// copy of it is made to look for it.
    [[nodiscard]] std::size_t countInMemory() const;
    /// Calls `use` with the text, and overwrites it.
    template <typename Use>
    void reveal(const Use& use) const {
        std::string text;
        text.reserve(changed_.size());
        text = changed_;
        flip(text);
        use(text);
        flip(text);
    }

private:
    static void flip(std::string& text) {
        for (volatile char& character : text) {
            character = static_cast<char>(character ^ 0x55);
        }
    }

    std::string changed_;
};

std::size_t Hidden::countInMemory() const {
    std::ifstream maps{"/proc/self/maps"};
    // Not by a stream, whose buffer would keep copies of its own.
    const int memory = ::open("/proc/self/mem", O_RDONLY | O_CLOEXEC);
    std::size_t count = 0;
    for (std::string line; std::getline(maps, line);) {
        std::istringstream fields{line};
        std::uintptr_t begin = 0;
        std::uintptr_t end = 0;
        char dash = 0;
        std::string access;
        fields >> std::hex >> begin >> dash >> end >> access;
        constexpr std::uintptr_t mostOfOneMapping = std::uintptr_t{512} << 20U;
        if (!access.starts_with("rw") || line.ends_with("[stack]") || end - begin > mostOfOneMapping) {
            continue;
        }
        std::vector<char> bytes(end - begin);
        static_cast<void>(::pread(memory, bytes.data(), bytes.size(), static_cast<off_t>(begin)));
        const auto isSame = [](char inMemory, char changed) { return static_cast<char>(inMemory ^ 0x55) == changed; };
        const char* const past = bytes.data() + bytes.size();
        for (const char* at = bytes.data(); past - at >= static_cast<std::ptrdiff_t>(changed_.size()); ++at) {
            const auto left = static_cast<std::size_t>(past - at) - changed_.size() + 1;
            at = static_cast<const char*>(std::memchr(at, changed_.front() ^ 0x55, left));
            if (at == nullptr) {
                break;
            }
            count +=
                std::equal(changed_.begin(), changed_.end(), at, [&](char c, char m) { return isSame(m, c); }) ? 1 : 0;
        }
        explicit_bzero(bytes.data(), bytes.size());
    }
    ::close(memory);
    return count;
}

using SecretsInMemory = BackendFixture;

}  // namespace

TEST_F(SecretsInMemory, AreOverwrittenWhereTheLibraryIsTheirLastOwner) {
    const Hidden password{"a password of the user's own"};
    const Hidden secret{"the secret of an access token"};
    session->script({[&](std::shared_ptr<const Platform::HttpRequest> request) {
                         Platform::HttpAnswer answer{std::move(request), {}, Platform::HttpResponse{200, {}}, {}};
                         secret.reveal([&](const std::string& text) {
                             constexpr std::string_view begin = R"({"oauth_token":"T-1","oauth_token_secret":")";
                             auto& body = answer.body.emplace();
                             body.reserve(begin.size() + text.size() + 2 + Platform::JsonDocument::padding);
                             body.append(begin).append(text).append("\"}");
                         });
                         return answer;
                     },
                     ScriptedHttpSession::answer(200, "{}")});
    const auto settle = [this] {
        queue->runAll();
        session->requests.clear();
    };

    password.reveal([&](const std::string& text) { backend->login("user", text, false, {}); });
    EXPECT_GE(password.countInMemory(), 1U) << "the request is on its way";
    settle();
    EXPECT_EQ(password.countInMemory(), 0U);
    EXPECT_GE(secret.countInMemory(), 1U) << "the user is signed in";
    password.reveal([&](const std::string& text) {
        backend->createUser("user", text, {});
        backend->updateUser(UserField::password, text, {});
    });
    settle();
    EXPECT_EQ(password.countInMemory(), 0U);
    backend->logout({});
    settle();
    EXPECT_EQ(secret.countInMemory(), 0U);
}
