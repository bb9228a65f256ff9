// Feeds a target with files, in place of libFuzzer: every file of the folders that are named.
#include <sys/resource.h>

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

#include "tests/fuzz/target.h"

int main(int count, char** folders) {
#ifndef __SANITIZE_ADDRESS__  // which takes terabytes of addresses
    const rlimit memory{rlim_t{1} << 30, rlim_t{1} << 30};
    if (setrlimit(RLIMIT_AS, &memory) != 0) return 1;
#endif
    std::vector<std::filesystem::path> files;
    for (int i = 1; i < count; ++i)
        for (const auto& entry : std::filesystem::directory_iterator(folders[i]))
            files.push_back(entry.path());
    std::sort(files.begin(), files.end());
    for (const auto& file : files) {
        std::printf("%s\n", file.c_str());
        std::fflush(stdout);  // the last name tells which file ended the program
        std::ifstream stream(file, std::ios::binary);
        const std::vector<char> bytes{std::istreambuf_iterator<char>(stream), {}};
        LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());
    }
    std::printf("%zu files\n", files.size());
    return files.empty() ? 1 : 0;
}
