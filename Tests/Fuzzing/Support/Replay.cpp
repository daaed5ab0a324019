// Where libFuzzer is not linked: gives a fuzz target the inputs in the files that the command line names.

#include <cstdint>
#include <cstdio>
#include <fstream>
#include <iterator>
#include <string>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

int main(int count, char** words) {
    for (int index = 1; index < count; ++index) {
        std::fprintf(stderr, "%s\n", words[index]);
        std::ifstream file{words[index], std::ios::binary};
        const std::string input{std::istreambuf_iterator<char>{file}, {}};
        if (!file) {
            return 1;
        }
        LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(input.data()), input.size());
    }
    return count > 1 ? 0 : 1;
}
