#include <Tarnwick_API/Records/ClientVersion.hpp>

#include <Tarnwick_API/Platform/Application/Bundle.hpp>

#include <Records/NumberText.hpp>

#include <string>
#include <tuple>

namespace Tarnwick_API {

namespace {

/// The number before the next ".", which `rest` then begins behind; 0 for what is none.
std::int64_t takePiece(std::string_view& rest) noexcept {
    const std::size_t length = rest.find('.');
    const std::string_view piece = rest.substr(0, length);
    rest.remove_prefix(length == std::string_view::npos ? rest.size() : length + 1);
    return parseInt(piece).value_or(0);
}

}  // namespace

ClientVersion::ClientVersion(std::string_view text) noexcept {
    while (text.starts_with('b')) {
        text.remove_prefix(1);
    }
    while (text.ends_with('b')) {
        text.remove_suffix(1);
    }
    major = takePiece(text);
    minor = takePiece(text);
    revision = takePiece(text);
    build = takePiece(text);
}

std::optional<ClientVersion> ClientVersion::bundleVersion() {
    const auto text = Platform::Bundle::main()->text("CFBundleVersion");
    return text ? std::optional<ClientVersion>{*text} : std::nullopt;
}

ClientVersion ClientVersion::decode(const Platform::JsonObject& object, const Platform::JsonDecoder&) {
    ClientVersion version;
    version.major = object.require<std::int64_t>("major");
    version.minor = object.require<std::int64_t>("minor");
    version.revision = object.require<std::int64_t>("revision");
    version.build = object.ifPresent<std::int64_t>("build");
    return version;
}

std::weak_ordering operator<=>(const ClientVersion& a, const ClientVersion& b) noexcept {
    return std::tie(a.major, a.minor, a.revision) <=> std::tie(b.major, b.minor, b.revision);
}

}  // namespace Tarnwick_API
