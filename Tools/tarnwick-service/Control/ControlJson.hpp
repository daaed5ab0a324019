#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <nlohmann/json.hpp>

namespace TarnwickService {

using Json = nlohmann::ordered_json;

/// The order that came to the control interface makes no sense.
[[noreturn]] void refuseOrder(const std::string& text);

/// `word` is none of `words`, of which the nearest is named.
[[noreturn]] void refuseWord(const std::string& what, const std::string& word, const std::vector<std::string>& words);

/// Refuses a member that stands twice in an object too.
Json parseOrder(std::string_view body);

/// Takes the known members out of an object, so that a misspelt one does not go unnoticed. A value of the wrong kind is
/// refused.
class Members {
public:
    explicit Members(Json object);

    std::optional<Json> take(const char* name);
    std::optional<std::string> text(const char* name);
    std::optional<std::uint64_t> number(const char* name, std::uint64_t least, std::uint64_t largest);
    bool flag(const char* name, bool standard);

    void requireNoMore() const;

private:
    Json object_;
    std::vector<std::string> known_;
};

}  // namespace TarnwickService
