#pragma once

#include <Tarnwick_API/Platform/Json/JsonDecoder.hpp>
#include <Tarnwick_API/Platform/Text/Bytes.hpp>

#include <cstdint>
#include <exception>
#include <optional>
#include <vector>

namespace Tarnwick_API {

/// What the records with an identity have in common.
///
/// The numbers of all records are the service's, unchecked. A whole number is any of 64 bits, also a negative one where
/// that makes no sense. A real that the service may write as a text can be NaN or infinite as well ("nan", "inf"), and
/// so must be looked at before it is converted to an integer or sorted by: each such member says so.
struct ApiItem {
    /// 0 where the service gives none; not necessarily positive or unique.
    std::int64_t id = 0;
    /// Whether the record comes from the application's own store; false for every decoded one.
    bool cached = false;

    /// The record that the bytes hold as one JSON object; none on any error.
    template <Platform::Decodable Record>
    [[nodiscard]] static std::optional<Record> create(const Platform::Bytes& bytes) {
        try {
            return Platform::JsonDecoder{}.decode<Record>(bytes);
        } catch (const std::exception&) {
            return std::nullopt;
        }
    }

    /// The records that the bytes hold as a JSON array; empty on any error, one bad element among them.
    template <Platform::Decodable Record>
    [[nodiscard]] static std::vector<Record> createArray(const Platform::Bytes& bytes) {
        try {
            return Platform::JsonDecoder{}.decodeArray<Record>(bytes);
        } catch (const std::exception&) {
            return {};
        }
    }
};

}  // namespace Tarnwick_API
