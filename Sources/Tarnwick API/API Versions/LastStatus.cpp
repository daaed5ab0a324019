#include "LastStatus.hpp"

#include <cstddef>

#include "DecodeAnswer.hpp"

namespace Tarnwick_API {

namespace {

/// Many times what one takes. No server is to have more kept.
constexpr std::size_t greatestSize = 16384;

}  // namespace

Status LastStatus::decode(const Platform::Bytes& text) {
    if (status_ && text == text_) {
        return *status_;
    }
    auto status = decodeRecord<Status>(text);
    forget();
    if (text.size() <= greatestSize) {
        text_ = text;
        status_ = status;
    }
    return status;
}

void LastStatus::forget() noexcept {
    text_.clear();
    status_.reset();
}

}  // namespace Tarnwick_API
