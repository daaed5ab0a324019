#include <Platform/Keychain/SecretService/SecretServiceItems.hpp>

#include <algorithm>
#include <memory>
#include <string_view>

namespace Tarnwick_API::Platform {

namespace {

GLibOwner<SecretValue> secretOf(const std::optional<Bytes>& data) {
    return GLibOwner<SecretValue>{secret_value_new(
        data ? data->data() : "", data ? static_cast<gssize>(data->size()) : 0, "application/octet-stream")};
}

}  // namespace

GLibOwner<SecretItem> SecretServiceItems::create(const SecretServiceAttributes& attributes, const std::string& label,
                                                 const std::optional<Bytes>& data) {
    auto draft = attributes;
    draft.revision = SecretServiceAttributes::draft;
    auto created = createHandle(secretServiceSchema(), tableOf(draft).get(), label, data);
    setAttributes(created.get(), attributes);
    return created;
}

GLibOwner<SecretItem> SecretServiceItems::createHandle(const SecretSchema* schema, GHashTable* attributes,
                                                       const std::string& label, const std::optional<Bytes>& data) {
    connection_.token().throwIfGivenUp();
    GLibOwner<GError> error;
    // Never in place of another: the Secret Service would take any item for the same that has these attributes among
    // its own.
    GLibOwner<SecretItem> created{secret_item_create_sync(
        collection_.get(), schema, attributes, secretServiceText(label).c_str(), secretOf(data).get(),
        SECRET_ITEM_CREATE_NONE, connection_.token().cancellable(), GLibOutput{error})};
    if (!created) {
        throw SecretServiceError::ofItem(error.get(), "creating an item");
    }
    return created;
}

void SecretServiceItems::setAttributes(SecretItem* item, const SecretServiceAttributes& attributes) {
    connection_.token().throwIfGivenUp();
    GLibOwner<GError> error;
    if (secret_item_set_attributes_sync(item, secretServiceSchema(), tableOf(attributes).get(),
                                        connection_.token().cancellable(), GLibOutput{error}) == FALSE) {
        throw SecretServiceError::ofItem(error.get(), "changing an item");
    }
}

bool SecretServiceItems::erase(const Item& item) {
    return erase(item.handle.get());
}

bool SecretServiceItems::erase(SecretItem* item) {
    connection_.token().throwIfGivenUp();
    GLibOwner<GError> error;
    if (secret_item_delete_sync(item, connection_.token().cancellable(), GLibOutput{error}) == FALSE) {
        auto failure = SecretServiceError::ofItem(error.get(), "deleting an item");
        if (failure.status() != KeychainStatus::itemNotFound) {
            throw failure;
        }
        return false;
    }
    return true;
}

bool SecretServiceItems::tidyUp(std::span<const Item> leftovers) {
    bool wereThere = true;
    try {
        for (const auto& item : leftovers) {
            wereThere = erase(item) && wereThere;
        }
    } catch (const SecretServiceError&) {
        // What is left doesn't count, and the next write tries again.
        return true;
    }
    return wereThere;
}

bool SecretServiceItems::isReplacedByOthers(const Item& item, SecretItem* ownNext) {
    const std::string_view own = g_dbus_proxy_get_object_path(G_DBUS_PROXY(ownNext));
    const auto items = search(item.attributes.service);
    return std::any_of(items.begin(), items.end(), [&](const Item& other) {
        return other.attributes.reference == item.attributes.reference &&
               g_dbus_proxy_get_object_path(G_DBUS_PROXY(other.handle.get())) != own;
    });
}

void SecretServiceItems::change(const Item& item, const SecretServiceAttributes& changed,
                                const std::optional<Bytes>& data) {
    if (data) {
        auto next = changed;
        ++next.revision;
        const auto created = create(next, stored(item, false).label, data);
        if (!tidyUp({&item, 1}) && !isReplacedByOthers(item, created.get())) {
            // Whoever removed it has been told so, and would find the new one in its place.
            erase(created.get());
            throw SecretServiceError{KeychainStatus::itemNotFound, "an item is removed while it is changed"};
        }
    } else if (changed != item.attributes) {
        setAttributes(item.handle.get(), changed);
    }
}

}  // namespace Tarnwick_API::Platform
