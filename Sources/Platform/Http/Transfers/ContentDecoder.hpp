#pragma once

#include <Platform/Http/Transfers/BodyBuffer.hpp>

#include <memory>
#include <string_view>

#include <zlib.h>

namespace Tarnwick_API::Platform {

/// How the bytes of a body stand for it.
enum class ContentCoding { identity, gzip, deflate };

/// Undoes the coding of a body, piece by piece. libcurl's own decoding takes a stream that is cut off for a whole one.
class ContentDecoder {
public:
    enum class Outcome { taken, damaged, overLimit };

    /// Starts a body with `coding`. The state of an earlier one is used again.
    void begin(ContentCoding coding) noexcept;

    /// Decodes `bytes`, the next of the body, to the end of `body`. What follows the end of a coded stream must be
    /// another one; with "deflate", nothing. Throws std::bad_alloc.
    [[nodiscard]] Outcome decode(std::string_view bytes, BodyBuffer& body);

    /// Whether the bytes so far end within a coded stream, or where one does. Without a coding, or bytes, neither.
    [[nodiscard]] bool isInStream() const noexcept { return place_ == Place::inStream; }
    [[nodiscard]] bool isAtEnd() const noexcept { return place_ == Place::betweenStreams; }

private:
    enum class Place { start, inStream, betweenStreams };
    struct InflateEnd {
        void operator()(z_stream* stream) const noexcept;
    };

    void beginStream(char first);
    [[nodiscard]] Outcome inflateInto(BodyBuffer& body);

    ContentCoding coding_ = ContentCoding::identity;
    Place place_ = Place::start;
    /// None before the first coded body.
    std::unique_ptr<z_stream, InflateEnd> stream_;
};

}  // namespace Tarnwick_API::Platform
