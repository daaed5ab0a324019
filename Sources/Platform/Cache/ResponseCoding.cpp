#include <Platform/Cache/ResponseCoding.hpp>

#include <cstring>
#include <type_traits>
#include <utility>

#include <zlib.h>

namespace Tarnwick_API::Platform {

namespace {

// What stands before a value. Never renumbered.
enum class Tag : std::uint8_t { text, integer, real, flag, date, bytes };

class Writer {
public:
    // In the machine's byte order: cache files do not travel.
    template <class Number>
    void number(Number value) {
        static_assert(std::is_trivially_copyable_v<Number>);
        char bytes[sizeof value];
        std::memcpy(bytes, &value, sizeof value);
        result.append(bytes, sizeof bytes);
    }

    void text(std::string_view text) {
        number(std::uint64_t{text.size()});
        result.append(text);
    }

    void value(const UserInformationValue& value) {
        std::visit([this](const auto& content) { tagged(content); }, value);
    }

    Bytes result;

private:
    void tagged(const std::string& content) {
        number(Tag::text);
        text(content);
    }
    void tagged(std::int64_t content) {
        number(Tag::integer);
        number(content);
    }
    void tagged(double content) {
        number(Tag::real);
        number(content);
    }
    void tagged(bool content) {
        number(Tag::flag);
        number(static_cast<std::uint8_t>(content));
    }
    void tagged(WallTime content) {
        number(Tag::date);
        number(std::int64_t{content.time_since_epoch().count()});
    }
    void tagged(const UserInformationBytes& content) {
        number(Tag::bytes);
        text(content.bytes);
    }
};

/// Reads what a `Writer` wrote. What is not there reads as zero or empty, and makes `isWhole` false.
class Reader {
public:
    explicit Reader(std::string_view bytes) : rest_{bytes} {}

    template <class Number>
    Number number() {
        Number value{};
        if (const auto bytes = take(sizeof value); !bytes.empty()) {
            std::memcpy(&value, bytes.data(), sizeof value);
        }
        return value;
    }

    std::string text() { return std::string{take(number<std::uint64_t>())}; }

    UserInformationValue value() {
        switch (number<Tag>()) {
            case Tag::text:
                return text();
            case Tag::integer:
                return number<std::int64_t>();
            case Tag::real:
                return number<double>();
            case Tag::flag:
                return number<std::uint8_t>() != 0;
            case Tag::date:
                return WallTime{WallTime::duration{number<std::int64_t>()}};
            case Tag::bytes:
                return UserInformationBytes{text()};
        }
        isGood_ = false;
        return false;
    }

    [[nodiscard]] bool isGood() const { return isGood_; }
    [[nodiscard]] bool isWhole() const { return isGood_ && rest_.empty(); }

private:
    std::string_view take(std::uint64_t size) {
        if (size > rest_.size()) {
            isGood_ = false;
            rest_ = {};
        }
        const auto taken = rest_.substr(0, isGood_ ? static_cast<std::size_t>(size) : 0);
        rest_.remove_prefix(taken.size());
        return taken;
    }

    std::string_view rest_;
    bool isGood_ = true;
};

std::int64_t checkValueOf(std::string_view key, const Bytes& head, const Bytes& body) {
    auto value = ::crc32_z(0, nullptr, 0);
    for (const std::string_view part : {key, std::string_view{head}, std::string_view{body}}) {
        value = ::crc32_z(value, reinterpret_cast<const Bytef*>(part.data()), part.size());
    }
    return static_cast<std::int64_t>(value);
}

}  // namespace

EncodedResponse encode(std::string_view key, const CachedUrlResponse& response) {
    Writer head;
    head.number(response.response.status);
    head.number(std::uint64_t{response.response.headers.size()});
    for (const auto& [name, value] : response.response.headers) {
        head.text(name);
        head.text(value);
    }
    head.number(static_cast<std::uint8_t>(response.userInformation.has_value()));
    if (response.userInformation) {
        head.number(std::uint64_t{response.userInformation->size()});
        for (const auto& [name, value] : *response.userInformation) {
            head.text(name);
            head.value(value);
        }
    }
    const auto checkValue = checkValueOf(key, head.result, *response.body);
    return {std::move(head.result), response.body, static_cast<std::int64_t>(sizeOfEntry(key, response)), checkValue};
}

UrlResponsePointer decode(std::string_view key, const EncodedResponse& encoded) {
    if (checkValueOf(key, encoded.head, *encoded.body) != encoded.checkValue) {
        return nullptr;
    }
    Reader head{encoded.head};
    CachedUrlResponse response;
    response.response.status = head.number<std::int64_t>();
    for (auto count = head.number<std::uint64_t>(); count > 0 && head.isGood(); --count) {
        auto name = head.text();
        response.response.headers.insert_or_assign(std::move(name), head.text());
    }
    if (head.number<std::uint8_t>() != 0) {
        response.userInformation.emplace();
        for (auto count = head.number<std::uint64_t>(); count > 0 && head.isGood(); --count) {
            auto name = head.text();
            response.userInformation->insert_or_assign(std::move(name), head.value());
        }
    }
    response.body = encoded.body;
    if (!head.isWhole() || static_cast<std::int64_t>(sizeOfEntry(key, response)) != encoded.size) {
        return nullptr;
    }
    return std::make_shared<const CachedUrlResponse>(std::move(response));
}

}  // namespace Tarnwick_API::Platform
