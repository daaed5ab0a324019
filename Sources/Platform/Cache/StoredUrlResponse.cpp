#include <Platform/Cache/StoredUrlResponse.hpp>

namespace Tarnwick_API::Platform {

namespace {

struct SizeOfValue {
    std::size_t operator()(const std::string& text) const { return text.size(); }
    std::size_t operator()(const UserInformationBytes& bytes) const { return bytes.bytes.size(); }
    template <class Number>
    std::size_t operator()(const Number& /*number*/) const {
        return sizeof(Number);
    }
};

}  // namespace

std::size_t sizeOfEntry(std::string_view key, const CachedUrlResponse& response) {
    auto size = key.size() + response.body->size();
    for (const auto& [name, value] : response.response.headers) {
        size += name.size() + value.size();
    }
    if (response.userInformation) {
        for (const auto& [name, value] : *response.userInformation) {
            size += name.size() + std::visit(SizeOfValue{}, value);
        }
    }
    return size;
}

bool holdSame(const CachedUrlResponse& left, const CachedUrlResponse& right) {
    return left.response.status == right.response.status && left.userInformation == right.userInformation &&
           left.response.headers == right.response.headers && *left.body == *right.body;
}

}  // namespace Tarnwick_API::Platform
