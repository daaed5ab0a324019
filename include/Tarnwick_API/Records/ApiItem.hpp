#pragma once

#include <Tarnwick_API/Platform/Json/JsonDecoder.hpp>
#include <Tarnwick_API/Platform/Text/Bytes.hpp>

#include <cstdint>
#include <exception>
#include <optional>
#include <vector>

namespace Tarnwick_API {

/// What the records with an identity have in common.
struct ApiItem {
    /// 0 where the service gives none.
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
