#include "Control/FaultJson.hpp"

#include "Control/ControlJson.hpp"
#include "Control/FaultConsistency.hpp"
#include "Control/FaultTarget.hpp"

#include <charconv>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>

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

std::vector<std::pair<std::string, std::string>> headersFrom(const Json& object) {
    constexpr const char* expected = "headers: an object of texts is expected";
    std::vector<std::pair<std::string, std::string>> headers;
    if (!object.is_object() || object.empty()) {
        refuseOrder(expected);
    }
    for (const auto& [name, value] : object.items()) {
        if (!value.is_string()) {
            refuseOrder(expected);
        }
        headers.emplace_back(name, value.get<std::string>());
    }
    return headers;
}

struct Value {
    std::string value;
    std::string effect;
};

struct Member {
    const char* name;
    std::vector<Value> values;
    /// Takes it out of the order, if it is there.
    std::function<void(Members&, Fault&)> read;
};

Member number(const char* name, std::uint64_t least, std::uint64_t largest, std::string effect,
              void (*set)(Fault&, std::uint64_t)) {
    return {name,
            {{"a whole number from " + std::to_string(least) + " to " + std::to_string(largest), std::move(effect)}},
            [=](Members& members, Fault& fault) {
                if (const auto given = members.number(name, least, largest)) {
                    set(fault, *given);
                }
            }};
}

Member text(const char* name, std::string effect, void (*set)(Fault&, std::string)) {
    return {name, {{"a text", std::move(effect)}}, [=](Members& members, Fault& fault) {
                if (auto given = members.text(name)) {
                    set(fault, std::move(*given));
                }
            }};
}

template <typename Choice>
struct Word {
    const char* word;
    Choice choice;
    const char* effect;
};

template <typename Choice>
Member oneOf(const char* name, Choice Fault::*chosen, const std::vector<Word<Choice>>& words) {
    Member member{name, {}, [=](Members& members, Fault& fault) {
                      const auto given = members.text(name);
                      std::vector<std::string> known;
                      for (const auto& [word, choice, effect] : words) {
                          if (given == word) {
                              fault.*chosen = choice;
                              return;
                          }
                          known.emplace_back(word);
                      }
                      if (given) {
                          refuseWord(name, *given, known);
                      }
                  }};
    for (const auto& [word, choice, effect] : words) {
        member.values.push_back({'"' + std::string(word) + '"', effect});
    }
    return member;
}

Member choiceOfCut() {
    return oneOf(
        "cut", &Fault::cut,
        {{"before_handshake", Cut::beforeHandshake,
          "the connection closes instead of a handshake; meets connections, not requests"},
         {"before_answer", Cut::beforeAnswer, "the connection closes instead of an answer"},
         {"inside_header", Cut::insideHeader, "the connection closes in the middle of the answer's header block"},
         {"after_body_bytes", Cut::afterBodyBytes, "the connection closes after cut_after_bytes bytes of the body"},
         {"after_answer", Cut::afterAnswer, "the connection closes after the whole answer, which doesn't say so"}});
}

/// In the order in which they are read.
const std::vector<Member>& allMembers() {
    constexpr std::uint64_t mostRequests = 1'000'000'000;
    constexpr std::uint64_t longestDelay = 3'600'000;
    // Those below are not final: another answer follows.
    constexpr std::uint64_t firstStatus = 100;
    constexpr std::uint64_t firstFinalStatus = 200;
    constexpr std::uint64_t largestStatus = 999;
    constexpr std::uint64_t largestLength = std::uint64_t{1} << 62U;
    static const std::vector<Member> all{
        text("path",
             "only requests to this path below /vb/, or to those that begin with what stands before a '*' at its end; "
             "without it all",
             [](Fault& fault, std::string given) { fault.path = std::move(given); }),
        text("method", "only requests with this method; without it all",
             [](Fault& fault, std::string given) { fault.method = std::move(given); }),
        number("count", 1, mostRequests, "how many requests it meets; without it one",
               [](Fault& fault, std::uint64_t given) { fault.count = given; }),
        number("delay_ms", 1, longestDelay, "milliseconds that pass before anything else happens",
               [](Fault& fault, std::uint64_t given) { fault.delay = std::chrono::milliseconds(given); }),
        number("status", firstFinalStatus, largestStatus, "this status instead of the service's own answer",
               [](Fault& fault, std::uint64_t given) { fault.status = static_cast<unsigned>(given); }),
        text("body", "this body, byte for byte, instead of the service's own answer",
             [](Fault& fault, std::string given) { fault.body = std::move(given); }),
        {"body_hex",
         {{"a text of hexadecimal digits", "the same, for bytes that JSON can't hold"}},
         [](Members& members, Fault& fault) {
             if (const auto given = members.text("body_hex")) {
                 fault.body = fromHexadecimal(*given);
             }
         }},
        number("repeat", 1, mostRequests, "how often the body stands in the answer",
               [](Fault& fault, std::uint64_t given) { fault.body = repeated(fault.body.value_or(""), given); }),
        text("content_type", "the Content-Type of an answer with that status or body; without it plain text",
             [](Fault& fault, std::string given) { fault.contentType = std::move(given); }),
        {"headers",
         {{"an object of texts", "headers put into the answer, in place of those with the same name"}},
         [](Members& members, Fault& fault) {
             if (const auto given = members.take("headers")) {
                 fault.headers = headersFrom(*given);
             }
         }},
        choiceOfCut(),
        number("cut_after_bytes", 0, largestLength, "for the cut after_body_bytes; without it 0",
               [](Fault& fault, std::uint64_t given) { fault.cutAfterBytes = given; }),
        oneOf("cut_by", &Fault::ending,
              {{"reset", Ending::reset, "the cut resets the connection"},
               {"silence", Ending::silent, "at the cut the connection falls silent, until the client goes"}}),
        number("content_length", 0, largestLength, "this Content-Length, whatever the length; the connection closes",
               [](Fault& fault, std::uint64_t given) { fault.contentLength = given; }),
        oneOf("chunks", &Fault::chunks,
              {{"sound", Chunks::sound, "the body comes in chunks"},
               {"malformed", Chunks::malformed,
                "the body comes in chunks of which the second says no length; the connection closes"}}),
        number("interim", firstStatus, firstFinalStatus - 1, "an interim answer with this status comes first",
               [](Fault& fault, std::uint64_t given) { fault.interim = static_cast<unsigned>(given); }),
        text("raw", "these bytes instead of the whole answer, header block included; the connection closes",
             [](Fault& fault, std::string given) { fault.raw = std::move(given); }),
        text("leftover", "these bytes behind the answer, unasked for, on the connection that stays open",
             [](Fault& fault, std::string given) { fault.leftover = std::move(given); }),
        {"takes_effect",
         {{"true or false",
           "whether the request has its effect although its answer is replaced or withheld; without "
           "it it has none"}},
         [](Members& members, Fault& fault) { fault.takesEffect = members.flag("takes_effect", false); }},
    };
    return all;
}

Fault faultFrom(const Json& object) {
    Members members(object);
    Fault fault;
    for (const Member& member : allMembers()) {
        member.read(members, fault);
    }
    members.requireNoMore();
    requireConsistency(object);
    requireTarget(fault);
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
    if (faults.empty()) {
        refuseOrder("a list without a fault");
    }
    return faults;
}

std::vector<FaultKind> faultKinds() {
    std::vector<FaultKind> kinds;
    for (const Member& member : allMembers()) {
        for (const auto& [value, effect] : member.values) {
            kinds.push_back({member.name, value, effect});
        }
    }
    return kinds;
}

}  // namespace TarnwickService
