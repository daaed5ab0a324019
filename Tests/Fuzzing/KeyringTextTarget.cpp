// Attributes as the desktop's keyring takes them: they come back as they were, whatever bytes they are.

#include <Platform/Keychain/SecretService/SecretServiceAttributes.hpp>
#include <Platform/Text/Utf8.hpp>

#include "FuzzTarget.hpp"

using namespace Tarnwick_API::Platform;

void fuzz(FuzzInput input) {
    const auto created = input.number<std::int64_t>();
    const SecretServiceAttributes attributes{input.text(), input.text(), {}, input.rest(), created, created / 2};
    require(attributesOf(tableOf(attributes).get()) == attributes, "attributes come back as they were");
    for (const auto& bytes : {attributes.service, attributes.account, attributes.reference}) {
        const auto text = secretServiceText(bytes);
        require(isValidUtf8(text) && text.find('\0') == std::string::npos, "the bus can carry it");
        // What another program has written need not be ours.
        const auto foreign = bytesOfSecretServiceText("base64:" + bytes);
        require(foreign.size() <= bytes.size(), "Base64 takes more room than its bytes");
        require(bytesOfSecretServiceText(secretServiceText(foreign)) == foreign, "bytes come back as they were");
    }
}
