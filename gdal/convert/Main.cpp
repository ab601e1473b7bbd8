// zel-convert IN OUT FORMAT TOLERANCE PLACE: what "zel convert" runs, so that the zel command needs no GDAL.
// OUT may be
// "-"; the last three may be empty. Exit codes are those of zel.

#include <algorithm>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <iostream>
#include <memory>
#include <string>
#include <vector>

#include <cpl_error.h>
#include <cpl_string.h>
#include <cpl_vsi.h>
#include <gdal_priv.h>

#include "common/Printable.h"
#include "common/SaveFile.h"
#include "gdal/Driver.h"
#include "gdal/convert/Copy.h"

namespace {

using exchange::Copied;
using exchange::Format;

constexpr int kMessages = 1;
constexpr int kFailed = 2;
const std::string kWork = "/vsimem/convert";

/// Messages, warnings and errors, as the other commands print them.
struct Console {
    static inline bool warned = false;
    static inline bool failed = false;
    static inline std::string work;
    static inline std::string out;

    /// What stands in it may come from files.
    static void print(const std::string& text) {
        std::cerr << UTILS::printable(text, UTILS::kLongestShown) << '\n';
    }
    static void say(const std::string& text) {
        print("zel: " + text);
        warned = true;
    }
    static int fail(const std::string& text) {
        print("zel: " + text);
        return kFailed;
    }
    static void CPL_STDCALL handle(CPLErr level, CPLErrorNum, const char* text) {
        // More than one driver has a suffix: which it is, is told them.
        if (std::string_view(text).find("Several drivers") == 0) return;
        std::string line(text);
        while (line.ends_with('\n')) line.pop_back();
        // What is written in memory is meant for elsewhere.
        if (line.starts_with(work)) line.replace(0, work.size(), out);
        print(line);
        (level >= CE_Failure ? failed : warned) = true;
    }
};

std::string count(std::size_t number, const char* one, const char* many) {
    return std::to_string(number).append(" ").append(number == 1 ? one : many);
}

void tellLosses(const Copied& copied, const std::string& file) {
    if (copied.areasAsLines > 0)
        Console::say(file + ": GPX holds no areas; " + count(copied.areasAsLines, "outline", "outlines") +
                     " became tracks");
    if (copied.withoutPlace > 0)
        Console::say(file + ": GPX holds places only; " + count(copied.withoutPlace, "shape", "shapes") +
                     " without one (see --about) are left out");
    if (copied.texts > 0)
        Console::say(file + ": a Shapefile cuts texts at 254 bytes; " +
                     count(copied.texts, "text is", "texts are") + " longer");
}

GDALDatasetUniquePtr openSource(const std::string& in, const std::string& tolerance,
                                const std::string& about) {
    CPLStringList options;
    const auto format = exchange::formatOfFile(in);
    const std::string_view driver = format ? format->driver : "";
    if (driver == "CSV") {
        options.AddString("X_POSSIBLE_NAMES=lon,long,longitude,lng,x");
        options.AddString("Y_POSSIBLE_NAMES=lat,latitude,y");
        options.AddString("Z_POSSIBLE_NAMES=alt,altitude,ele,elevation,z");
        options.AddString("KEEP_GEOM_COLUMNS=NO");
    } else if (driver == "ZEL" || driver.empty()) {
        // The order of shapes is that in which they are drawn.
        options.AddString("LAYERS=ALL");
        if (!tolerance.empty()) options.AddString(("TOLERANCE=" + tolerance).c_str());
        if (!about.empty()) options.AddString(("ABOUT=" + about).c_str());
    }
    return GDALDatasetUniquePtr(
        GDALDataset::Open(in.c_str(), GDAL_OF_VECTOR | GDAL_OF_VERBOSE_ERROR, nullptr, options.List()));
}

/// A file that was written in memory.
std::string_view contentsOf(const std::string& name) {
    vsi_l_offset size = 0;
    const GByte* const bytes = VSIGetMemFileBuffer((kWork + "/" + name).c_str(), &size, FALSE);
    return bytes ? std::string_view(reinterpret_cast<const char*>(bytes), static_cast<std::size_t>(size))
                 : std::string_view();
}

/// Several files, which mean nothing without each other: all are on the disk before the first one takes its
/// name.
bool saveTogether(const std::vector<std::string>& names, const std::filesystem::path& directory) {
    std::vector<std::pair<std::string, std::string>> written;
    std::string problem;
    for (const std::string& name : names) {
        const std::string place = (directory / name).string();
        std::string early;
        problem = UTILS::whyNotReplaced(place);
        if (problem.empty())
            problem = UTILS::saveNewFile(
                [&](int i) {
                    return std::string(place).append(".new").append(i > 0 ? std::to_string(i) : "");
                },
                contentsOf(name), early);
        if (!problem.empty()) {
            Console::fail(place + ": " + problem + "; nothing is written");
            break;
        }
        written.emplace_back(early, place);
    }
    bool saved = problem.empty();
    for (const auto& [early, place] : written) {
        std::error_code error;
        if (problem.empty())
            std::filesystem::rename(early, place, error);
        else
            std::filesystem::remove(early, error);
        if (!error) continue;
        Console::fail(place + ": " + error.message());
        saved = false;
    }
    return saved;
}

/// What was written in memory takes its place on the disk, each file as a whole.
bool save(const std::string& out, const std::string& stem) {
    const CPLStringList list(VSIReadDir(kWork.c_str()));
    std::vector<std::string> names;
    for (int i = 0; i < list.Count(); ++i)
        if (!contentsOf(list[i]).empty()) names.emplace_back(list[i]);
    if (names.empty()) return false;
    if (out == "-") {
        for (const std::string& name : names) std::cout << contentsOf(name);
        return std::cout.flush().good() || (Console::fail("the output could not be written"), false);
    }
    if (names.size() > 1 || !names.front().starts_with(stem + ".")) {
        // Their names begin with that of the target.
        if (!saveTogether(names, std::filesystem::path(out).parent_path())) return false;
        std::string shapefiles;
        for (const std::string& name : names)
            if (name.ends_with(".shp") || (name.ends_with("_table.dbf")))
                shapefiles.append(shapefiles.empty() ? "" : ", ").append(name);
        Console::print("zel: " + out + ": written as " + shapefiles);
        return true;
    }
    const std::string problem = UTILS::saveFile(out, contentsOf(names.front()));
    return problem.empty() || (Console::fail(out + ": " + problem), false);
}

int convert(const std::string& in, const std::string& out, const std::string& to,
            const std::string& tolerance, const std::string& about) {
    const auto format = to.empty() ? exchange::formatOfFile(out) : exchange::formatNamed(to);
    if (!format)
        return Console::fail((to.empty() ? out : to) + ": not one of the formats " + exchange::formatNames() +
                             (to.empty() ? " (--to names it)" : ""));
    if (out == "-" && format->layers == Format::Layers::OneEachType)
        return Console::fail("A Shapefile is several files, which do not fit into a pipe");
    GDALAllRegister();
    exchange::registerDriver();
    CPLSetErrorHandler(Console::handle);
    // Polygons may cross themselves.
    CPLSetConfigOption("LIBKML_STRICT_COMPLIANCE", "NO");
    CPLSetConfigOption("LIBKML_RESOLVE_STYLE", "YES");
    CPLSetConfigOption("GPX_ELE_AS_25D", "YES");
    GDALDriver* const driver = GetGDALDriverManager()->GetDriverByName(format->driver);
    if (!driver) return Console::fail(std::string("This GDAL has no driver for ") + format->driver);

    if (std::filesystem::is_directory(in)) return Console::fail(in + ": it is a directory");
    const GDALDatasetUniquePtr source = openSource(in, tolerance, about);
    if (!source) return kFailed;
    const bool fromZel = EQUAL(source->GetDriverName(), "ZEL");
    if (!fromZel && !EQUAL(format->driver, "ZEL"))
        return Console::fail("One of the two has to be a ZEL file");

    std::string stem = out == "-" ? "overlay" : std::filesystem::path(out).stem().string();
    // GDAL takes it for a slash.
    std::ranges::replace(stem, '\\', '_');
    VSIMkdir(kWork.c_str(), 0700);
    CPLStringList options;
    if (format->datasetOption) options.AddString(format->datasetOption);
    const bool isDirectory = format->layers == Format::Layers::OneEachType;
    const std::string work = isDirectory ? kWork : kWork + "/" + stem + "." + format->name;
    Console::work = work;
    Console::out = out;
    GDALDatasetUniquePtr target(driver->Create(work.c_str(), 0, 0, 0, GDT_Unknown, options.List()));
    if (!target) return kFailed;
    const Copied copied = copyLayers(*source, *target, *format, fromZel ? stem : std::string());
    target.reset();
    tellLosses(copied, out);
    if (copied.failed > 0)
        Console::say(out + ": " + count(copied.failed, "shape is", "shapes are") + " not in it");
    if (!save(out, stem)) return kFailed;
    return Console::failed ? kFailed : Console::warned ? kMessages : 0;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 6) {
        std::fputs("This is what \"zel convert\" runs.\n", stderr);
        return kFailed;
    }
    try {
        return convert(argv[1], argv[2], argv[3], argv[4], argv[5]);
    } catch (const std::exception& error) {
        return Console::fail(error.what());
    }
}
