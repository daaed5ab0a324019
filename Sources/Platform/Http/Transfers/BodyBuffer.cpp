#include <Platform/Http/Transfers/BodyBuffer.hpp>

#include <Tarnwick_API/Platform/Json/Json.hpp>

#include <algorithm>
#include <utility>

namespace Tarnwick_API::Platform {

void BodyBuffer::begin(std::size_t limit) {
    bytes_.clear();
    limit_ = limit;
}

void BodyBuffer::expect(std::size_t size) {
    // A server that announces a great body and sends a small one must not cost more than this.
    constexpr std::size_t mostTrusted = std::size_t{16} * 1024 * 1024;
    makeRoom(std::min({size, limit_, mostTrusted}));
}

bool BodyBuffer::append(std::string_view bytes) {
    if (bytes.size() > limit_ - bytes_.size()) {
        return false;
    }
    makeRoom(bytes_.size() + bytes.size());
    bytes_.append(bytes);
    return true;
}

Bytes BodyBuffer::take() {
    return std::exchange(bytes_, {});
}

void BodyBuffer::makeRoom(std::size_t size) {
    const auto needed = size + JsonDocument::padding;
    if (needed <= bytes_.capacity()) {
        return;
    }
    // Room beyond the limit would never be used.
    const auto doubled = bytes_.capacity() > limit_ / 2 ? limit_ + JsonDocument::padding : 2 * bytes_.capacity();
    // A text that has room already doubles it, whatever it is asked for.
    Bytes roomier;
    roomier.reserve(std::max(needed, doubled));
    roomier.append(bytes_);
    bytes_ = std::move(roomier);
}

}  // namespace Tarnwick_API::Platform
