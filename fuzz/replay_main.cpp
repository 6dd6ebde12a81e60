// Runs a fuzz target over every file of the folders and files named on the command line, in the normal build.
#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace {

void replay(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    if (!file) {
        std::fprintf(stderr, "%s cannot be opened\n", path.string().c_str());
        std::exit(1); // read as nothing, a missing folder would pass for an empty input
    }
    const std::vector<char> bytes((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
    // Exactly sized, so that AddressSanitizer sees a byte too many.
    const std::unique_ptr<std::uint8_t[]> exact(new std::uint8_t[bytes.size()]);
    std::copy(bytes.begin(), bytes.end(), exact.get());
    LLVMFuzzerTestOneInput(exact.get(), bytes.size());
}

} // namespace

int main(int argc, char** argv) {
    int num_inputs = 0;
    for (int i = 1; i < argc; ++i) {
        const std::filesystem::path path(argv[i]);
        if (!std::filesystem::is_directory(path)) {
            replay(path);
            ++num_inputs;
            continue;
        }
        for (const auto& entry : std::filesystem::directory_iterator(path)) {
            replay(entry.path());
            ++num_inputs;
        }
    }
    std::printf("%d inputs replayed\n", num_inputs);
    return num_inputs == 0 ? 1 : 0; // a target without inputs tests nothing
}
