#pragma once

#include <map>

namespace Tarnwick_API {

/// Assigns every entry of `rhs` into `lhs`; of two with one key the right one counts.
template <typename Key, typename Value, typename LeftOrder, typename OtherValue, typename RightOrder>
std::map<Key, Value, LeftOrder>& operator+=(std::map<Key, Value, LeftOrder>& lhs,
                                            const std::map<Key, OtherValue, RightOrder>& rhs) {
    for (const auto& [key, value] : rhs) {
        lhs.insert_or_assign(key, Value{value});
    }
    return lhs;
}

}  // namespace Tarnwick_API
