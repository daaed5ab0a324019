// Processes that die while they write, and several that write at once.

#include "ChildProcess.hpp"
#include "PrintKeychainStatus.hpp"
#include "TemporaryFolder.hpp"
#include <Platform/Keychain/File/FileKeychainStore.hpp>

#include <atomic>
#include <csignal>
#include <thread>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sqlite3.h>
#include <sys/stat.h>

namespace Tarnwick_API::Platform {
namespace {

namespace fs = std::filesystem;

constexpr auto success = KeychainStatus::success;

const KeychainQuery query{"s", {}};

/// Several pages, so that half a write would show.
Bytes secret(unsigned number) {
    const auto text = std::to_string(number) + ".";
    Bytes bytes;
    while (bytes.size() < 20'000) {
        bytes += text;
    }
    return bytes;
}

KeychainItem item(const std::string& account, unsigned number) {
    return {"s", account, secret(number), "label", {}, "comment"};
}

class FileKeychainDurability : public ::testing::Test {
protected:
    [[nodiscard]] std::optional<KeychainDictionary> read() const {
        auto answer = FileKeychainStore{file}.copyMatching(query, {true, true, true});
        if (answer.status != success) {
            EXPECT_EQ(answer.status, KeychainStatus::itemNotFound);
            return std::nullopt;
        }
        return std::get<KeychainDictionary>(std::move(answer.value));
    }

    void expectPrivateFiles() const {
        for (const auto& entry : fs::directory_iterator{file.parent_path()}) {
            EXPECT_EQ(entry.status().permissions(), fs::perms{0600}) << entry.path();
        }
    }

    TemporaryFolder folder;
    fs::path file = folder.path() / "keychain.sqlite";
};

/// Kills this process in its `countdown`th change of a file, which is half done then if it is a write.
namespace deadly {

int countdown = 0;
ssize_t (*originalWrite)(int, const void*, size_t, off_t) = nullptr;
int (*originalTruncate)(int, off_t) = nullptr;
int (*originalUnlink)(const char*) = nullptr;

ssize_t write(int file, const void* bytes, size_t size, off_t offset) {
    if (--countdown == 0) {
        static_cast<void>(originalWrite(file, bytes, size / 2, offset));
        static_cast<void>(std::raise(SIGKILL));
    }
    return originalWrite(file, bytes, size, offset);
}

int truncate(int file, off_t size) {
    if (--countdown == 0) {
        static_cast<void>(std::raise(SIGKILL));
    }
    return originalTruncate(file, size);
}

int unlink(const char* path) {
    if (--countdown == 0) {
        static_cast<void>(std::raise(SIGKILL));
    }
    return originalUnlink(path);
}

template <class Function>
bool replace(const char* name, Function replacement, Function& original) {
    auto* const files = sqlite3_vfs_find("unix");
    original = reinterpret_cast<Function>(files->xGetSystemCall(files, name));
    return original != nullptr &&
           files->xSetSystemCall(files, name, reinterpret_cast<sqlite3_syscall_ptr>(replacement)) == SQLITE_OK;
}

bool arm(int count) {
    countdown = count;
    return (replace("pwrite64", write, originalWrite) || replace("pwrite", write, originalWrite)) &&
           replace("ftruncate", truncate, originalTruncate) && replace("unlink", unlink, originalUnlink);
}

}  // namespace deadly

TEST_F(FileKeychainDurability, LeavesTheOldOrTheNewItemAtEachPointOfDeath) {
    const struct {
        std::string name;
        bool hasItem = false;
        KeychainStatus (*write)(KeychainStore&) = nullptr;
        std::optional<Bytes> after;
    } rows[] = {
        {"add to no file", false, [](KeychainStore& store) { return store.add(item("a", 2)); }, secret(2)},
        {"add", true, [](KeychainStore& store) { return store.add(item("b", 2)); }, secret(1)},
        {"update", true, [](KeychainStore& store) { return store.update(query, {.data = secret(2)}); }, secret(2)},
        {"remove", true, [](KeychainStore& store) { return store.remove(query); }, std::nullopt},
    };
    for (const auto& row : rows) {
        bool survived = false;
        int oldOnes = 0;
        for (int point = 1; !survived; ++point) {
            SCOPED_TRACE(::testing::Message() << row.name << ", killed in change " << point);
            fs::remove(file);
            ASSERT_TRUE(!row.hasItem || FileKeychainStore{file}.add(item("a", 1)) == success);
            const auto before = read();
            ChildProcess child{[&] {
                FileKeychainStore store{file};
                ::_exit(deadly::arm(point) && row.write(store) == success ? 0 : 1);
            }};
            const int end = child.wait();
            survived = WIFEXITED(end);
            ASSERT_TRUE(survived ? WEXITSTATUS(end) == 0 : WTERMSIG(end) == SIGKILL) << end;
            expectPrivateFiles();
            const auto found = read();
            const auto data = found ? found->data : std::nullopt;
            const auto old = before ? before->data : std::nullopt;
            EXPECT_TRUE(data == row.after || (!survived && data == old));
            oldOnes += data == old ? 1 : 0;
            if (before && found) {
                EXPECT_EQ(found->persistentReference, before->persistentReference);
            }
            EXPECT_EQ(FileKeychainStore{file}.add(item("later", 3)), success) << "it can be written again";
            EXPECT_EQ(std::distance(fs::directory_iterator{file.parent_path()}, {}), 1) << "no journal is left";
        }
        EXPECT_GT(oldOnes, 3) << row.name << " was hardly interrupted";
    }
}

/// Adds `count` items and changes the one that all share as often. Nothing fails while others write too; how long the
/// disk takes under load is not what is tested.
bool writeMuch(const fs::path& file, const std::string& name, int count) {
    FileKeychainStore store{file, std::chrono::minutes{2}};
    bool good = true;
    for (int number = 0; number < count; ++number) {
        const auto account = name + std::to_string(number);
        const auto added = store.add({"own", account, account, "", {}, ""});
        const auto shared = store.add({"shared", "a", "", "", {}, ""});
        const auto updated = store.update({"shared", {}}, {.data = secret(7)});
        good = good && added == success && (shared == success || shared == KeychainStatus::duplicateItem) &&
               updated == success;
    }
    return good;
}

void expectAll(const fs::path& file, int count) {
    FileKeychainStore store{file};
    for (const std::string name : {"x", "y"}) {
        for (int number = 0; number < count; ++number) {
            EXPECT_EQ(store.copyMatching({"own", name + std::to_string(number)}, {}).status, success) << name << number;
        }
    }
    EXPECT_EQ(std::get<Bytes>(store.copyMatching({"shared", {}}, {.data = true}).value), secret(7));
    EXPECT_EQ(store.remove({"shared", {}}), success);
    EXPECT_EQ(store.copyMatching({"shared", {}}, {}).status, KeychainStatus::itemNotFound);
}

TEST_F(FileKeychainDurability, LosesNothingWhenTwoProcessesWriteAtOnce) {
    constexpr int count = 20;
    const Shared<std::atomic<int>> started;
    const auto work = [&](const char* name) {
        return [&, name] {
            for (++*started; *started < 2;) {
            }
            ::_exit(writeMuch(file, name, count) ? 0 : 1);
        };
    };
    ChildProcess first{work("x")};
    ChildProcess second{work("y")};
    EXPECT_EQ(first.wait(), 0);
    EXPECT_EQ(second.wait(), 0);
    expectAll(file, count);
}

TEST_F(FileKeychainDurability, LosesNothingWhenTwoThreadsWriteAtOnce) {
    constexpr int count = 10;
    std::atomic<int> good = 0;
    {
        std::thread first{[&] { good += writeMuch(file, "x", count) ? 1 : 0; }};
        std::thread second{[&] { good += writeMuch(file, "y", count) ? 1 : 0; }};
        first.join();
        second.join();
    }
    EXPECT_EQ(good, 2);
    expectAll(file, count);
}

}  // namespace
}  // namespace Tarnwick_API::Platform
