#include "Control/FaultInjection.hpp"

namespace TarnwickService {
namespace {

Answer replacement(const Fault& fault) {
    Answer answer;
    answer.status = fault.status.value_or(answer.status);
    answer.body = fault.body.value_or("");
    answer.contentType = fault.contentType;
    return answer;
}

}  // namespace

Answer injectFault(const Fault& fault, Faults& faults, const std::function<Answer()>& serve) {
    if (fault.delay.count() > 0 && !faults.pause(fault.delay)) {
        Answer none;
        none.damage.cut = Cut::beforeAnswer;
        return none;
    }
    const bool replaced = fault.status || fault.body;
    const bool withheld = fault.cut == Cut::beforeAnswer || fault.raw;
    Answer answer;
    if (fault.takesEffect || (!replaced && !withheld)) {
        answer = serve();
    }
    if (replaced) {
        answer = replacement(fault);
    }
    for (const auto& [name, value] : fault.headers) {
        answer.setHeader(name, value);
    }
    answer.damage = {.cut = fault.cut,
                     .bodyBytes = fault.cutAfterBytes,
                     .ending = fault.ending,
                     .contentLength = fault.contentLength,
                     .chunks = fault.chunks,
                     .interim = fault.interim,
                     .raw = fault.raw,
                     .leftover = fault.leftover};
    return answer;
}

}  // namespace TarnwickService
