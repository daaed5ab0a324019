#include "HelpText.hpp"

#include "Control/ControlApi.hpp"
#include "Control/FaultJson.hpp"

#include <algorithm>
#include <string_view>

namespace TarnwickService {
namespace {

constexpr std::size_t secondColumn = 20;
constexpr std::size_t lineWidth = 80;

/// A row of two columns, the second one wrapped.
std::string row(const std::string& left, std::string_view right) {
    std::string text = "  " + left;
    std::size_t used = text.size();
    while (!right.empty()) {
        const std::string_view word = right.substr(0, right.find(' '));
        right.remove_prefix(std::min(word.size() + 1, right.size()));
        if (used + 1 + word.size() > lineWidth) {
            text += '\n';
            used = 0;
        }
        const std::size_t gap = used < secondColumn ? secondColumn - used : 1;
        text.append(gap, ' ').append(word);
        used += gap + word.size();
    }
    return text + '\n';
}

}  // namespace

std::string helpText() {
    std::string text = "Control interface, plain HTTP on 127.0.0.1:\n";
    for (const ControlApi::Order& order : ControlApi::orders()) {
        text += row(std::string(order.method) + ' ' + order.path, order.what);
    }
    text += "\nMembers of a fault, in JSON for POST /faults; any may be left out:\n";
    std::string previous;
    for (const FaultKind& kind : faultKinds()) {
        text += row(kind.name == previous ? "" : kind.name, kind.value + ": " + kind.effect);
        previous = kind.name;
    }
    text += R"(
Examples:
  tarnwick-service --port 8443 --control-port 8444 --ca-file ca.pem \
      --account ada@example.org:secret
  curl http://127.0.0.1:8444/state
  curl --data '{"path": "status", "count": 2, "cut": "before_answer"}' \
      http://127.0.0.1:8444/faults

Exit status:
  0  ended by SIGINT or SIGTERM, or only help or version were asked for
  1  it can't run: a port is taken, a file can't be written, tzdata is missing
  2  wrong use
)";
    return text;
}

}  // namespace TarnwickService
