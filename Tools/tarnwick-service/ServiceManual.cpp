#include "ServiceManual.hpp"

#include "Control/ControlApi.hpp"
#include "Control/FaultJson.hpp"

#include <string>

namespace TarnwickService {

namespace {

constexpr const char* description =
    R"(tarnwick-service stands in for the VPN service on this computer, so that an application can be developed and
tested without the real one: accounts, sign-in, tokens that die at sign-out, devices, and a catalogue of real places.
It speaks HTTPS with a certificate of an authority of its own, refuses whatever deviates from the wire format, and says
what is wrong.

Once it listens it prints one line of JSON with its ports, the host that requests must name and the file with the
authority's certificate, and runs until it gets SIGINT or SIGTERM. It forgets everything when it ends.
)";

constexpr const char* notes = R"(Files:
  /usr/share/zoneinfo  where the places of the catalogue come from

See also:
  tarnwick(1)
)";

constexpr const char* examplesAndExits = R"(
Examples:
  tarnwick-service --account "ada@example.org:correct horse"
  tarnwick-service --port 8443 --control-port 8444 --ca-file ca.pem
  curl --data '{"path": "status", "count": 2, "cut": "before_answer"}' http://127.0.0.1:8444/faults

Exit status:
  0  ended by SIGINT or SIGTERM, or only help or version were asked for
  1  it can't run: a port is taken, a file can't be written, tzdata is missing
  2  wrong use
)";

std::string definition(const std::string& term, const std::string& text) {
    return "  " + term + "  " + text + "\n";
}

}  // namespace

std::string helpNotes() {
    std::string text = "Control interface, plain HTTP on 127.0.0.1:\n";
    for (const ControlApi::Order& order : ControlApi::orders()) {
        text += definition(std::string(order.method) + ' ' + order.path, order.what);
    }
    text += "\nMembers of a fault, in JSON for POST /faults; any may be left out:\n";
    for (const FaultKind& kind : faultKinds()) {
        text += definition(kind.name, kind.value + ": " + kind.effect);
    }
    return text + examplesAndExits;
}

CommandLine::Manual serviceManual() {
    return {.version = TARNWICK_SERVICE_VERSION, .description = description, .notes = notes};
}

}  // namespace TarnwickService
