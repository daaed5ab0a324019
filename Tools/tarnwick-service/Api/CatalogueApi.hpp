#pragma once

#include "Api/RequestCheck.hpp"
#include "Configuration.hpp"
#include "Http/Exchange.hpp"
#include "Model/Caller.hpp"
#include "Model/Catalogue.hpp"

#include <chrono>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>

namespace TarnwickService {

/// Everything below "servers". Open to every application with full rights: an account is needed to use a server, not
/// to see which ones there are.
class CatalogueApi {
public:
    /// The references must outlive the object.
    CatalogueApi(const Catalogue& catalogue, const RequestCheck& check, const Caller& caller,
                 const Configuration& configuration);

    /// GET servers
    Answer list(const Request& request);
    /// GET servers/ID
    Answer server(const Request& request, std::string_view id);

private:
    struct CachedAnswer {
        std::shared_ptr<const std::string> bytes;
        std::string entityTag;
    };

    std::string makeList(Parameters parameters) const;
    std::string makeServerList(std::int64_t filter, Parameters& parameters, Coordinates origin) const;
    Coordinates takeOrigin(Parameters& parameters) const;
    template <typename Make>
    CachedAnswer cached(const std::string& key, Make make);
    Answer answer(const Request& request, const CachedAnswer& cached) const;

    const Catalogue& catalogue_;
    const RequestCheck& check_;
    const Caller& caller_;
    FilterIds filters_;
    std::string cacheControl_;
    std::string lastModified_;
    bool strict_;
    std::mutex mutex_;
    std::map<std::string, CachedAnswer, std::less<>> cache_;
};

}  // namespace TarnwickService
