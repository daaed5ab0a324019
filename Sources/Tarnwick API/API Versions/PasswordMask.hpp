#pragma once

#include <string>

namespace Tarnwick_API {

/// `rendering`, a curl command line with a JSON body, with the values of its "password" members replaced by
/// "OBFUSCATED".
///
/// On each line everything from the first `password\":\"`, in any letter case, up to the last `\",\"` after it is
/// replaced: that covers several passwords on a line, and values that hold quotes and commas themselves. A password
/// that is the last member is not recognised; sorted keys keep that from happening in the bodies that are sent.
[[nodiscard]] std::string obfuscateLoginString(std::string rendering);

}  // namespace Tarnwick_API
