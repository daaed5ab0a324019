#pragma once

#include <Tarnwick_API/Export.hpp>

#include <cstddef>
#include <exception>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace Tarnwick_API::Platform {

/// Why a JSON text did not become a record.
class TARNWICK_API_EXPORT DecodingError : public std::exception {
public:
    enum class Kind {
        keyNotFound,    ///< a required member is missing; the path is that of the enclosing object
        valueNotFound,  ///< a required member is null
        typeMismatch,   ///< a member is of another JSON type
        dataCorrupted,  ///< a number does not fit, or the text is no JSON (then the path is empty)
    };
    /// A member's name, or an element's index.
    using PathElement = std::variant<std::string, std::size_t>;
    /// From the root inwards.
    using Path = std::vector<PathElement>;

    DecodingError(Kind kind, Path codingPath, std::string debugDescription)
        : kind_{kind}, codingPath_{std::move(codingPath)}, debugDescription_{std::move(debugDescription)} {}

    [[nodiscard]] Kind kind() const noexcept { return kind_; }
    /// From the root to the value at fault.
    [[nodiscard]] const Path& codingPath() const noexcept { return codingPath_; }
    /// For developers; English.
    [[nodiscard]] const std::string& debugDescription() const noexcept { return debugDescription_; }
    /// For users: one of two fixed English sentences.
    [[nodiscard]] std::string_view localizedDescription() const noexcept;
    /// The path as text, elements joined by ".", for messages.
    [[nodiscard]] std::string pathText() const;
    [[nodiscard]] const char* what() const noexcept override { return debugDescription_.c_str(); }

    /// The same error seen from one level further out.
    [[nodiscard]] DecodingError within(PathElement element) const;

    friend bool operator==(const DecodingError& a, const DecodingError& b) noexcept {
        return a.kind_ == b.kind_ && a.codingPath_ == b.codingPath_ && a.debugDescription_ == b.debugDescription_;
    }

private:
    Kind kind_;
    Path codingPath_;
    std::string debugDescription_;
};

}  // namespace Tarnwick_API::Platform
