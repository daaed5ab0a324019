#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace TarnwickService {

/// The parameters of one request. An operation takes those that it knows; whatever is left was not meant for it.
class Parameters {
public:
    Parameters() = default;
    explicit Parameters(std::vector<std::pair<std::string, std::string>> entries) : entries_(std::move(entries)) {}

    bool empty() const { return entries_.empty(); }

    std::optional<std::string> take(std::string_view key);
    /// Refuses the request when the parameter is absent.
    std::string require(std::string_view key);
    /// Refuses the request when the parameter is absent or has another value.
    void requireValue(std::string_view key, std::string_view value);
    std::optional<std::int64_t> takeInteger(std::string_view key);
    std::optional<double> takeReal(std::string_view key);
    /// Refuses the request when a parameter is left.
    void requireNoMore() const;

private:
    std::vector<std::pair<std::string, std::string>> entries_;
};

/// Reads `key=value&...`, in a query or in a body. With `strict`, keys must ascend by their bytes without repetition,
/// and exactly the characters that need it must be escaped, in upper-case hexadecimal.
Parameters readUrlEncoded(std::string_view text, bool strict);

/// Reads an object of texts. With `strict`, the text must be the one canonical form: keys ascending by their bytes, no
/// white space, '/' written as "\/", other characters escaped only where they must be.
Parameters readJsonObject(std::string_view text, bool strict);

/// Undoes percent-encoding; none when a '%' is not followed by two hexadecimal digits.
std::optional<std::string> percentDecoded(std::string_view text);

}  // namespace TarnwickService
