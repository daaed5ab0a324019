#pragma once

#include "Http/Exchange.hpp"

#include <span>
#include <string_view>

namespace TarnwickService {

class Service;

/// Lets scripts look into a running service and order misbehaviour, in JSON over plain HTTP. What is misspelt, or could
/// never have an effect, is refused with the status 400 and a sentence.
class ControlApi {
public:
    struct Order {
        const char* method;
        const char* path;
        bool hasBody;
        /// For people.
        const char* what;
        Answer (*serve)(const ControlApi& api, std::string_view body);
    };

    /// All that can be ordered.
    static std::span<const Order> orders();

    /// The service must outlive the object.
    explicit ControlApi(Service& service) : service_(service) {}

    Answer answer(const Request& request) const;

private:
    Answer state() const;
    Answer requests() const;
    Answer createAccount(std::string_view body) const;
    Answer faults() const;
    Answer addFaults(std::string_view body) const;

    Service& service_;
};

}  // namespace TarnwickService
