#include <Tarnwick_API/Platform/Json/DecodingError.hpp>

#include <iterator>
#include <string>
#include <utility>

namespace Tarnwick_API::Platform {

std::string_view DecodingError::localizedDescription() const noexcept {
    switch (kind_) {
        case Kind::keyNotFound:
        case Kind::valueNotFound:
            return "The data couldn\xE2\x80\x99t be read because it is missing.";
        case Kind::typeMismatch:
        case Kind::dataCorrupted:
            break;
    }
    return "The data couldn\xE2\x80\x99t be read because it isn\xE2\x80\x99t in the correct format.";
}

std::string DecodingError::pathText() const {
    std::string text;
    for (const PathElement& element : codingPath_) {
        if (!text.empty()) {
            text += '.';
        }
        if (const auto* name = std::get_if<std::string>(&element)) {
            text += *name;
        } else {
            text += "Index " + std::to_string(std::get<std::size_t>(element));
        }
    }
    return text;
}

DecodingError DecodingError::within(PathElement element) const {
    Path path;
    path.reserve(codingPath_.size() + 1);
    path.push_back(std::move(element));
    path.insert(path.end(), codingPath_.begin(), codingPath_.end());
    return DecodingError{kind_, std::move(path), debugDescription_};
}

}  // namespace Tarnwick_API::Platform
