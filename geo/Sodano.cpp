#include "geo/Sodano.h"

#include <algorithm>
#include <array>
#include <cmath>

#include <GeographicLib/Geodesic.hpp>

#include "geo/Angles.h"
#include "geo/SinCos.h"
#include "geo/Wgs84.h"

// Notation: beta is the reduced latitude, sigma the arc on the auxiliary sphere, lambda the longitude
// difference there, alpha0 the azimuth at the equator; numbers refer to C. F. F. Karney, "Algorithms for
// geodesics", Journal of Geodesy 87 (2013), whose series in epsilon are used to the third order and more
// where it costs nothing: what is left out is micrometres, 20 of them at most.

namespace halCore::Sodano {
namespace {

/// Sine and cosine of the reduced latitude: tan(beta) = (1 - f) tan(phi).
struct Reduced : SinCos {
    explicit Reduced(double latitude) : SinCos(latitude) {
        sin *= 1.0 - wgs84::f;
        scale = 1.0 / std::sqrt(sin * sin + cos * cos);
        sin *= scale;
        cos *= scale;
    }
    double scale;
};

/// The expansion parameter of the series for a geodesic (eq. 16).
double epsilon(double cosAlpha0Squared) {
    const double k2 = wgs84::ep2 * cosAlpha0Squared;
    const double root = 1.0 + std::sqrt(1.0 + k2);
    return k2 / (root * root);
}

/// The sum over l of c[l] sin 2l angle, for up to four coefficients.
double sineSum(const SinCos& angle, double c1, double c2, double c3 = 0.0, double c4 = 0.0) {
    const double sin2 = 2.0 * angle.sin * angle.cos;
    const double x = 2.0 * (1.0 - 2.0 * angle.sin * angle.sin);  // 2 cos 2 angle
    return sin2 * (c1 - c3 + x * (c2 - 2.0 * c4 + x * (c3 + x * c4)));
}

/// Distance from the equator along a geodesic (eqs. 15, 17, 18): s/b = a1 (sigma + sum).
struct DistanceSeries {
    explicit DistanceSeries(double eps) {
        const double eps2 = eps * eps;
        a1 = (1.0 + eps2 * (1.0 / 4.0 + eps2 * (1.0 / 64.0))) / (1.0 - eps);
        c1 = eps * (-1.0 / 2.0 + eps2 * (3.0 / 16.0));
        c2 = eps2 * (-1.0 / 16.0 + eps2 * (1.0 / 32.0));
        c3 = eps2 * eps * (-1.0 / 48.0);
    }
    double sum(const SinCos& sigma) const { return sineSum(sigma, c1, c2, c3); }
    double a1, c1, c2, c3;
};

/// The same reverted (eqs. 20, 21): sigma = tau + sum, with tau = s / (b a1).
struct RevertedSeries {
    explicit RevertedSeries(double eps) {
        const double eps2 = eps * eps;
        c1 = eps * (1.0 / 2.0 - eps2 * (9.0 / 32.0));
        c2 = eps2 * (5.0 / 16.0 - eps2 * (37.0 / 96.0));
        c3 = eps2 * eps * (29.0 / 96.0);
        c4 = eps2 * eps2 * (539.0 / 1536.0);
    }
    double sum(const SinCos& tau) const { return sineSum(tau, c1, c2, c3, c4); }
    double c1, c2, c3, c4;
};

/// The longitude on the sphere in excess of the one on the ellipsoid, from the equator (eqs. 23 to 25):
/// f sin alpha0 a3 (sigma + sum).
struct LongitudeSeries {
    explicit LongitudeSeries(double eps) {
        using wgs84::n;
        const double eps2 = eps * eps;
        a3 = 1.0 - eps * (1.0 - n) / 2.0 - eps2 * (2.0 + n * (1.0 - 3.0 * n)) / 8.0 -
             eps2 * eps * (1.0 + 3.0 * n) / 16.0;
        c1 = eps * (1.0 - n) / 4.0 + eps2 * (1.0 - n * n) / 8.0 + eps2 * eps * (3.0 + 3.0 * n) / 64.0;
        c2 = eps2 * (2.0 + n * (n - 3.0)) / 32.0 + eps2 * eps * (3.0 - 2.0 * n) / 64.0;
    }
    double sum(const SinCos& sigma) const { return sineSum(sigma, c1, c2); }
    double a3, c1, c2;
};

/// Beyond this arc, about 19,100 km, the series fail; beyond the other, about 16,500 km, they leave more than
/// one Newton step removes.
constexpr double kCosNearlyAntipodal = -0.99;
constexpr double kCosFar = -0.85;

bool isLatitude(double radians) {
    return std::abs(radians) <= kHalfPi + 4e-16;
}

double clampLatitude(double radians) {
    return std::clamp(radians, -kHalfPi, kHalfPi);
}

/// Azimuth in (-pi, pi] of a direction; atan2 alone makes south -pi when `east` is -0 or tiny.
double azimuthOf(double east, double north) {
    return wrapToPi(std::atan2(east, north));
}

/// The triangle of two points and the pole on the auxiliary sphere. Differences are taken before the
/// products, so that nothing cancels when the points are close.
struct SphereTriangle {
    SphereTriangle(const Reduced& first, const Reduced& second, double deltaLatitude)
        : beta1(first),
          beta2(second),
          sines(first.sin * second.sin),
          cosines(first.cos * second.cos),
          sinDeltaBeta(std::abs(deltaLatitude) < 0.1
                           ? (1.0 - wgs84::f) * first.scale * second.scale * std::sin(deltaLatitude)
                           : second.sin * first.cos - second.cos * first.sin) {}

    /// Solves the triangle for half the longitude difference on the sphere.
    void solve(const SinCos& halfLambda) {
        setHalfLongitude_(halfLambda);
        arc = std::atan2(sinArc, cosArc);
    }

    /// Solves it for one that differs by less than 0.01 radians from the one before.
    void solveBeside(double differenceOfHalves) {
        const double sinBefore = sinArc;
        const double cosBefore = cosArc;
        setHalfLongitude_(half.plusSmall(differenceOfHalves));
        // The arc sine of the change, exact to 1e-19.
        const double d = sinArc * cosBefore - cosArc * sinBefore;
        const double d2 = d * d;
        arc += d * (1.0 + d2 * (1.0 / 6.0 + d2 * (3.0 / 40.0 + d2 * (15.0 / 336.0))));
    }

    double cosAlpha0Squared() const { return 1.0 - sinAlpha0 * sinAlpha0; }

    /// sin 2l sigma2 - sin 2l sigma1 for l = 1, 2, 3, with sigma counted from the equator.
    std::array<double, 3> sineDifferences() const {
        const double m = cosAlpha0Squared();
        // cos(sigma1 + sigma2); on the equator it does not matter, as the coefficients vanish with m.
        const double x = m > 1e-30 ? cosArc - 2.0 * sines / m : 0.0;
        return {2.0 * sinArc * x, 4.0 * sinArc * cosArc * (2.0 * x * x - 1.0),
                2.0 * sinArc * (4.0 * cosArc * cosArc - 1.0) * x * (4.0 * x * x - 3.0)};
    }

    Reduced beta1;
    Reduced beta2;
    double sines;
    double cosines;
    double sinDeltaBeta;

    SinCos half{0.0, 1.0};
    double sinLambda = 0.0;
    double versine = 0.0;
    /// The second point as seen from the first: sin(arc) times the sine and cosine of the azimuth.
    double east = 0.0;
    double north = 0.0;
    double sinArc = 0.0;
    double cosArc = 1.0;
    double arc = 0.0;
    double sinAlpha0 = 0.0;

  private:
    void setHalfLongitude_(const SinCos& halfLambda) {
        half = halfLambda;
        sinLambda = 2.0 * half.sin * half.cos;
        versine = 2.0 * half.sin * half.sin;
        east = beta2.cos * sinLambda;
        north = sinDeltaBeta + beta1.sin * beta2.cos * versine;
        sinArc = std::sqrt(east * east + north * north);
        cosArc = sines + cosines - cosines * versine;
        sinAlpha0 = cosines * sinLambda / sinArc;
    }
};

/// What the longitude difference on the sphere has in excess of the one on the ellipsoid, by Sodano's
/// series, for a triangle solved with the latter.
double sodanoExcess(const SphereTriangle& t) {
    constexpr double f = wgs84::f;
    constexpr double f2 = f * f;
    const double squareOverSine = t.arc * t.arc / t.sinArc;
    return t.sinAlpha0 * (f / (1.0 - f) * t.arc - t.sines * f2 * (0.5 * t.sinArc + squareOverSine) +
                          t.cosAlpha0Squared() * f2 *
                              (-1.25 * t.arc + 0.25 * t.sinArc * t.cosArc + squareOverSine * t.cosArc));
}

/// The change of that excess by a Newton step on the exact longitude equation; the slope is taken to the
/// first order in f, which leaves 1e-5 of the error.
double newtonStep(const SphereTriangle& t, double excess) {
    const LongitudeSeries series(epsilon(t.cosAlpha0Squared()));
    const auto [s1, s2, s3] = t.sineDifferences();
    const double exact = wgs84::f * t.sinAlpha0 * series.a3 * (t.arc + series.c1 * s1 + series.c2 * s2);
    const double c2 = t.sinAlpha0 * t.sinAlpha0;
    const double cosLambda = 1.0 - t.versine;
    const double slope = wgs84::f * (c2 + t.arc / t.sinArc * (t.cosines * cosLambda - c2 * t.cosArc));
    return (exact - excess) / (1.0 - slope);
}

InverseSolution nearlyAntipodal(double lat1, double lon1, double lat2, double lon2) noexcept {
    InverseSolution result;
    try {
        double azimuth1 = 0.0;
        double azimuth2 = 0.0;
        GeographicLib::Geodesic::WGS84().Inverse(lat1 * kDegreesPerRadian, lon1 * kDegreesPerRadian,
                                                 lat2 * kDegreesPerRadian, lon2 * kDegreesPerRadian,
                                                 result.distance, azimuth1, azimuth2);
        result.azimuth1 = wrapToPi(azimuth1 * kRadiansPerDegree);
        result.azimuth2 = wrapToPi(azimuth2 * kRadiansPerDegree);
        result.valid = true;
    } catch (...) {
        result = {};
    }
    return result;
}

}  // namespace

double InverseSolution::backAzimuth() const noexcept {
    return valid && distance > 0.0 ? wrapToPi(azimuth2 + kPi) : 0.0;
}

InverseSolution inverse(double lat1, double lon1, double lat2, double lon2) noexcept {
    if (!isLatitude(lat1) || !isLatitude(lat2) || !std::isfinite(lon1) || !std::isfinite(lon2)) return {};
    lat1 = clampLatitude(lat1);
    lat2 = clampLatitude(lat2);
    // A pole is one place, whatever its longitude.
    if (lat1 == lat2 && std::abs(lat1) == kHalfPi) return {.valid = true};
    const double longitude = wrapToPi(lon2 - lon1);

    const Reduced beta1(lat1);
    const Reduced beta2(lat2);
    SphereTriangle triangle(beta1, beta2, lat2 - lat1);
    triangle.solve(SinCos(0.5 * longitude));
    if (triangle.sinArc == 0.0 && triangle.cosArc > 0.0) return {.valid = true};
    if (triangle.cosArc < kCosNearlyAntipodal) return nearlyAntipodal(lat1, lon1, lat2, lon2);

    // Sodano's series gives the longitude on the sphere to 1e-6, one Newton step on the exact equation
    // the rest.
    double excess = sodanoExcess(triangle);
    triangle.solveBeside(0.5 * excess);
    double step = newtonStep(triangle, excess);
    triangle.solveBeside(0.5 * step);
    if (triangle.cosArc < kCosFar) {
        excess += step;
        triangle.solveBeside(0.5 * newtonStep(triangle, excess));
    }

    const DistanceSeries series(epsilon(triangle.cosAlpha0Squared()));
    const auto [s1, s2, s3] = triangle.sineDifferences();
    InverseSolution result;
    result.valid = true;
    result.distance =
        wgs84::b * series.a1 * (triangle.arc + series.c1 * s1 + series.c2 * s2 + series.c3 * s3);
    result.azimuth1 = azimuthOf(triangle.east, triangle.north);
    result.azimuth2 = azimuthOf(beta1.cos * triangle.sinLambda,
                                triangle.sinDeltaBeta - beta1.cos * beta2.sin * triangle.versine);
    return result;
}

InverseSolution inverse(const Vec3& lla1, const Vec3& lla2) noexcept {
    return inverse(lla1.lat(), lla1.lon(), lla2.lat(), lla2.lon());
}

DirectSolution direct(double lat1, double lon1, double azimuth1, double distance) noexcept {
    if (!isLatitude(lat1) || !std::isfinite(lon1) || !std::isfinite(azimuth1) || !std::isfinite(distance))
        return {};
    const Reduced beta1(clampLatitude(lat1));
    const SinCos alpha1(azimuth1);
    // Nearly tau, but it waits for nothing.
    const double spherical = distance / wgs84::b;
    const SinCos sphericalAngle(spherical);
    const double sinAlpha0 = beta1.cos * alpha1.sin;
    const double g = beta1.cos * alpha1.cos;
    const double m = g * g + beta1.sin * beta1.sin;  // cos^2 alpha0
    const double eps = epsilon(m);

    // sigma1 is the arc from the equator to the first point; along the equator it does not matter.
    const double scale = m > 0.0 ? 1.0 / std::sqrt(m) : 0.0;
    const SinCos sigma1(beta1.sin * scale, m > 0.0 ? g * scale : 1.0);

    // tau is the distance scaled to an angle. The series that reverts it to the arc is taken as a
    // difference between both ends, so that a short distance keeps its relative accuracy.
    const DistanceSeries distances(eps);
    const double tau = spherical / distances.a1;
    const SinCos tauAngle =
        std::abs(tau - spherical) < 0.01 ? sphericalAngle.plusSmall(tau - spherical) : SinCos(tau);
    const SinCos tau1 = sigma1.plusSmall(distances.sum(sigma1));
    const RevertedSeries reverted(eps);
    const double correction = reverted.sum(tau1.plus(tauAngle)) - reverted.sum(tau1);
    const double arc = tau + correction;
    const SinCos sigma = tauAngle.plusSmall(correction);

    const LongitudeSeries longitudes(eps);
    const double excess = wgs84::f * sinAlpha0 * longitudes.a3 *
                          (arc + (longitudes.sum(sigma1.plus(sigma)) - longitudes.sum(sigma1)));
    const double lambda =
        std::atan2(sigma.sin * alpha1.sin, beta1.cos * sigma.cos - beta1.sin * sigma.sin * alpha1.cos);
    const double north = g * sigma.cos - beta1.sin * sigma.sin;
    const double sinBeta2 = beta1.sin * sigma.cos + g * sigma.sin;
    const double cosBeta2 = std::sqrt(sinAlpha0 * sinAlpha0 + north * north);
    DirectSolution result;
    result.valid = true;
    result.lat = std::atan2(sinBeta2, (1.0 - wgs84::f) * cosBeta2);
    result.lon = wrapToPi(lon1 + (lambda - excess));
    result.azimuth2 = azimuthOf(sinAlpha0, north);
    return result;
}

Vec3 direct(const Vec3& lla1, double azimuth1, double distance) noexcept {
    const DirectSolution result = direct(lla1.lat(), lla1.lon(), azimuth1, distance);
    return result.valid ? Vec3(result.lat, result.lon, lla1.alt()) : lla1;
}

}  // namespace halCore::Sodano
