// Runs a fuzz target on its corpus and on some hundred changed copies of each file, the same ones each time.
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

int main(int argc, char** argv) {
    std::mt19937 random(1);
    int files = 0;
    for (const auto& entry : std::filesystem::directory_iterator(argc > 1 ? argv[1] : ".")) {
        std::ifstream file(entry.path(), std::ios::binary);
        const std::vector<std::uint8_t> content(std::istreambuf_iterator<char>(file), {});
        LLVMFuzzerTestOneInput(content.data(), content.size());
        ++files;
        for (int round = 0; round < 300 && !content.empty(); ++round) {
            std::vector<std::uint8_t> changed = content;
            for (unsigned change = random() % 8 + 1; change > 0; --change)
                changed[random() % changed.size()] =
                    std::uint8_t(random() % 3 ? random() : random() % 2 * 255);
            if (round % 4 == 0)
                changed.resize(random() % changed.size());
            LLVMFuzzerTestOneInput(changed.data(), changed.size());
        }
    }
    return files > 0 ? 0 : 1;
}
