// How much memory reading takes: for each reader, in a process of its own, what the result takes for a point,
// and how much more there was at the highest.

#include <cstdio>
#include <fstream>
#include <sstream>
#include <string>

#include <malloc.h>
#include <sys/wait.h>
#include <unistd.h>

#include "format/Peers.h"

namespace {

using namespace bench;

/// A value of /proc/self/status in bytes.
double statusBytes(const std::string& key) {
    std::ifstream status("/proc/self/status");
    for (std::string line; std::getline(status, line);)
        if (line.starts_with(key)) return 1024.0 * std::stod(line.substr(key.size() + 1));
    return 0.0;
}

template <typename Read>
void measure(const char* name, const Data& data, Read read) {
    std::fflush(stdout);
    // What making the data has left in the heap is not to be used again unseen.
    malloc_trim(0);
    const pid_t child = fork();
    if (child != 0) {
        waitpid(child, nullptr, 0);
        return;
    }
    // The highest value is counted from here.
    std::ofstream("/proc/self/clear_refs") << 5 << std::flush;
    const double before = statusBytes("VmRSS:");
    const auto result = read();
    const double highest = statusBytes("VmHWM:");
    malloc_trim(0);
    const double after = statusBytes("VmRSS:");
    const auto points = static_cast<double>(data.points);
    std::printf("%-32s %8.1f bytes a point, %8.1f more while reading\n", name, (after - before) / points,
                (highest - after) / points);
    std::fflush(stdout);
    _exit(0);
}

void measureAll(const char* what, const Data& data) {
    std::printf("%s\n", what);
    measure("  from_chars", data, [&] { return readByFromChars(data.zel); });
    measure("  ours", data, [&] { return readZel(data.zel); });
    std::istringstream stream(data.zel);
    measure("  ours, stream", data, [&] {
        halCore::ZEL::Parser::Shapes shapes;
        halCore::ZEL::Parser().parse(stream, shapes);
        return shapes;
    });
    measure("  simdjson", data, [&] { return readBySimdjson(data.geoJson); });
    measure("  RapidJSON", data, [&] { return readByRapidJson(data.geoJson); });
}

}  // namespace

int main() {
    measureAll("a line of a million points", line());
    measureAll("a hundred thousand small shapes", smallShapes());
    return 0;
}
