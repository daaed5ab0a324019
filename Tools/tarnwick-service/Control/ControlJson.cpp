#include "Control/ControlJson.hpp"

#include "Http/Exchange.hpp"

#include <utility>

namespace TarnwickService {

void refuseOrder(const std::string& text) {
    throw Refusal(400, text);
}

Json parseOrder(std::string_view body) {
    try {
        return Json::parse(body);
    } catch (const Json::exception& error) {
        refuseOrder(error.what());
    }
}

Members::Members(Json object) : object_(std::move(object)) {
    if (!object_.is_object()) {
        refuseOrder("an object is expected");
    }
}

std::optional<Json> Members::take(const char* name) {
    const auto found = object_.find(name);
    if (found == object_.end()) {
        return std::nullopt;
    }
    Json value = std::move(*found);
    object_.erase(found);
    return value;
}

std::optional<std::string> Members::text(const char* name) {
    const auto value = take(name);
    if (value && !value->is_string()) {
        refuseOrder(std::string(name) + ": a text is expected");
    }
    return value ? std::optional(value->get<std::string>()) : std::nullopt;
}

std::optional<std::uint64_t> Members::number(const char* name, std::uint64_t largest) {
    const auto value = take(name);
    if (value && (!value->is_number_unsigned() || value->get<std::uint64_t>() > largest)) {
        refuseOrder(std::string(name) + ": a number from 0 to " + std::to_string(largest) + " is expected");
    }
    return value ? std::optional(value->get<std::uint64_t>()) : std::nullopt;
}

bool Members::flag(const char* name, bool standard) {
    const auto value = take(name);
    if (value && !value->is_boolean()) {
        refuseOrder(std::string(name) + ": true or false is expected");
    }
    return value ? value->get<bool>() : standard;
}

void Members::requireNoMore() const {
    if (!object_.empty()) {
        refuseOrder("unknown member " + object_.begin().key());
    }
}

}  // namespace TarnwickService
