#pragma once

#include <string>
#include <vector>

/// The subcommands. Each prints on the standard output, its complaints on the standard error, and returns
/// the exit code.
namespace cli {

inline constexpr int kClean = 0;
inline constexpr int kMessages = 1;
inline constexpr int kUnreadable = 2;

struct CheckOptions {
    std::vector<std::string> files;
    bool recursive = false;
    bool quiet = false;
    /// Warnings count as errors.
    bool strict = false;
};

/// Every message as "FILE:LINE: message", and a summary.
int check(const CheckOptions& options);

struct InfoOptions {
    std::vector<std::string> files;
    bool recursive = false;
    bool json = false;
    bool summary = false;
};

/// What is in the files.
int info(const InfoOptions& options);

struct FormatOptions {
    std::vector<std::string> files;
    bool recursive = false;
    bool inPlace = false;
    bool force = false;
};

/// The files as the library writes them.
int format(const FormatOptions& options);

struct EditOptions {
    std::vector<std::string> files;
    bool recursive = false;
    bool quiet = false;
    /// Every block as if its shape had been changed beyond what a line can say.
    bool rewrite = false;
};

/// The files as the editor saves them, and what it loses of them.
int edit(const EditOptions& options);

struct ConvertOptions {
    std::string in;
    std::string out;
    /// As typed; empty where nothing was.
    std::string to;
    std::string tolerance;
    std::string about;
};
/// Runs the program that has GDAL in place of this one; returns only when it cannot.
int convert(const ConvertOptions& options);

}  // namespace cli
