#include <Tarnwick_API/Platform/Json/JsonDecoder.hpp>

#include <Platform/Json/JsonArrayPieces.hpp>

namespace Tarnwick_API::Platform {

void JsonDecoder::readArray(const Bytes& text, std::size_t recordSize, const std::function<void(std::size_t)>& reserve,
                            const std::function<void(const JsonValue&)>& read) {
    readArrayText(text, recordSize, reserve, read);
}

}  // namespace Tarnwick_API::Platform
