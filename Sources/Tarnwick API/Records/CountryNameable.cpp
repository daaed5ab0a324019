#include <Tarnwick_API/Records/CountryNameable.hpp>

#include <Tarnwick_API/Platform/Application/Locale.hpp>

namespace Tarnwick_API {

std::string CountryNameable::countryName(std::string_view countryCode) {
    return Platform::Locale::current().localizedRegionName(countryCode).value_or("");
}

}  // namespace Tarnwick_API
