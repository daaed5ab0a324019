#include <Platform/Http/Transfers/ContentDecoder.hpp>

#include <algorithm>
#include <array>
#include <cstddef>
#include <limits>
#include <new>

namespace Tarnwick_API::Platform {

namespace {

/// What "deflate" means is a zlib stream; some servers send a bare one, which begins otherwise.
bool beginsZlibStream(char first) noexcept {
    constexpr unsigned methodMask = 0x0F;
    constexpr unsigned deflateMethod = 8;
    constexpr unsigned greatestFirst = 0x78;
    const auto byte = static_cast<unsigned char>(first);
    return (byte & methodMask) == deflateMethod && byte <= greatestFirst;
}

}  // namespace

void ContentDecoder::InflateEnd::operator()(z_stream* stream) const noexcept {
    inflateEnd(stream);
    std::default_delete<z_stream>{}(stream);
}

void ContentDecoder::begin(ContentCoding coding) noexcept {
    coding_ = coding;
    place_ = Place::start;
}

ContentDecoder::Outcome ContentDecoder::decode(std::string_view bytes, BodyBuffer& body) {
    if (coding_ == ContentCoding::identity) {
        return body.append(bytes) ? Outcome::taken : Outcome::overLimit;
    }
    while (!bytes.empty()) {
        if (place_ == Place::betweenStreams && coding_ != ContentCoding::gzip) {
            return Outcome::damaged;
        }
        if (place_ != Place::inStream) {
            beginStream(bytes.front());
        }
        const auto count = std::min<std::size_t>(bytes.size(), std::numeric_limits<uInt>::max());
        // zlib reads it only, but is built to take what isn't const.
        stream_->next_in = reinterpret_cast<Bytef*>(const_cast<char*>(bytes.data()));
        stream_->avail_in = static_cast<uInt>(count);
        if (const auto outcome = inflateInto(body); outcome != Outcome::taken) {
            return outcome;
        }
        bytes.remove_prefix(count - stream_->avail_in);
    }
    return Outcome::taken;
}

void ContentDecoder::beginStream(char first) {
    constexpr int gzipOnly = MAX_WBITS + 16;
    const int plain = beginsZlibStream(first) ? MAX_WBITS : -MAX_WBITS;
    const int windowBits = coding_ == ContentCoding::gzip ? gzipOnly : plain;
    if (stream_) {
        inflateReset2(stream_.get(), windowBits);
    } else {
        auto stream = std::make_unique<z_stream>();
        if (inflateInit2(stream.get(), windowBits) != Z_OK) {
            throw std::bad_alloc{};
        }
        stream_.reset(stream.release());
    }
    place_ = Place::inStream;
}

/// Decodes as much as stands ready, to the end of the stream at most.
ContentDecoder::Outcome ContentDecoder::inflateInto(BodyBuffer& body) {
    constexpr std::size_t pieceSize = std::size_t{16} * 1024;
    std::array<char, pieceSize> piece{};
    do {
        stream_->next_out = reinterpret_cast<Bytef*>(piece.data());
        stream_->avail_out = static_cast<uInt>(piece.size());
        const int result = inflate(stream_.get(), Z_NO_FLUSH);
        if (result == Z_MEM_ERROR) {
            throw std::bad_alloc{};
        }
        // That nothing could be done is no error: it wants more bytes.
        if (result != Z_OK && result != Z_STREAM_END && result != Z_BUF_ERROR) {
            return Outcome::damaged;
        }
        if (!body.append({piece.data(), piece.size() - stream_->avail_out})) {
            return Outcome::overLimit;
        }
        if (result == Z_STREAM_END) {
            place_ = Place::betweenStreams;
            return Outcome::taken;
        }
    } while (stream_->avail_in > 0 || stream_->avail_out == 0);
    return Outcome::taken;
}

}  // namespace Tarnwick_API::Platform
