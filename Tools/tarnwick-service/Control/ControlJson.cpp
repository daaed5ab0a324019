#include "Control/ControlJson.hpp"

#include "CommandLine/NearestWord.hpp"
#include "Http/Exchange.hpp"

#include <numeric>
#include <set>
#include <utility>

namespace TarnwickService {

void refuseOrder(const std::string& text) {
    throw Refusal(400, text);
}

void refuseWord(const std::string& what, const std::string& word, const std::vector<std::string>& words) {
    const std::string list =
        std::accumulate(words.begin(), words.end(), std::string(),
                        [](const auto& text, const auto& each) { return text.empty() ? each : text + ", " + each; });
    refuseOrder(what + ": \"" + word + "\" is none of " + list + CommandLine::suggestion(word, words));
}

Json parseOrder(std::string_view body) {
    std::vector<std::set<std::string>> namesByDepth;
    const auto refuseRepetition = [&](int /*depth*/, Json::parse_event_t event, Json& parsed) {
        if (event == Json::parse_event_t::object_start) {
            namesByDepth.emplace_back();
        } else if (event == Json::parse_event_t::object_end) {
            namesByDepth.pop_back();
        } else if (event == Json::parse_event_t::key && !namesByDepth.back().insert(parsed.get<std::string>()).second) {
            refuseOrder(parsed.get<std::string>() + ": stands twice in one object");
        }
        return true;
    };
    try {
        return Json::parse(body, refuseRepetition);
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
    known_.emplace_back(name);
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

std::optional<std::uint64_t> Members::number(const char* name, std::uint64_t least, std::uint64_t largest) {
    const auto value = take(name);
    const auto fits = [&](std::uint64_t number) { return number >= least && number <= largest; };
    if (value && !(value->is_number_unsigned() && fits(value->get<std::uint64_t>()))) {
        refuseOrder(std::string(name) + ": a whole number from " + std::to_string(least) + " to " +
                    std::to_string(largest) + " is expected");
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
        refuseWord("member", object_.begin().key(), known_);
    }
}

}  // namespace TarnwickService
