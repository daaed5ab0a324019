#include <Tarnwick_API/Platform/Json/JsonDecoder.hpp>

#include <Platform/Json/JsonArrayPieces.hpp>

namespace Tarnwick_API::Platform {

void JsonDecoder::readArray(const Bytes& text, const std::function<void(std::size_t)>& begin,
                            const std::function<void(const JsonValue&)>& read) {
    readArrayText(text, begin, read);
}

}  // namespace Tarnwick_API::Platform
