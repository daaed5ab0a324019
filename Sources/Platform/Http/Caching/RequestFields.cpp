#include <Platform/Http/Caching/RequestFields.hpp>

#include <Platform/Http/Requests/HeaderFields.hpp>
#include <Platform/Text/AsciiCharacters.hpp>
#include <Platform/Text/AsciiText.hpp>

#include <array>
#include <set>
#include <stdexcept>
#include <string>
#include <utility>

#include <openssl/evp.h>

namespace Tarnwick_API::Platform {

namespace {

/// The names in `vary`, in lower case and in order, with those that always count.
std::set<std::string> nominatedNames(std::string_view vary) {
    std::set<std::string> names{"authorization", "host"};
    std::string name;
    const auto finish = [&] {
        if (!name.empty()) {
            names.insert(std::exchange(name, {}));
        }
    };
    for (const char character : vary) {
        if (character == ',') {
            finish();
        } else if (character != ' ' && character != '\t') {
            name += asciiLower(character);
        }
    }
    finish();
    return names;
}

Bytes digest(const std::string& text) {
    std::array<unsigned char, EVP_MAX_MD_SIZE> result{};
    unsigned length = 0;
    if (EVP_Digest(text.data(), text.size(), result.data(), &length, EVP_sha256(), nullptr) != 1) {
        throw std::runtime_error{"no digest can be computed"};
    }
    return {result.begin(), result.begin() + length};
}

}  // namespace

std::string_view RequestFields::value(std::string_view name) const {
    if (const auto* const own = findHeader(request_.headers(), name)) {
        return *own;
    }
    if (const auto* const general = findHeader(sessionHeaders_, name)) {
        return *general;
    }
    // The port is part of the URL, and so of every cache's key.
    return equalsIgnoringAsciiCase(name, "Host") ? request_.url().host() : std::string_view{};
}

Bytes RequestFields::secondaryKey(std::string_view vary) const {
    std::string text;
    for (const auto& name : nominatedNames(vary)) {
        // No name and no value holds a line end.
        text.append(name).append(":").append(value(name)).append("\n");
    }
    return digest(text);
}

void prepareSecondaryKeys() {
    static_cast<void>(digest({}));
}

}  // namespace Tarnwick_API::Platform
