#pragma once

#include <string>

class Platform {
public:
    std::string apiHost() const;
};
