#include <Platform/Http/Transfers/HeaderList.hpp>

namespace Tarnwick_API::Platform {

HeaderList::HeaderList() {
    // Most requests fit into this. Where the text grows, its old memory has to be overwritten.
    constexpr std::size_t usualSize = 1000;
    constexpr std::size_t usualCount = 12;
    text_.reserve(usualSize);
    starts_.reserve(usualCount);
}

void HeaderList::add(std::string_view name, std::string_view value) {
    starts_.push_back(text_.size());
    text_ += name;
    if (value.find_first_not_of(" \t") == std::string_view::npos) {
        // "Name:" would mean to leave the header out.
        text_ += ';';
    } else {
        text_.append(": ").append(value);
    }
    text_ += '\0';
}

void HeaderList::suppress(std::string_view name) {
    starts_.push_back(text_.size());
    text_.append(name).append(":");
    text_ += '\0';
}

curl_slist* HeaderList::get() {
    nodes_.clear();
    nodes_.reserve(starts_.size());
    for (const auto start : starts_) {
        nodes_.push_back({text_.data() + start, nullptr});
    }
    for (std::size_t index = 1; index < nodes_.size(); ++index) {
        nodes_[index - 1].next = &nodes_[index];
    }
    return nodes_.empty() ? nullptr : nodes_.data();
}

}  // namespace Tarnwick_API::Platform
