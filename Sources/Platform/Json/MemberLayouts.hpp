#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <optional>
#include <string_view>

#include <simdjson.h>

namespace Tarnwick_API::Platform {

/// A member's name, as the parser writes it: its length, its characters and a NUL.
class MemberName {
public:
    /// Whether one fits that stands there in the parser's buffer, which is then taken over.
    [[nodiscard]] bool assign(const char* entry) noexcept {
        const std::size_t size = lengthAt(entry) + std::size_t{frame};
        if (size > entry_.size()) {
            return false;
        }
        std::memcpy(entry_.data(), entry, size);
        return true;
    }

    /// Whether it is the one that stands there in the parser's buffer.
    [[nodiscard]] bool isAt(const char* entry) const noexcept {
        const std::size_t size = lengthAt(entry_.data()) + std::size_t{frame};
        // The buffer goes on by more than a word behind its last text.
        return size < sizeof(std::uint64_t) ? equalWords<std::uint32_t>(entry_.data(), entry, size)
                                            : equalWords<std::uint64_t>(entry_.data(), entry, size);
    }

    [[nodiscard]] bool operator==(std::string_view name) const noexcept {
        const char* const own = entry_.data() + sizeof(std::uint32_t);
        if (lengthAt(entry_.data()) != name.size()) {
            return false;
        }
        if (name.size() >= sizeof(std::uint64_t)) {
            return equalWords<std::uint64_t>(own, name.data(), name.size());
        }
        if (name.size() >= sizeof(std::uint32_t)) {
            return equalWords<std::uint32_t>(own, name.data(), name.size());
        }
        return name.empty() || equalWords<char>(own, name.data(), name.size());
    }

private:
    static constexpr std::size_t frame = sizeof(std::uint32_t) + 1;

    template <typename Word>
    [[nodiscard]] static Word wordAt(const char* position) noexcept {
        Word word;
        std::memcpy(&word, position, sizeof word);
        return word;
    }
    [[nodiscard]] static std::uint32_t lengthAt(const char* entry) noexcept { return wordAt<std::uint32_t>(entry); }

    /// In words, the last of which overlaps the one before; `size` is no less than one. For texts this short it is
    /// several times as fast as the standard library's function.
    template <typename Word>
    [[nodiscard]] static bool equalWords(const char* a, const char* b, std::size_t size) noexcept {
        const std::size_t last = size - sizeof(Word);
        for (std::size_t position = 0; position < last; position += sizeof(Word)) {
            if (wordAt<Word>(a + position) != wordAt<Word>(b + position)) {
                return false;
            }
        }
        return wordAt<Word>(a + last) == wordAt<Word>(b + last);
    }

    std::array<char, 36> entry_;
};

using JsonPlace = simdjson::internal::tape_ref;

/// The names that the members of an object had, in their order, and where their values are. The records of a text
/// repeat them; an object that does is walked once, and its members are found without another look at it.
class JsonMemberLayout {
public:
    /// Where the member's value is in that object; 0, where no value is, when it is missing.
    [[nodiscard]] std::size_t find(JsonPlace object, std::string_view name) noexcept {
        // Members are mostly asked for in the order in which they come.
        if (object_ == object.json_index && next_ != end_ && next_->name == name) {
            return (next_++)->value;
        }
        return search(object, name);
    }

private:
    friend class MemberLayouts;
    struct Member {
        MemberName name;
        std::uint32_t value;
    };

    [[nodiscard]] bool take(JsonPlace object) noexcept;
    [[nodiscard]] bool learn(const char* entry) noexcept;
    [[nodiscard, gnu::noinline]] std::size_t search(JsonPlace object, std::string_view name) noexcept;

    /// Whose members' values are known. None is at 0, where the document itself is.
    std::size_t object_ = 0;
    Member* begin_ = nullptr;
    Member* end_ = nullptr;
    /// Behind the member that was found last.
    Member* next_ = nullptr;
    /// Behind the last one whose name is known.
    Member* known_ = nullptr;
};

/// One layout for each number of members.
class MemberLayouts {
public:
    // NOLINTNEXTLINE(cppcoreguidelines-pro-type-member-init): none of the members is read before it is written
    MemberLayouts() noexcept {
        std::size_t count = 0;
        auto* members = members_.data();
        for (JsonMemberLayout& layout : layouts_) {
            layout.begin_ = layout.next_ = layout.known_ = members;
            members += count++;
            layout.end_ = members;
        }
    }
    MemberLayouts(const MemberLayouts&) = delete;
    MemberLayouts& operator=(const MemberLayouts&) = delete;

    /// By which this object's members are found; none for one with many members, a long name or a repeated one.
    [[nodiscard]] JsonMemberLayout* take(JsonPlace object) noexcept {
        const std::size_t count = object.scope_count();
        return count <= greatestCount && layouts_[count].take(object) ? &layouts_[count] : nullptr;
    }

    /// Another document's objects follow, at the same places.
    void forgetObjects() noexcept {
        for (JsonMemberLayout& layout : layouts_) {
            layout.object_ = 0;
        }
    }

private:
    static constexpr std::size_t greatestCount = 32;

    std::array<JsonMemberLayout, greatestCount + 1> layouts_;
    std::array<JsonMemberLayout::Member, greatestCount*(greatestCount + 1) / 2> members_;
};

}  // namespace Tarnwick_API::Platform
