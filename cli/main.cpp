#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <iostream>
#include <new>

#include <CLI/CLI.hpp>

#include "cli/Commands.h"

namespace {

constexpr const char* kNoMemory = "zel: not enough memory\n";

void addFiles(CLI::App& command, std::vector<std::string>& files, bool& recursive) {
    command.add_option("FILE", files, "Overlay files; - is standard input")->required();
    command.add_flag("-r,--recursive", recursive, "Take the .zel files in directories, and below");
}

int run(int argc, char** argv) {
    CLI::App app("Checks, describes, formats and converts ZEL overlay files.", "zel");
    app.set_version_flag("--version", "zel " ZEL_VERSION);
    app.require_subcommand(1);
    app.footer("Exit codes: 0 clean, 1 with messages, 2 unreadable or wrongly called.");

    cli::CheckOptions checkOptions;
    CLI::App* const check = app.add_subcommand("check", "Print every message as FILE:LINE: message");
    addFiles(*check, checkOptions.files, checkOptions.recursive);
    check->add_flag("-q,--quiet", checkOptions.quiet, "Print no summary");
    check->add_flag("--strict", checkOptions.strict, "Let warnings count as errors");

    cli::InfoOptions infoOptions;
    CLI::App* const info = app.add_subcommand("info", "Tell what is in the files");
    addFiles(*info, infoOptions.files, infoOptions.recursive);
    info->add_flag("--json", infoOptions.json, "Print JSON");
    info->add_flag("-s,--summary", infoOptions.summary, "Do not list the shapes");

    cli::FormatOptions formatOptions;
    CLI::App* const format = app.add_subcommand("format", "Write the files as the library writes them");
    addFiles(*format, formatOptions.files, formatOptions.recursive);
    format->add_flag("-i,--in-place", formatOptions.inPlace, "Rewrite the files instead of printing them");
    format->add_flag("--force", formatOptions.force,
                     "Rewrite files with messages too, and lose what they name");

    cli::EditOptions editOptions;
    CLI::App* const edit = app.add_subcommand("edit", "Write the files as the editor saves them");
    addFiles(*edit, editOptions.files, editOptions.recursive);
    edit->add_flag("-q,--quiet", editOptions.quiet, "Print no summary");
    edit->add_flag("--rewrite", editOptions.rewrite, "Write every block anew, and tell what that loses");

    cli::ConvertOptions convertOptions;
    CLI::App* const convert = app.add_subcommand(
        "convert", "Make a ZEL file of one of another format, or the other way round; needs GDAL");
    convert->add_option("IN", convertOptions.in, "The file to read")->required();
    convert->add_option("OUT", convertOptions.out, "The file to write; - is standard output")->required();
    convert->add_option(
        "--to", convertOptions.to,
        "The format to write, where OUT has not its suffix: zel, geojson, kml, kmz, gpx, csv, "
        "gpkg or shp");
    convert->add_option("--tolerance", convertOptions.tolerance,
                        "Metres that the straight pieces of an outline may leave a curve");
    convert->add_option("--about", convertOptions.about,
                        "Where offsets without a reference are: latitude,longitude[,altitude[,heading]]");

    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        return app.exit(error) == 0 ? cli::kClean : cli::kUnreadable;
    }
    if (check->parsed()) return cli::check(checkOptions);
    if (info->parsed()) return cli::info(infoOptions);
    if (edit->parsed()) return cli::edit(editOptions);
    if (convert->parsed()) return cli::convert(convertOptions);
    return cli::format(formatOptions);
}

}  // namespace

int main(int argc, char** argv) {
    // What is larger than the user may write is a message, no end.
    std::signal(SIGXFSZ, SIG_IGN);
    try {
        std::ios::sync_with_stdio(false);
    } catch (const std::bad_alloc&) {
        // There are no streams any more, to say it or to be flushed at the end.
        std::fputs(kNoMemory, stderr);
        std::_Exit(cli::kUnreadable);
    }
    try {
        const int code = run(argc, argv);
        std::cout.flush();
        if (std::cout) return code;
        std::cerr << "zel: the output could not be written\n";
    } catch (const std::bad_alloc&) {
        std::cerr << kNoMemory;
    } catch (const std::exception& error) {
        std::cerr << "zel: " << error.what() << '\n';
    }
    return cli::kUnreadable;
}
