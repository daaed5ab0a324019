#include "Api/Refusals.hpp"

#include "Http/Exchange.hpp"

namespace TarnwickService {

void refuseMalformed(const std::string& text) {
    throw Refusal(422, text);
}

// Clients read the text only where the status has no meaning of its own for them: 400, 401, 403 and 404 are taken for
// what they are and their text is dropped.
void refuseSession(std::string_view text) {
    throw Refusal(420, std::string(text));
}

}  // namespace TarnwickService
