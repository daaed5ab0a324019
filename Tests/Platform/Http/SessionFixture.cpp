#include "SessionFixture.hpp"

std::string errorName(const Tarnwick_API::Platform::HttpAnswer& answer) {
    return answer.error ? name(answer.error->kind) : "none";
}
