#pragma once

#include <Platform/Cache/LockPatience.hpp>
#include <Platform/Cache/ResponseCoding.hpp>
#include <Platform/Sqlite/SqliteConnection.hpp>
#include <Platform/Sqlite/SqliteError.hpp>

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace Tarnwick_API::Platform {

/// The entries in one SQLite file, through one connection. Its operations throw `SqliteError`. One thread at a
/// time.
///
/// A write-ahead log, as reading then waits for no writer. It is not flushed for each change: a process that dies loses
/// nothing, a power failure may take the latest changes.
class CacheDatabase {
public:
    /// Opens the existing file, and lays it out when it is empty. One that is no cache of this version is refused
    /// before anything of it is changed.
    /// Locks of other processes are waited for while there is `patience`, which must outlive this.
    CacheDatabase(const std::string& path, LockPatience& patience);
    CacheDatabase(const CacheDatabase&) = delete;
    CacheDatabase& operator=(const CacheDatabase&) = delete;
    ~CacheDatabase();

    /// Whether no later try will do better with this file.
    [[nodiscard]] static bool isFinal(const SqliteError& error) noexcept;
    /// Whether another process has the file, or what is needed of it.
    [[nodiscard]] static bool isLock(const SqliteError& error) noexcept;

    /// False when the file at the path is another one by now, or none.
    [[nodiscard]] bool isInPlace() const;
    /// Keeps the log from being written back into a file that turned out damaged.
    void leaveFileAsItIs();

    [[nodiscard]] std::optional<EncodedResponse> find(const std::string& key);
    [[nodiscard]] std::size_t usage();

    /// Changes that happen together or, unless committed, not at all. No other process writes meanwhile.
    class Transaction {
    public:
        explicit Transaction(CacheDatabase& database);
        Transaction(const Transaction&) = delete;
        Transaction& operator=(const Transaction&) = delete;
        ~Transaction();

        void store(const std::string& key, const EncodedResponse& response);
        void touch(const std::string& key);
        void remove(const std::string& key);
        /// Removes the entry of `key` if it holds the same as `response`.
        void removeIfStill(const std::string& key, const EncodedResponse& response);
        void removeAll();
        /// Removes the least recently used entries until all take no more than `capacity`.
        void evict(std::size_t capacity);
        /// Gives the space of removed entries back to the file system.
        void shrinkFile();
        void commit();

    private:
        friend class CacheDatabase;
        Transaction(CacheDatabase& database, const char* begin);

        CacheDatabase& database_;
        bool isOpen_ = true;
    };

private:
    struct Statements;

    void layOut();
    void makeLayout();
    [[nodiscard]] std::int64_t number(std::string_view sql);
    void set(const char* pragma, std::uint32_t value);

    SqliteConnection connection_;
    std::unique_ptr<Statements> statements_;
    bool hasCounted_ = false;
};

}  // namespace Tarnwick_API::Platform
