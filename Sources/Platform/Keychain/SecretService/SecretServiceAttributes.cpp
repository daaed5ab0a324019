#include <Platform/Keychain/SecretService/SecretServiceAttributes.hpp>

#include <Platform/Text/Utf8.hpp>

#include <charconv>
#include <string_view>

namespace Tarnwick_API::Platform {

namespace {

constexpr std::string_view escape = "base64:";
constexpr const char* serviceKey = "service";
constexpr const char* accountKey = "account";
constexpr const char* commentKey = "comment";
constexpr const char* referenceKey = "ref";
constexpr const char* createdKey = "created";
constexpr const char* revisionKey = "revision";
constexpr const char* hasDataKey = "hasData";
constexpr const char* accessibilityKey = "accessible";
constexpr const char* writtenKey = "written";

GLibOwner<GHashTable> emptyTable() {
    return GLibOwner<GHashTable>{g_hash_table_new_full(g_str_hash, g_str_equal, g_free, g_free)};
}

void set(GHashTable* table, const char* key, const std::string& text) {
    g_hash_table_insert(table, g_strdup(key), g_strdup(text.c_str()));
}

std::optional<std::string> textAt(GHashTable* table, const char* key) {
    const auto* const text = static_cast<const char*>(g_hash_table_lookup(table, key));
    return text == nullptr ? std::nullopt : std::optional<std::string>{text};
}

std::string bytesAt(GHashTable* table, const char* key) {
    return bytesOfSecretServiceText(textAt(table, key).value_or(std::string{}));
}

std::int64_t numberAt(GHashTable* table, const char* key) {
    const auto text = textAt(table, key).value_or(std::string{});
    std::int64_t number = 0;
    std::from_chars(text.data(), text.data() + text.size(), number);
    return number;
}

// Searched by its name too, so that items of others with the same service are neither found nor touched.
SecretSchema schemaNamed(const char* name) {
    return {name,
            SECRET_SCHEMA_NONE,
            {{serviceKey, SECRET_SCHEMA_ATTRIBUTE_STRING},
             {accountKey, SECRET_SCHEMA_ATTRIBUTE_STRING},
             {commentKey, SECRET_SCHEMA_ATTRIBUTE_STRING},
             {referenceKey, SECRET_SCHEMA_ATTRIBUTE_STRING},
             {createdKey, SECRET_SCHEMA_ATTRIBUTE_STRING},
             {revisionKey, SECRET_SCHEMA_ATTRIBUTE_STRING},
             {hasDataKey, SECRET_SCHEMA_ATTRIBUTE_STRING},
             {accessibilityKey, SECRET_SCHEMA_ATTRIBUTE_STRING},
             {writtenKey, SECRET_SCHEMA_ATTRIBUTE_STRING},
             {nullptr, SECRET_SCHEMA_ATTRIBUTE_STRING}},
            0,
            nullptr,
            nullptr,
            nullptr,
            nullptr,
            nullptr,
            nullptr,
            nullptr};
}

}  // namespace

std::string secretServiceText(const std::string& bytes) {
    if (!bytes.starts_with(escape) && bytes.find('\0') == std::string::npos && isValidUtf8(bytes)) {
        return bytes;
    }
    const GLibOwner<char> encoded{g_base64_encode(reinterpret_cast<const guchar*>(bytes.data()), bytes.size())};
    return std::string{escape}.append(encoded.get());
}

std::string bytesOfSecretServiceText(const std::string& text) {
    if (!text.starts_with(escape)) {
        return text;
    }
    gsize size = 0;
    const GLibOwner<guchar> decoded{g_base64_decode(text.c_str() + escape.size(), &size)};
    return {reinterpret_cast<const char*>(decoded.get()), size};
}

const SecretSchema* secretServiceSchema() {
    static const auto schema = schemaNamed("example.tarnwick.GenericPassword");
    return &schema;
}

const SecretSchema* formerSecretServiceSchema() {
    static const auto schema = schemaNamed("Platform.GenericPassword");
    return &schema;
}

const SecretSchema* movedItemSchema() {
    static const auto schema = schemaNamed("example.tarnwick.MovedItem");
    return &schema;
}

GLibOwner<GHashTable> tableOf(const SecretServiceAttributes& attributes) {
    auto table = emptyTable();
    set(table.get(), serviceKey, secretServiceText(attributes.service));
    set(table.get(), accountKey, secretServiceText(attributes.account));
    set(table.get(), commentKey, secretServiceText(attributes.comment));
    set(table.get(), referenceKey, secretServiceText(attributes.reference));
    set(table.get(), createdKey, std::to_string(attributes.created));
    set(table.get(), revisionKey, std::to_string(attributes.revision));
    if (attributes.hasData) {
        set(table.get(), hasDataKey, "yes");
    }
    if (attributes.accessibility) {
        set(table.get(), accessibilityKey, secretServiceText(*attributes.accessibility));
    }
    if (attributes.written) {
        set(table.get(), writtenKey, std::to_string(*attributes.written));
    }
    return table;
}

GLibOwner<GHashTable> tableToFind(const std::optional<std::string>& service) {
    auto table = emptyTable();
    if (service) {
        set(table.get(), serviceKey, secretServiceText(*service));
    }
    return table;
}

GLibOwner<GHashTable> tableOfMoved(const Bytes& reference, std::int64_t written) {
    auto table = tableToFindMoved(reference);
    set(table.get(), writtenKey, std::to_string(written));
    return table;
}

GLibOwner<GHashTable> tableToFindMoved(const Bytes& reference) {
    auto table = emptyTable();
    set(table.get(), referenceKey, secretServiceText(reference));
    return table;
}

std::int64_t writtenOfMoved(GHashTable* table) {
    return numberAt(table, writtenKey);
}

std::optional<SecretServiceAttributes> attributesOf(GHashTable* table) {
    const auto reference = textAt(table, referenceKey);
    if (!reference) {
        return std::nullopt;
    }
    const auto accessibility = textAt(table, accessibilityKey);
    return SecretServiceAttributes{
        bytesAt(table, serviceKey),
        bytesAt(table, accountKey),
        bytesAt(table, commentKey),
        bytesOfSecretServiceText(*reference),
        numberAt(table, createdKey),
        numberAt(table, revisionKey),
        textAt(table, hasDataKey).has_value(),
        accessibility ? std::optional{bytesOfSecretServiceText(*accessibility)} : std::nullopt,
        textAt(table, writtenKey) ? std::optional{numberAt(table, writtenKey)} : std::nullopt};
}

}  // namespace Tarnwick_API::Platform
