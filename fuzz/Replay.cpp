// Runs a fuzz target over files and folders of files, where the compiler has no libFuzzer.

#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace {

void replay(const std::filesystem::path& file) {
    std::ifstream stream(file, std::ios::binary);
    const std::vector<char> bytes{std::istreambuf_iterator<char>(stream), {}};
    LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());
}

} // namespace

int main(int count, char** arguments) {
    int files = 0;
    for (int index = 1; index < count; ++index) {
        const std::filesystem::path path(arguments[index]);
        if (!std::filesystem::is_directory(path)) {
            replay(path);
            ++files;
            continue;
        }
        for (const auto& item : std::filesystem::directory_iterator(path)) {
            if (!item.is_regular_file()) continue;
            replay(item.path());
            ++files;
        }
    }
    std::printf("%d inputs\n", files);
    return files > 0 ? 0 : 1;
}
