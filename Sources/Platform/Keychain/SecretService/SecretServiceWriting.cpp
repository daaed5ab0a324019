#include <Platform/Keychain/SecretService/SecretServiceItems.hpp>

namespace Tarnwick_API::Platform {

namespace {

GLibOwner<SecretValue> secretOf(const std::optional<Bytes>& data) {
    return GLibOwner<SecretValue>{secret_value_new(
        data ? data->data() : "", data ? static_cast<gssize>(data->size()) : 0, "application/octet-stream")};
}

}  // namespace

void SecretServiceItems::create(const SecretServiceAttributes& attributes, const std::string& label,
                                const std::optional<Bytes>& data) {
    auto draft = attributes;
    draft.revision = SecretServiceAttributes::draft;
    setAttributes(createHandle(secretServiceSchema(), tableOf(draft).get(), label, data).get(), attributes);
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

void SecretServiceItems::erase(const Item& item) {
    erase(item.handle.get());
}

void SecretServiceItems::erase(SecretItem* item) {
    connection_.token().throwIfGivenUp();
    GLibOwner<GError> error;
    if (secret_item_delete_sync(item, connection_.token().cancellable(), GLibOutput{error}) == FALSE) {
        auto failure = SecretServiceError::ofItem(error.get(), "deleting an item");
        if (failure.status() != KeychainStatus::itemNotFound) {
            throw failure;
        }
    }
}

void SecretServiceItems::tidyUp(std::span<const Item> leftovers) {
    try {
        for (const auto& item : leftovers) {
            erase(item);
        }
    } catch (const SecretServiceError&) {
        // What is left doesn't count, and the next write tries again.
        return;
    }
}

void SecretServiceItems::change(const Item& item, const SecretServiceAttributes& changed,
                                const std::optional<Bytes>& data) {
    if (data) {
        auto next = changed;
        ++next.revision;
        create(next, stored(item, false).label, data);
        tidyUp({&item, 1});
    } else if (changed != item.attributes) {
        setAttributes(item.handle.get(), changed);
    }
}

}  // namespace Tarnwick_API::Platform
