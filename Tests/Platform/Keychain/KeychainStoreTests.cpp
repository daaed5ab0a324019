// What every keychain store does, whatever keeps its items.

#include <Tarnwick_API/Platform/Keychain/KeychainStore.hpp>

#include "KeychainStoreKinds.hpp"
#include "PrintKeychainStatus.hpp"
#include "TemporaryFolder.hpp"

#include <set>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace Tarnwick_API::Platform {
namespace {

using ::testing::Eq;
using ::testing::Optional;

class EveryKeychainStore : public ::testing::TestWithParam<KeychainStoreKind> {
protected:
    static KeychainItem item(std::string service, std::string account, std::optional<Bytes> data = "secret") {
        return {std::move(service), std::move(account), std::move(data), "label", {}, "comment"};
    }

    KeychainStatus add(std::string service, std::string account, std::optional<Bytes> data = "secret") {
        return store->add(item(std::move(service), std::move(account), std::move(data)));
    }

    KeychainDictionary everything(const KeychainQuery& query) {
        const auto answer = store->copyMatching(query, {true, true, true, true});
        EXPECT_EQ(answer.status, KeychainStatus::success);
        return std::get<KeychainDictionary>(answer.value);
    }

    std::optional<std::string> accountOf(const KeychainQuery& query) {
        const auto answer = store->copyMatching(query, {.attributes = true});
        if (answer.status != KeychainStatus::success) {
            EXPECT_EQ(answer.status, KeychainStatus::itemNotFound);
            return std::nullopt;
        }
        return std::get<KeychainDictionary>(answer.value).account;
    }

    TemporaryFolder folder{std::filesystem::temp_directory_path()};
    std::shared_ptr<KeychainStore> store = GetParam().make(folder.path());
};

TEST_P(EveryKeychainStore, IsEmptyAtFirst) {
    EXPECT_EQ(store->copyMatching({}, {}).status, KeychainStatus::itemNotFound);
    EXPECT_EQ(store->update({}, {.account = "a"}), KeychainStatus::itemNotFound);
    EXPECT_EQ(store->remove({}), KeychainStatus::itemNotFound);
}

TEST_P(EveryKeychainStore, KeepsOneItemForEachServiceAndAccount) {
    EXPECT_EQ(add("s", "a", "first"), KeychainStatus::success);
    EXPECT_EQ(add("s", "b"), KeychainStatus::success);
    EXPECT_EQ(add("t", "a"), KeychainStatus::success);
    EXPECT_EQ(add("s", "a", "second"), KeychainStatus::duplicateItem);
    EXPECT_THAT(everything({"s", "a"}).data, Optional(Eq("first")));
}

TEST_P(EveryKeychainStore, FindsTheOldestMatch) {
    ASSERT_EQ(add("s", "z"), KeychainStatus::success);
    ASSERT_EQ(add("s", "a"), KeychainStatus::success);
    ASSERT_EQ(add("r", "m"), KeychainStatus::success);
    const struct {
        KeychainQuery query;
        std::optional<std::string> account;
    } rows[] = {
        {{"s", {}}, "z"},          {{"s", "a"}, "a"},        {{"r", {}}, "m"},
        {{{}, "a"}, "a"},          {{{}, {}}, "z"},          {{"r", "a"}, std::nullopt},
        {{"S", {}}, std::nullopt}, {{"", {}}, std::nullopt}, {{"s%", {}}, std::nullopt},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(accountOf(row.query), row.account)
            << row.query.service.value_or("any") << ", " << row.query.account.value_or("any");
    }
}

TEST_P(EveryKeychainStore, ShapesItsAnswerByWhatIsWanted) {
    ASSERT_EQ(add("s", "a", "secret"), KeychainStatus::success);
    const auto reference = *everything({}).persistentReference;
    const struct {
        KeychainReturn wanted;
        std::size_t alternative = 0;
    } rows[] = {
        {{}, 0},
        {{.limitOne = true}, 0},
        {{.data = true}, 1},
        {{.persistentReference = true}, 1},
        {{.attributes = true}, 2},
        {{.attributes = true, .data = true}, 2},
        {{.attributes = true, .persistentReference = true, .limitOne = true}, 2},
        {{.data = true, .persistentReference = true}, 2},
    };
    for (const auto& [wanted, alternative] : rows) {
        SCOPED_TRACE(::testing::Message() << wanted.attributes << wanted.data << wanted.persistentReference);
        const auto answer = store->copyMatching({"s", {}}, wanted);
        EXPECT_EQ(answer.status, KeychainStatus::success);
        ASSERT_EQ(answer.value.index(), alternative);
        if (const auto* const bytes = std::get_if<Bytes>(&answer.value)) {
            EXPECT_EQ(*bytes, wanted.data ? "secret" : reference);
        }
        if (const auto* const shown = std::get_if<KeychainDictionary>(&answer.value)) {
            const auto present = [](bool asked, const std::string& text) {
                return asked ? std::optional{text} : std::nullopt;
            };
            EXPECT_EQ(shown->service, present(wanted.attributes, "s"));
            EXPECT_EQ(shown->account, present(wanted.attributes, "a"));
            EXPECT_EQ(shown->label, present(wanted.attributes, "label"));
            EXPECT_EQ(shown->comment, present(wanted.attributes, "comment"));
            EXPECT_EQ(shown->accessibility, present(wanted.attributes, "always"));
            EXPECT_EQ(shown->data, present(wanted.data, "secret"));
            EXPECT_EQ(shown->persistentReference, present(wanted.persistentReference, reference));
        }
    }
}

TEST_P(EveryKeychainStore, TellsNoDataFromEmptyData) {
    ASSERT_EQ(add("none", "a", std::nullopt), KeychainStatus::success);
    ASSERT_EQ(add("empty", "a", ""), KeychainStatus::success);
    EXPECT_EQ(everything({"none", {}}).data, std::nullopt);
    EXPECT_EQ(store->copyMatching({"none", {}}, {.data = true}).value.index(), 0);
    EXPECT_THAT(everything({"empty", {}}).data, Optional(Eq("")));
    EXPECT_EQ(std::get<Bytes>(store->copyMatching({"empty", {}}, {.data = true}).value), "");
    EXPECT_EQ(store->update({"none", {}}, {.data = ""}), KeychainStatus::success);
    EXPECT_THAT(everything({"none", {}}).data, Optional(Eq("")));
}

TEST_P(EveryKeychainStore, UpdatesTheOldestMatchInPlace) {
    ASSERT_EQ(add("s", "a", "1"), KeychainStatus::success);
    ASSERT_EQ(add("s", "b", "2"), KeychainStatus::success);
    const auto before = everything({"s", {}});
    const struct {
        KeychainQuery target;
        KeychainChanges changes;
        std::string account, data, comment;
    } rows[] = {
        {{"s", {}}, {}, "a", "1", "comment"},
        {{"s", {}}, {.data = "3"}, "a", "3", "comment"},
        {{"s", "a"}, {.comment = ""}, "a", "3", ""},
        {{"s", {}}, {.account = "a"}, "a", "3", ""},
        {{{}, "a"}, {.account = "c", .data = "4", .comment = "x"}, "c", "4", "x"},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(store->update(row.target, row.changes), KeychainStatus::success);
        const auto after = everything({"s", {}});
        EXPECT_THAT(after.account, Optional(row.account));
        EXPECT_THAT(after.data, Optional(row.data));
        EXPECT_THAT(after.comment, Optional(row.comment));
        EXPECT_EQ(after.label, before.label);
        EXPECT_EQ(after.persistentReference, before.persistentReference);
    }
    EXPECT_THAT(everything({"s", "b"}).data, Optional(Eq("2")));
}

TEST_P(EveryKeychainStore, RefusesAnUpdateThatWouldCollideOrFindsNothing) {
    ASSERT_EQ(add("s", "a", "1"), KeychainStatus::success);
    ASSERT_EQ(add("s", "b", "2"), KeychainStatus::success);
    ASSERT_EQ(add("t", "c", "3"), KeychainStatus::success);
    const KeychainChanges collision{.account = "b", .data = "new", .comment = "new"};
    EXPECT_EQ(store->update({"s", "a"}, collision), KeychainStatus::duplicateItem);
    EXPECT_THAT(everything({"s", "a"}).data, Optional(Eq("1")));
    EXPECT_THAT(everything({"s", "a"}).comment, Optional(Eq("comment")));
    EXPECT_EQ(store->update({"s", "c"}, collision), KeychainStatus::itemNotFound);
    EXPECT_EQ(store->update({"t", {}}, collision), KeychainStatus::success) << "the same account of another service";
}

TEST_P(EveryKeychainStore, RemovesEveryMatch) {
    for (const auto* const account : {"a", "b", "c"}) {
        ASSERT_EQ(add("s", account), KeychainStatus::success);
        ASSERT_EQ(add("t", account), KeychainStatus::success);
    }
    EXPECT_EQ(store->remove({"s", "b"}), KeychainStatus::success);
    EXPECT_EQ(accountOf({"s", "b"}), std::nullopt);
    EXPECT_EQ(store->remove({"s", {}}), KeychainStatus::success);
    EXPECT_EQ(accountOf({"s", {}}), std::nullopt);
    EXPECT_EQ(store->remove({"s", {}}), KeychainStatus::itemNotFound);
    EXPECT_EQ(accountOf({"t", {}}), "a");
}

TEST_P(EveryKeychainStore, NeverGivesAReferenceTwice) {
    std::vector<Bytes> references;
    for (int round = 0; round < 3; ++round) {
        ASSERT_EQ(add("s", "a"), KeychainStatus::success);
        ASSERT_EQ(add("s", "b"), KeychainStatus::success);
        references.push_back(*everything({"s", "a"}).persistentReference);
        references.push_back(*everything({"s", "b"}).persistentReference);
        ASSERT_EQ(store->remove({"s", {}}), KeychainStatus::success);
    }
    EXPECT_THAT(references, ::testing::Each(::testing::SizeIs(::testing::Ge(16U))));
    EXPECT_EQ((std::set<Bytes>{references.begin(), references.end()}).size(), references.size());
}

TEST_P(EveryKeychainStore, KeepsAnyBytesAsTheyAre) {
    const Bytes large(1U << 20U, '\xA5');
    // The keyring's own encoding of what it can't hold begins like the second one.
    for (const auto& odd : {std::string{"\0'\"%;--\xFF\xC3\xA4\n", 11}, std::string{"base64:YQ=="}}) {
        ASSERT_EQ(store->add({odd, odd + "1", odd, odd, {}, odd, odd}), KeychainStatus::success);
        ASSERT_EQ(add(odd, odd + "2", large), KeychainStatus::success);
        const auto found = everything({odd, odd + "1"});
        EXPECT_THAT(found.service, Optional(odd));
        EXPECT_THAT(found.account, Optional(odd + "1"));
        EXPECT_THAT(found.data, Optional(odd));
        EXPECT_THAT(found.label, Optional(odd));
        EXPECT_THAT(found.comment, Optional(odd));
        EXPECT_THAT(found.accessibility, Optional(odd));
        EXPECT_THAT(everything({odd, odd + "2"}).data, Optional(large));
        EXPECT_EQ(accountOf({odd.substr(0, 1), {}}), std::nullopt) << "the text does not end at a NUL";
    }
}

TEST_P(EveryKeychainStore, SaysInWordsWhatAStatusMeans) {
    const struct {
        int status = 0;
        std::string message;
    } rows[] = {
        {0, "No error."},
        {-34, "The disk is full."},
        {-50, "One or more parameters passed to a function were not valid."},
        {-128, "User canceled the operation."},
        {-25293, "The user name or passphrase you entered is not correct."},
        {-25295, "The specified keychain is not a valid keychain file."},
        {-25299, "The specified item already exists in the keychain."},
        {-25300, "The specified item could not be found in the keychain."},
        {-34018, "A required entitlement isn't present."},
        {-12345, "OSStatus -12345"},
        {1, "OSStatus 1"},
    };
    for (const auto& row : rows) {
        EXPECT_THAT(store->message(static_cast<KeychainStatus>(row.status)), Optional(row.message));
    }
    // What a store can say more helpfully than the platform does of its own.
    for (const auto status : {-36, -61, -25257, -25291, -25308}) {
        EXPECT_THAT(store->message(static_cast<KeychainStatus>(status)), Optional(::testing::EndsWith(".")));
    }
}

INSTANTIATE_TEST_SUITE_P(Stores, EveryKeychainStore, ::testing::ValuesIn(everyKeychainStoreKind()),
                         [](const auto& info) { return info.param.name; });

}  // namespace
}  // namespace Tarnwick_API::Platform
