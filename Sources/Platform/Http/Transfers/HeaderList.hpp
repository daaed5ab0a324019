#pragma once

#include <Platform/Text/Wiping.hpp>

#include <cstddef>
#include <string_view>
#include <vector>

#include <curl/curl.h>

namespace Tarnwick_API::Platform {

/// Header lines in the form that libcurl reads, in two buffers: a list of libcurl's own would allocate twice for each
/// line.
class HeaderList {
public:
    HeaderList();

    /// Adds the line of a header; an empty value is sent as such.
    void add(std::string_view name, std::string_view value);

    /// Keeps libcurl from sending the header of this name that it would add by itself.
    void suppress(std::string_view name);

    /// The lines added so far. Valid until the next change.
    [[nodiscard]] curl_slist* get();

private:
    WipingText text_;
    std::vector<std::size_t> starts_;
    std::vector<curl_slist> nodes_;
};

}  // namespace Tarnwick_API::Platform
