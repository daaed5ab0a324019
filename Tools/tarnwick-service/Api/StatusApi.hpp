#pragma once

#include "Api/RequestCheck.hpp"
#include "Configuration.hpp"
#include "Http/Exchange.hpp"
#include "Model/Caller.hpp"

#include <memory>
#include <string>

namespace TarnwickService {

/// GET status: what the service sees of its caller and expects of its clients. Open to everybody with a consumer key,
/// because clients poll it signed in or not.
class StatusApi {
public:
    /// `check` must outlive the object.
    StatusApi(const RequestCheck& check, const Caller& caller, const Configuration& configuration);

    Answer status(const Request& request) const;

private:
    const RequestCheck& check_;
    std::shared_ptr<const std::string> record_;
};

}  // namespace TarnwickService
