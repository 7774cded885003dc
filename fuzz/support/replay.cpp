#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "support/target.h"

// Runs every input of a corpus folder once, without libFuzzer: `fuzz-replay TARGET PATH ...`. A path is a
// file or a folder.
namespace {

using qxterm::fuzz::Target;

const Target* find(const std::string& name) {
    const Target* target = Target::first();
    while (target != nullptr && target->name() != name) target = target->next();
    return target;
}

std::vector<std::filesystem::path> filesOf(const std::filesystem::path& path) {
    std::vector<std::filesystem::path> files;
    if (std::filesystem::is_directory(path)) {
        for (const auto& entry : std::filesystem::directory_iterator{path}) files.push_back(entry.path());
        std::sort(files.begin(), files.end());
    } else {
        files.push_back(path);
    }
    return files;
}

}  // namespace

int main(int count, char** arguments) {
    const Target* target = count > 2 ? find(arguments[1]) : nullptr;
    if (target == nullptr) {
        std::fprintf(stderr, "Usage: fuzz-replay TARGET PATH ...\n");
        return 2;
    }
    int inputs = 0;
    for (int at = 2; at < count; ++at) {
        for (const std::filesystem::path& path : filesOf(arguments[at])) {
            std::ifstream file{path, std::ios::binary};
            const std::vector<char> bytes{std::istreambuf_iterator<char>{file}, {}};
            std::fprintf(stderr, "%s\n", path.string().c_str());  // the last line names the input that failed
            target->run({reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size()});
            ++inputs;
        }
    }
    if (inputs == 0) {
        std::fprintf(stderr, "fuzz-replay: no input\n");
        return 1;
    }
    std::printf("%d inputs\n", inputs);
    return 0;
}
