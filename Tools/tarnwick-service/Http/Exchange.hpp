#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace TarnwickService {

struct Header {
    std::string_view name;
    std::string_view value;
};

/// One request as it came off the wire. The views hold as long as the connection works on the request.
struct Request {
    std::string_view method;
    std::string_view target;
    std::string_view body;
    std::vector<Header> headers;

    std::string_view path() const;
    /// What follows the first '?'; none without one.
    std::optional<std::string_view> query() const;
    /// The value of the first header of that name, compared without case.
    std::optional<std::string_view> header(std::string_view name) const;
    std::size_t headerCount(std::string_view name) const;
};

/// Where the transport breaks off. The first one is a connection's, the others are an answer's.
enum class Cut { none, beforeHandshake, beforeAnswer, insideHeader, afterBodyBytes, afterAnswer };

/// What becomes of a connection on which nothing more is said.
enum class Ending {
    closed,
    reset,
    /// It stays open until the client goes.
    silent,
};

/// Whether a body goes out in chunks rather than with its length.
enum class Chunks {
    none,
    sound,
    /// The second one says no length.
    malformed,
};

/// How the transport spoils an answer.
struct Damage {
    Cut cut = Cut::none;
    /// Bytes of the body, as it goes out, that still come with `Cut::afterBodyBytes`.
    std::size_t bodyBytes = 0;
    Ending ending = Ending::closed;
    /// A length to claim instead of the true one.
    std::optional<std::uint64_t> contentLength{};
    Chunks chunks = Chunks::none;
    /// The status of an interim answer that comes first.
    std::optional<unsigned> interim{};
    /// Goes out in place of all of the answer.
    std::optional<std::string> raw{};
    /// Follows the answer, though nobody asks for it.
    std::string leftover{};
};

struct Answer {
    unsigned status = 200;
    std::string contentType = "application/json";
    std::string body;
    /// Takes the place of `body` where many answers share the same bytes.
    std::shared_ptr<const std::string> sharedBody;
    std::vector<std::pair<std::string, std::string>> headers;
    Damage damage;

    const std::string& bytes() const { return sharedBody ? *sharedBody : body; }
    bool hasHeader(std::string_view name) const;
    /// In place of any of that name.
    void setHeader(const std::string& name, std::string value);
};

Answer plainText(unsigned status, std::string text);

/// Ends the work on a request with a status and a text that tells the client's developer what is wrong.
class Refusal : public std::runtime_error {
public:
    Refusal(unsigned status, const std::string& text) : std::runtime_error(text), status_(status) {}

    unsigned status() const { return status_; }

private:
    unsigned status_;
};

/// Called on the connections' threads, so by many at once. A `Refusal` becomes its answer.
using RequestHandler = std::function<Answer(const Request&)>;

}  // namespace TarnwickService
