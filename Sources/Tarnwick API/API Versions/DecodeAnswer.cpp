#include "DecodeAnswer.hpp"

#include <Tarnwick_API/Platform/Json/DecodingError.hpp>

#include <Platform/Logging/DebugChannel.hpp>

#include <string>

namespace Tarnwick_API {

void logDecodingFailure(const Operation& operation, const std::exception& error) {
    if (!Platform::DebugChannel::isOpen()) {
        return;
    }
    std::string line = "Decoding failed";
    if (const auto* const decodingError = dynamic_cast<const Platform::DecodingError*>(&error)) {
        if (const auto path = decodingError->pathText(); !path.empty()) {
            line.append(" at ").append(path);
        }
    }
    line.append(": ").append(error.what());
    Platform::DebugChannel::write(line, operation.name, operation.file, operation.line);
}

}  // namespace Tarnwick_API
