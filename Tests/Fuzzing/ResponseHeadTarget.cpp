// The head of an answer, line by line as libcurl gives it: what is read of it says nothing that no line said.

#include <Platform/Http/Transfers/BodyFraming.hpp>
#include <Platform/Http/Transfers/ResponseHeadParser.hpp>
#include <Platform/Text/AsciiText.hpp>

#include "FuzzTarget.hpp"

using namespace Tarnwick_API::Platform;

void checkFraming(HttpHeaders headers) {
    BodyFraming framing;
    if (readFraming(headers, framing).empty() && framing.length) {
        auto& field = headers["content-length"];
        require(field.find(std::to_string(*framing.length)) != std::string::npos, "a length is one that was told");
        field.append(", ").append(std::to_string(*framing.length ^ 1U));
        require(!readFraming(headers, framing).empty(), "no two lengths are taken");
    }
}

void fuzz(FuzzInput input) {
    auto text = input.rest();
    const auto size = text.size();
    ResponseHeadParser parser;
    parser.add("HTTP/1.1 200 OK\r\n");
    while (!text.empty()) {
        const auto line = text.substr(0, text.find('\n')) + "\n";
        text.erase(0, line.size());
        if (lineFault(line).empty()) {
            parser.add(line);
        }
    }
    const auto response = parser.take();
    parser.add("HTTP/2 " + std::to_string(response.status) + "\n");
    std::size_t kept = 0;
    for (const auto& [name, value] : response.headers) {
        require(asciiLowerCased(name) == name && trimmed(name) == name, "a name is in lower case");
        require(value.find_first_of(std::string_view{"\r\n\0", 3}) == std::string::npos, "a value is one line");
        // An empty field added to another leaves the blank behind its comma.
        require(trimmed(value) == value || value.ends_with(", "), "a value has no blanks around it");
        kept += name.size() + value.size();
        parser.add(name + ":" + value + "\r\n");
        require(parser.value(name) == trimmed(value), "a field reads the same once it is written");
    }
    require(kept <= 2 * size, "no more is kept than came");
    require(parser.status() == response.status, "a status reads the same once it is written");
    checkFraming(response.headers);
}
