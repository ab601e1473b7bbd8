// Runs a fuzzer's function on every file in the directories given, and on CAMPAIGN_ROUNDS changed copies of
// each; the process ends with the first failure. SEED draws others.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <random>
#include <string>

namespace {

/// A few bytes changed, and parts left out, repeated or taken from another text.
std::string changed(std::string text, const std::string& other, std::mt19937& chance) {
    const auto below = [&](std::size_t limit) { return limit == 0 ? 0 : chance() % limit; };
    for (std::size_t changes = 1 + below(4); changes > 0; --changes) {
        const std::size_t at = below(text.size());
        const std::size_t length = below(std::min<std::size_t>(text.size() - at, 200));
        switch (below(5)) {
            case 0:
                text.insert(at, 1, static_cast<char>(below(256)));
                break;
            case 1:
                if (!text.empty()) text[at] = static_cast<char>(below(128));
                break;
            case 2:
                text.erase(at, length);
                break;
            case 3:
                text.insert(at, text.substr(below(text.size()), length));
                break;
            default:
                text.replace(at, length, other.substr(below(other.size()), below(300)));
        }
    }
    return text;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

int main(int argc, char** argv) {
    const auto number = [](const char* name) {
        const char* const text = std::getenv(name);
        return text ? std::strtoul(text, nullptr, 10) : 0;
    };
    const std::size_t rounds = number("CAMPAIGN_ROUNDS");
    std::mt19937 chance(static_cast<std::mt19937::result_type>(number("SEED")));
    std::string other;
    std::size_t count = 0;
    for (int i = 1; i < argc; ++i) {
        for (const auto& entry : std::filesystem::recursive_directory_iterator(argv[i])) {
            if (!entry.is_regular_file()) continue;
            std::ifstream file(entry.path(), std::ios::binary);
            const std::string text{std::istreambuf_iterator<char>(file), {}};
            // Named before it is run: the last name is that of the failure.
            std::cout << entry.path().string() << std::endl;
            for (std::size_t round = 0; round <= rounds; ++round) {
                const std::string input = round == 0 ? text : changed(text, other, chance);
                LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(input.data()), input.size());
                ++count;
            }
            other = text;
        }
    }
    std::cout << count << " inputs\n";
    return count == 0 ? 1 : 0;
}
