#include "geo/GridProjections.h"

#include <array>
#include <cmath>

#include "geo/SinCos.h"
#include "geo/Wgs84.h"

// Krueger's series for the transverse Mercator projection, to the sixth order in the third flattening n:
// C. F. F. Karney, "Transverse Mercator with an accuracy of a few nanometers", Journal of Geodesy 85 (2011),
// eqs. 11, 14, 36. The latitude from the conformal latitude chi: J. P. Snyder, "Map Projections: A Working
// Manual" (1987), eq. 3-5, carried to the same order in n.

namespace halCore {
namespace {

constexpr double n1 = wgs84::n;
constexpr double n2 = n1 * n1;
constexpr double n3 = n2 * n1;
constexpr double n4 = n2 * n2;
constexpr double n5 = n4 * n1;
constexpr double n6 = n3 * n3;

constexpr double kRectifyingRadius = wgs84::a / (1.0 + n1) * (1.0 + n2 / 4.0 + n4 / 64.0 + n6 / 256.0);

/// (1 - f) exp(e atanh e): the scale of the conformal sphere at a pole.
constexpr double kPolarConformalScale = 1.0033565552493154336;

/// From the projected to the Gauss-Schreiber coordinates. The next term is nanometres at most.
constexpr std::array kBeta = {
    n1 / 2.0 - n2 * 2.0 / 3.0 + n3 * 37.0 / 96.0 - n4 / 360.0 - n5 * 81.0 / 512.0 + n6 * 96199.0 / 604800.0,
    n2 / 48.0 + n3 / 15.0 - n4 * 437.0 / 1440.0 + n5 * 46.0 / 105.0 - n6 * 1118711.0 / 3870720.0,
    n3 * 17.0 / 480.0 - n4 * 37.0 / 840.0 - n5 * 209.0 / 4480.0 + n6 * 5569.0 / 90720.0,
    n4 * 4397.0 / 161280.0 - n5 * 11.0 / 504.0 - n6 * 830251.0 / 7257600.0};

/// From the conformal to the geographic latitude. The next term is nanometres at most.
constexpr std::array kDelta = {
    n1 * 2.0 - n2 * 2.0 / 3.0 - n3 * 2.0 + n4 * 116.0 / 45.0 + n5 * 26.0 / 45.0 - n6 * 2854.0 / 675.0,
    n2 * 7.0 / 3.0 - n3 * 8.0 / 5.0 - n4 * 227.0 / 45.0 + n5 * 2704.0 / 315.0 + n6 * 2323.0 / 945.0,
    n3 * 56.0 / 15.0 - n4 * 136.0 / 35.0 - n5 * 1262.0 / 105.0 + n6 * 73814.0 / 2835.0,
    n4 * 4279.0 / 630.0 - n5 * 332.0 / 35.0 - n6 * 399572.0 / 14175.0,
    n5 * 4174.0 / 315.0 - n6 * 144838.0 / 6237.0};

/// What the geographic latitude has in excess of the conformal one (Clenshaw's summation).
double latitudeExcess(double sin2Chi, double cos2Chi) {
    const double x = 2.0 * cos2Chi;
    double b0 = kDelta.back();
    double b1 = 0.0;
    for (std::size_t j = kDelta.size() - 1; j-- > 0;) {
        const double b = kDelta[j] + x * b0 - b1;
        b1 = b0;
        b0 = b;
    }
    return sin2Chi * b0;
}

/// atan2(y, x), faster in a narrow angle about 0, where nearly all of a zone lies; exact to 1e-17 there.
double narrowAngle(double y, double x) {
    constexpr double narrow = 0.1;
    const double t = y / x;
    if (!(x > 0.0 && std::abs(t) < narrow)) return std::atan2(y, x);
    const double t2 = t * t;
    const double t4 = t2 * t2;
    return t -
           t * t2 *
               ((1.0 / 3 - t2 * (1.0 / 5)) +
                t4 * ((1.0 / 7 - t2 * (1.0 / 9)) + t4 * ((1.0 / 11 - t2 * (1.0 / 13)) + t4 * (1.0 / 15))));
}

/// Hyperbolic sine and cosine, to the last bit below 0.15.
struct SinhCosh {
    explicit SinhCosh(double x) {
        const double x2 = x * x;
        sinh = x + x * x2 * (1.0 / 6 + x2 * (1.0 / 120 + x2 * (1.0 / 5040 + x2 * (1.0 / 362880))));
        cosh =
            1.0 + x2 * (0.5 + x2 * (1.0 / 24 + x2 * (1.0 / 720 + x2 * (1.0 / 40320 + x2 * (1.0 / 3628800)))));
    }
    double sinh;
    double cosh;
};

}  // namespace

GridPosition inverseTransverseMercator(double east, double north) noexcept {
    constexpr double scale = 1.0 / (0.9996 * kRectifyingRadius);
    const double xi = north * scale;
    const double eta = east * scale;
    const SinCos angle(xi);
    const SinhCosh width(eta);
    const double sin2 = 2.0 * angle.sin * angle.cos;
    const double cos2 = 1.0 - 2.0 * angle.sin * angle.sin;
    const double sinh2 = 2.0 * width.sinh * width.cosh;
    const double cosh2 = 1.0 + 2.0 * width.sinh * width.sinh;

    // Clenshaw's summation in complex numbers, re + i im; x + i y is 2 cos 2(xi + i eta).
    const double x = 2.0 * cos2 * cosh2;
    const double y = -2.0 * sin2 * sinh2;
    double re0 = kBeta.back();
    double im0 = 0.0;
    double re1 = 0.0;
    double im1 = 0.0;
    for (std::size_t j = kBeta.size() - 1; j-- > 0;) {
        const double re = kBeta[j] + x * re0 - y * im0 - re1;
        const double im = x * im0 + y * re0 - im1;
        re1 = re0;
        im1 = im0;
        re0 = re;
        im0 = im;
    }
    const double s = sin2 * cosh2;
    const double c = cos2 * sinh2;
    const SinCos angle2 = angle.plusSmall(-(s * re0 - c * im0));
    const SinhCosh width2(eta - (s * im0 + c * re0));

    // The sine and cosine of the conformal latitude chi, times cosh.
    const double sinChi = angle2.sin;
    const double cosChi = std::sqrt(width2.sinh * width2.sinh + angle2.cos * angle2.cos);
    const double normalize = 1.0 / (width2.cosh * width2.cosh);
    const double excess =
        latitudeExcess(2.0 * sinChi * cosChi * normalize, 1.0 - 2.0 * sinChi * sinChi * normalize);
    return {std::atan2(sinChi, cosChi) + excess, narrowAngle(width2.sinh, angle2.cos), angle2.cos >= 0.0};
}

GridPosition inversePolarStereographic(bool northPole, double east, double north) noexcept {
    constexpr double perMeter = kPolarConformalScale / (2.0 * 0.994 * wgs84::a);
    // t is the tangent of half the conformal colatitude.
    const double t = std::sqrt(east * east + north * north) * perMeter;
    const double t2 = t * t;
    const double sinChi = (1.0 - t2) / (1.0 + t2);
    const double cosChi = 2.0 * t / (1.0 + t2);
    const double lat =
        std::atan2(sinChi, cosChi) + latitudeExcess(2.0 * sinChi * cosChi, 1.0 - 2.0 * sinChi * sinChi);
    return {northPole ? lat : -lat, std::atan2(east, northPole ? -north : north), true};
}

}  // namespace halCore
