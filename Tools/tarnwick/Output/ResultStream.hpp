#pragma once

#include <string_view>

namespace TarnwickClient {

/// Keeps standard output for the command's own result: the library reports there too ("logout v1", keychain errors).
/// While this lives such lines, which commands say in their own words, go to standard error if they are wanted.
class ResultStream {
public:
    /// Throws `Failure` when there is no standard output.
    explicit ResultStream(bool showsOtherLines = false);
    ~ResultStream();
    ResultStream(const ResultStream&) = delete;
    ResultStream& operator=(const ResultStream&) = delete;

    /// The descriptor that the result goes to.
    [[nodiscard]] int descriptor() const noexcept { return descriptor_; }

    /// Ends the program without a word when nobody reads on. Throws `Failure` when not all of it could be written for
    /// another reason.
    void write(std::string_view text) const;

private:
    int descriptor_;
};

}  // namespace TarnwickClient
