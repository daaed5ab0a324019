#include "Platform.hpp"

std::string Platform::apiHost() const {
    return "api.example";
}
