#include <cstdio>

#include "support/GeodesicErrors.h"

// Writes the table of docs/geodesy.md.

namespace {

struct Row {
    const char* name;
    double distance;
    const char* goal;
    /// Null where the line need not be the shortest, so that an inverse finds another.
    const char* roundTripGoal;
};

/// Half the meridian: from any point about as far as its antipode.
constexpr double kAntipodal = 20003931.0;

constexpr Row kRows[] = {
    {"1 m", 1.0, "1 mm", "10 nm"},     {"10 m", 10.0, "1 mm", "10 nm"},
    {"100 m", 1e2, "1 mm", "0.1 µm"},  {"1 km", 1e3, "1 mm", "1 µm"},
    {"10 km", 1e4, "1 mm", "10 µm"},   {"100 km", 1e5, "1 mm", "0.1 mm"},
    {"1,000 km", 1e6, "1 mm", "1 mm"}, {"10,000 km", 1e7, "1 cm", "-"},
    {"16,400 km", 1.64e7, "-", "-"},   {"17,000 km", 1.7e7, "-", "-"},
    {"18,000 km", 1.8e7, "-", "-"},    {"19,000 km", 1.9e7, "-", "-"},
    {"19,900 km", 1.99e7, "-", "-"},   {"antipodal", kAntipodal, "-", nullptr},
};

}  // namespace

int main() {
    std::puts(
        "| distance | inverse, distance error | direct, position error | goal | inverse of direct | goal |");
    std::puts("| --- | --- | --- | --- | --- | --- |");
    for (const Row& row : kRows) {
        const halCore::GeodesicErrors worst = halCore::measureGeodesics(row.distance, 100000);
        std::printf("| %s | %.1e m | %.1e m | %s |", row.name, worst.inverse, worst.direct, row.goal);
        if (row.roundTripGoal)
            std::printf(" %.1e m | %s |\n", worst.roundTrip, row.roundTripGoal);
        else
            std::printf(" - | - |\n");
    }
}
