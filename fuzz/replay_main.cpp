// Replays the corpus of a fuzz target without a fuzzer: every file of the directories and files named, as one input
// each.

#include "fuzz/FuzzInput.h"

#include "quiver/core/XmlObjectBase.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

namespace
{

std::vector<std::filesystem::path> FilesOf(const std::filesystem::path& path)
{
    if (!std::filesystem::is_directory(path))
        return {path};
    std::vector<std::filesystem::path> files;
    for (const auto& entry : std::filesystem::directory_iterator(path))
        files.push_back(entry.path());
    std::sort(files.begin(), files.end());
    return files;
}

void Replay(const std::filesystem::path& path)
{
    std::ifstream stream(path, std::ios::binary);
    const std::vector<char> bytes{std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
    std::printf("%s\n", path.u8string().c_str());
    std::fflush(stdout); // a crash must leave the name behind
    LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());
}

} // namespace

int main(int argc, char** argv)
{
    int nInputs = 0;
    for (int n = 1; n < argc; ++n)
    {
        for (const std::filesystem::path& path : FilesOf(argv[n]))
        {
            Replay(path);
            ++nInputs;
        }
    }
    std::printf("%d inputs\n", nInputs);
    return nInputs == 0 ? 1 : 0;
}
