#include <Platform/Json/MemberLayouts.hpp>

#include <algorithm>

namespace Tarnwick_API::Platform {

namespace {

/// An entry of the tape is its kind and, below, a place.
constexpr unsigned typeShift = 56;

}  // namespace

bool JsonMemberLayout::take(JsonPlace object) noexcept {
    const std::uint64_t* const tape = object.doc->tape.get();
    const auto* const texts = reinterpret_cast<const char*>(object.doc->string_buf.get());
    object_ = object.json_index;
    next_ = begin_;
    JsonPlace place{object.doc, object.json_index + 1};
    for (Member* member = begin_; member != end_; ++member) {
        const char* const entry = texts + (tape[place.json_index] & simdjson::internal::JSON_VALUE_MASK);
        if (member >= known_ || !member->name.isAt(entry)) {
            known_ = member;
            if (!learn(entry)) {
                return false;
            }
        }
        ++place.json_index;
        member->value = static_cast<std::uint32_t>(place.json_index);
        // Of most kinds; numbers and containers take more.
        const bool isText = tape[place.json_index] >> typeShift == '"';
        place.json_index = isText ? place.json_index + 1 : place.after_element();
    }
    return true;
}

/// The next name, if it fits and is none of those before.
bool JsonMemberLayout::learn(const char* entry) noexcept {
    const bool isNew = known_->name.assign(entry) &&
                       std::none_of(begin_, known_, [&](const Member& other) { return other.name.isAt(entry); });
    known_ += isNew ? 1 : 0;
    return isNew;
}

std::size_t JsonMemberLayout::search(JsonPlace object, std::string_view name) noexcept {
    if (object_ != object.json_index) {
        // Another object of as many members came in between.
        static_cast<void>(take(object));
    }
    const auto isCalled = [&](const Member& member) { return member.name == name; };
    Member* found = std::find_if(next_, end_, isCalled);
    if (found == end_) {
        found = std::find_if(begin_, next_, isCalled);
        if (found == next_) {
            return 0;
        }
    }
    next_ = found + 1;
    return found->value;
}

}  // namespace Tarnwick_API::Platform
