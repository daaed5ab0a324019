#include "Control/FaultJson.hpp"

#include "Control/ControlJson.hpp"

#include <charconv>
#include <chrono>

namespace TarnwickService {
namespace {

std::string fromHexadecimal(const std::string& text) {
    std::string bytes;
    for (std::size_t i = 0; i < text.size(); i += 2) {
        unsigned char byte = 0;
        const char* const end = text.data() + i + 2;
        if (i + 2 > text.size() || std::from_chars(text.data() + i, end, byte, 16).ptr != end) {
            refuseOrder("body_hex: pairs of hexadecimal digits are expected");
        }
        bytes += static_cast<char>(byte);
    }
    return bytes;
}

std::string repeated(const std::string& text, std::size_t times) {
    constexpr std::size_t largestBody = std::size_t{256} << 20U;
    if (!text.empty() && times > largestBody / text.size()) {
        refuseOrder("repeat: the body would be larger than " + std::to_string(largestBody) + " bytes");
    }
    std::string result;
    result.reserve(text.size() * times);
    for (std::size_t i = 0; i < times; ++i) {
        result += text;
    }
    return result;
}

Cut cutFrom(const std::string& text) {
    if (text == "before_answer") {
        return Cut::beforeAnswer;
    }
    if (text == "inside_header") {
        return Cut::insideHeader;
    }
    if (text == "after_body_bytes") {
        return Cut::afterBodyBytes;
    }
    refuseOrder("cut: before_answer, inside_header or after_body_bytes is expected");
}

std::vector<std::pair<std::string, std::string>> headersFrom(const Json& object) {
    std::vector<std::pair<std::string, std::string>> headers;
    if (!object.is_object()) {
        refuseOrder("headers: an object of texts is expected");
    }
    for (const auto& [name, value] : object.items()) {
        if (!value.is_string()) {
            refuseOrder("headers: an object of texts is expected");
        }
        headers.emplace_back(name, value.get<std::string>());
    }
    return headers;
}

Fault faultFrom(const Json& object) {
    constexpr std::uint64_t mostRequests = 1'000'000'000;
    constexpr std::uint64_t longestDelay = 3'600'000;
    constexpr std::uint64_t largestStatus = 999;
    constexpr std::uint64_t largestLength = std::uint64_t{1} << 62U;
    Members members(object);
    Fault fault;
    fault.count = members.number("count", mostRequests).value_or(fault.count);
    fault.path = members.text("path").value_or("");
    fault.method = members.text("method").value_or("");
    fault.delay = std::chrono::milliseconds(members.number("delay_ms", longestDelay).value_or(0));
    if (const auto status = members.number("status", largestStatus)) {
        constexpr std::uint64_t firstFinalStatus = 200;
        if (*status < firstFinalStatus) {
            refuseOrder("status: a final one, from 200 on, is expected");
        }
        fault.status = static_cast<unsigned>(*status);
    }
    fault.body = members.text("body");
    if (const auto hexadecimal = members.text("body_hex")) {
        fault.body = fromHexadecimal(*hexadecimal);
    }
    if (const auto times = members.number("repeat", mostRequests); times && fault.body) {
        fault.body = repeated(*fault.body, *times);
    }
    fault.contentType = members.text("content_type").value_or(fault.contentType);
    if (const auto headers = members.take("headers")) {
        fault.headers = headersFrom(*headers);
    }
    if (const auto cut = members.text("cut")) {
        fault.cut = cutFrom(*cut);
    }
    fault.cutAfterBytes = members.number("cut_after_bytes", largestLength).value_or(0);
    fault.contentLength = members.number("content_length", largestLength);
    fault.takesEffect = members.flag("takes_effect", false);
    members.requireNoMore();
    return fault;
}

}  // namespace

std::vector<Fault> readFaults(std::string_view body) {
    const Json value = parseOrder(body);
    std::vector<Fault> faults;
    if (value.is_array()) {
        for (const Json& each : value) {
            faults.push_back(faultFrom(each));
        }
    } else {
        faults.push_back(faultFrom(value));
    }
    return faults;
}

}  // namespace TarnwickService
