#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <iostream>

#include <unistd.h>

#include "cli/Commands.h"
#include "common/Files.h"

namespace cli {
namespace {

/// The program that has GDAL: beside this one, as in a build, or where its package puts it.
std::string findProgram() {
    std::error_code error;
    const std::filesystem::path here = std::filesystem::read_symlink("/proc/self/exe", error).parent_path();
    for (const char* place : {"zel-convert", ZEL_CONVERT})
        if (const std::string program = (here / place).lexically_normal().string();
            UTILS::fileIsFile(program))
            return program;
    return {};
}

}  // namespace

int convert(const ConvertOptions& options) {
    const std::string program = findProgram();
    if (program.empty()) {
        std::cerr
            << "zel: convert needs GDAL, and its driver for ZEL files: install the package gdal-driver-zel\n";
        return kUnreadable;
    }
    std::cout.flush();
    const char* const arguments[] = {program.c_str(),
                                     options.in.c_str(),
                                     options.out.c_str(),
                                     options.to.c_str(),
                                     options.tolerance.c_str(),
                                     options.about.c_str(),
                                     nullptr};
    ::execv(program.c_str(), const_cast<char* const*>(arguments));
    std::cerr << "zel: " << program << ": " << UTILS::reasonOf(errno) << '\n';
    return kUnreadable;
}

}  // namespace cli
