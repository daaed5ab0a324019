#include "Control/FaultConsistency.hpp"

#include <algorithm>
#include <initializer_list>
#include <string>

namespace TarnwickService {
namespace {

using Names = std::initializer_list<const char*>;

bool hasAny(const Json& fault, Names names) {
    return std::ranges::any_of(names, [&](const char* name) { return fault.contains(name); });
}

bool hasCut(const Json& fault, const char* cut) {
    return fault.contains("cut") && fault["cut"] == cut;
}

void requireNone(const Json& fault, Names names, const std::string& why) {
    for (const char* name : names) {
        if (fault.contains(name)) {
            refuseOrder(std::string(name) + ": has no effect, as " + why);
        }
    }
}

}  // namespace

void requireConsistency(const Json& fault) {
    const bool hasBody = hasAny(fault, {"body", "body_hex"});
    const bool isReplaced = hasBody || fault.contains("status");
    if (!isReplaced &&
        !hasAny(fault, {"delay_ms", "headers", "cut", "content_length", "chunks", "interim", "raw", "leftover"})) {
        refuseOrder(
            "the fault has no effect; delay_ms, status, body, body_hex, headers, cut, content_length, chunks, interim, "
            "raw or leftover gives it one");
    }
    if (hasCut(fault, "before_handshake")) {
        requireNone(fault, {"path", "method", "delay_ms", "takes_effect"}, "no request is waited for");
    }
    if (fault.contains("body") && fault.contains("body_hex")) {
        refuseOrder("body_hex: stands in place of body, not beside it");
    }
    if (!hasBody) {
        requireNone(fault, {"repeat"}, "there is no body to repeat");
    }
    if (!isReplaced) {
        requireNone(fault, {"content_type"}, "the answer is the service's own; headers can change it");
    }
    if (!hasCut(fault, "after_body_bytes")) {
        requireNone(fault, {"cut_after_bytes"}, "the cut is not after_body_bytes");
    }
    if (!fault.contains("cut")) {
        requireNone(fault, {"cut_by"}, "there is no cut");
    }
    if (hasCut(fault, "before_answer") || hasCut(fault, "before_handshake")) {
        requireNone(fault, {"status", "body", "body_hex", "headers", "content_length", "chunks", "interim", "raw"},
                    "no answer is sent");
    } else if (fault.contains("raw")) {
        requireNone(fault, {"status", "body", "body_hex", "headers", "cut", "content_length", "chunks", "interim"},
                    "raw is the whole answer");
    } else if (!isReplaced) {
        requireNone(fault, {"takes_effect"}, "the answer is the service's own, for which the request takes effect");
    }
    if (fault.contains("chunks")) {
        requireNone(fault, {"content_length"}, "chunks come without it");
    }
    if (hasAny(fault, {"cut", "content_length", "raw"}) || fault.value("chunks", "") == "malformed") {
        requireNone(fault, {"leftover"}, "the connection does not stay open");
    }
    if (const auto status = fault.value("status", 200); status == 204 || status == 304) {
        requireNone(fault, {"body", "body_hex", "content_type", "cut_after_bytes", "content_length", "chunks"},
                    "an answer with the status " + std::to_string(status) + " has no body");
    }
}

}  // namespace TarnwickService
