// zam_pipl windows OUT.rc | zam_pipl macos OUT.rsrc: writes the effect's property resource for one platform. It
// runs on the machine that builds, whatever machine is built for.
#include <cstdio>
#include <fstream>
#include <string>
#include <string_view>

#include "effect/resource/resource_files.h"

namespace {

int write(const char* path, std::string_view content) {
    std::ofstream file(path, std::ios::binary | std::ios::trunc);
    file.write(content.data(), static_cast<std::streamsize>(content.size()));
    file.close();
    if (file) return 0;
    std::fprintf(stderr, "zam_pipl: %s: cannot be written\n", path);
    std::remove(path);
    return 1;
}

}  // namespace

int main(int argc, char** argv) {
    using namespace zam::resource;
    const std::string platform = argc == 3 ? argv[1] : "";
    if (platform == "windows") return write(argv[2], windows_script(property_list(Platform::windows)));
    if (platform == "macos") {
        const Bytes file = macos_file(property_list(Platform::macos));
        return write(argv[2], {reinterpret_cast<const char*>(file.data()), file.size()});
    }
    std::fprintf(stderr, "usage: zam_pipl windows OUT.rc | zam_pipl macos OUT.rsrc\n");
    return 2;
}
