#include "ServiceManual.hpp"

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

constexpr const char* notes = R"(Control interface:
With --control-port scripts may look into the running service and change it, in JSON over plain HTTP on 127.0.0.1:

  GET /state  hosts, ports, counters, accounts, tokens and the number of pending faults
  GET /requests  the latest requests, with --record-requests
  POST /accounts  creates an account
  POST /faults  makes the next answers fail as ordered: delayed, cut off, or with another status or body
  DELETE /faults  takes back the pending faults
  POST /reset  forgets accounts and tokens

Files:
  /usr/share/zoneinfo  where the places of the catalogue come from

See also:
  tarnwick(1)
)";

}  // namespace

CommandLine::Manual serviceManual() {
    return {.version = TARNWICK_SERVICE_VERSION, .description = description, .notes = notes};
}

}  // namespace TarnwickService
