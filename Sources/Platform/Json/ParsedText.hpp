#pragma once

#include <Platform/Json/MemberLayouts.hpp>

#include <simdjson.h>

namespace Tarnwick_API::Platform {

/// What the parser makes of a text. Every view of a JSON value refers to one.
class ParsedText final : public simdjson::dom::document {
public:
    /// The one that a view's place is in.
    [[nodiscard]] static ParsedText& of(const simdjson::internal::tape_ref& place) noexcept {
        // Every document is made as one of these; it remembers names while its values are read.
        return const_cast<ParsedText&>(static_cast<const ParsedText&>(*place.doc));
    }

    MemberLayouts layouts;
    /// No name of a secret text is remembered.
    bool isSecret = false;
};

}  // namespace Tarnwick_API::Platform
