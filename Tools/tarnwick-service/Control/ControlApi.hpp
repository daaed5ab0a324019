#pragma once

#include "Http/Exchange.hpp"

namespace TarnwickService {

class Service;

/// Lets scripts look into a running service and order misbehaviour, in JSON over plain HTTP:
///
/// - `GET /state`: hosts, ports, counters, accounts, tokens and pending faults
/// - `GET /requests`: the recorded requests
/// - `POST /accounts`: {"username", "password", "email", "active", "migration_required", "devices": [{"name", "type"}]}
/// - `POST /faults`: one fault or a list of them: {"count", "path", "method", "delay_ms", "status", "body" or
///   "body_hex", "repeat", "content_type", "headers": {}, "cut": "before_answer" | "inside_header" |
///   "after_body_bytes", "cut_after_bytes", "content_length", "takes_effect"}; every member may be left out
/// - `DELETE /faults`
/// - `POST /reset`
class ControlApi {
public:
    /// The service must outlive the object.
    explicit ControlApi(Service& service) : service_(service) {}

    Answer answer(const Request& request) const;

private:
    Answer state() const;
    Answer requests() const;
    Answer createAccount(std::string_view body) const;
    Answer addFaults(std::string_view body) const;

    Service& service_;
};

}  // namespace TarnwickService
