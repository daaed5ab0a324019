#include <Platform/Keychain/SecretService/SecretServiceItems.hpp>

namespace Tarnwick_API::Platform {

void SecretServiceItems::renameFormerItems() {
    if (!mayHaveFormerItems_) {
        return;
    }
    try {
        const auto items = search(formerSecretServiceSchema(), std::nullopt);
        if (items.empty() && connection_.isLocked(collection_.get())) {
            return;
        }
        for (const auto& item : items) {
            if (item.attributes.revision <= SecretServiceAttributes::draft) {
                erase(item);
            } else {
                setAttributes(item.handle.get(), item.attributes);
            }
        }
        mayHaveFormerItems_ = false;
    } catch (const SecretServiceError&) {
        // Whatever ails the Secret Service, the call itself will meet it.
        return;
    }
}

}  // namespace Tarnwick_API::Platform
