#pragma once

namespace sandbox {

// All of it happens in coordinates that make the ellipsoid the unit sphere. `eye` is the eye there and
// `eyeExcess` its squared distance minus one, computed in double precision: it is tiny near the ground.
// `axisRatio` is the polar axis over that of the equator.

inline constexpr const char* kEarthVertexShader = R"(#version 120
attribute vec2 corner;
uniform vec2 low;
uniform vec2 high;
uniform vec3 rayRight;
uniform vec3 rayUp;
uniform vec3 rayAhead;
varying vec3 ray;
void main() {
    vec2 at = mix(low, high, corner);
    ray = rayAhead + at.x * rayRight + at.y * rayUp;
    gl_Position = vec4(at, 0.0, 1.0);
}
)";

/// Space, and the glow of the air where the ray comes closest to the ground.
inline constexpr const char* kSkyFragmentShader = R"(#version 120
uniform vec3 eye;
uniform float eyeExcess;
varying vec3 ray;
void main() {
    float b = min(dot(eye, ray), 0.0);
    float closest = sqrt(max(eyeExcess + 1.0 - b * b / dot(ray, ray), 0.0)) - 1.0;
    float glow = 0.75 * exp(-max(closest, 0.0) / 0.0085) + 0.22 * exp(-max(closest, 0.0) / 0.045);
    gl_FragColor = vec4(vec3(0.012, 0.016, 0.030) + vec3(0.27, 0.54, 0.95) * glow, 1.0);
}
)";

/// The ground, blended over the sky by the share of the pixel that it covers. Compiled with
///
/// - one of PLAIN (graticule), MINIFIED, MAGNIFIED or both of the latter, in which case `smoothness` mixes
///   them; or none, where the map's colours cover all;
/// - FADING besides MAGNIFIED, where the map covers some of the image;
/// - WORLD and DETAIL for the fields of the map (`MapField`), each where it is needed.
inline constexpr const char* kGroundFragmentShader = R"(
uniform vec3 eye;
uniform float eyeExcess;
uniform float axisRatio;
uniform vec2 imageSize;
uniform float smoothness;
uniform float unit;  // pixels to a widget pixel
uniform sampler2D image;
varying vec3 ray;

const float kPi = 3.14159265358979;
const vec3 kAir = vec3(0.36, 0.60, 0.95);

#ifdef FADING
// One look-up, its way from texel to texel eased: enough where the map's colours lie over it.
vec3 smoothLookUp(vec2 uv) {
    vec2 at = uv * imageSize - 0.5;
    vec2 f = fract(at);
    return texture2DLod(image, (at - f + f * f * (3.0 - 2.0 * f) + 0.5) / imageSize, 0.0).rgb;
}
#elif defined(MAGNIFIED)
// Cubic B-spline by four bilinear look-ups: a magnified image stays smooth, without the bilinear diamonds.
vec3 smoothLookUp(vec2 uv) {
    vec2 at = uv * imageSize - 0.5;
    vec2 f = fract(at);
    at -= f;
    vec2 f2 = f * f;
    vec2 f3 = f2 * f;
    vec2 w0 = (1.0 - 3.0 * f + 3.0 * f2 - f3) / 6.0;
    vec2 w1 = (4.0 - 6.0 * f2 + 3.0 * f3) / 6.0;
    vec2 w3 = f3 / 6.0;
    vec2 w2 = 1.0 - w0 - w1 - w3;
    vec2 s0 = w0 + w1;
    vec2 s1 = w2 + w3;
    vec2 t0 = (at - 0.5 + w1 / s0) / imageSize;
    vec2 t1 = (at + 1.5 + w3 / s1) / imageSize;
    return (texture2DLod(image, t0, 0.0).rgb * s0.x +
            texture2DLod(image, vec2(t1.x, t0.y), 0.0).rgb * s1.x) * s0.y +
           (texture2DLod(image, vec2(t0.x, t1.y), 0.0).rgb * s0.x +
            texture2DLod(image, t1, 0.0).rgb * s1.x) * s1.y;
}
#endif

#ifdef PLAIN
float gridLine(float degrees, float spacing, float pixel) {
    float distance = abs(fract(degrees / spacing - 0.5) - 0.5) * spacing;
    return 1.0 - smoothstep(-0.5, 0.5, distance / max(pixel, 1e-6) - unit);
}
#endif

#if defined(WORLD) || defined(DETAIL)
uniform float pixelAngle;  // of a pixel, radians
uniform vec3 mapStrength;  // of land and sea, coasts, borders
uniform vec3 seaColor;
uniform vec3 shoreColor;
uniform vec3 iceColor;
uniform vec3 landColor;
uniform vec3 coastColor;
uniform vec3 borderColor;
const float kReach = 4.0;
const float kFarReach = 36.0;

// What a field says, in pixels: how far into the land, how far to a border, and how large an element is; and which
// share of the distances that a field knows it is to the coast. `step`: elements to a pixel.
vec4 inPixels(vec2 found, float step) {
    float level = found.x * 255.0;
    float sea = level > 64.0 ? (level - 127.5) * (kReach / 63.5)
                             : (level - 64.0) * ((kFarReach - kReach) / 64.0) - kReach;
    vec3 pixels = vec3(level > 127.5 ? (level - 127.5) * (kReach / 127.5) : sea, found.y * kReach, 1.0) /
                  clamp(step, 0.02, 2.5);
    return vec4(pixels, -sea / kFarReach);
}

vec3 paintMap(vec3 ground, vec4 field, float south) {
    float land = clamp(field.x + 0.5, 0.0, 1.0);
    // Paler along the coasts, as on charts; where pixels are large, as towards the horizon, not beyond what the
    // field knows.
    float rim = 1.0 - clamp(max(-field.x / (22.0 * unit), field.w), 0.0, 1.0);
    vec3 colors = mix(mix(seaColor, shoreColor, rim * rim), mix(landColor, iceColor, smoothstep(0.87, 0.91, south)), land);
    ground = mix(ground, colors, mapStrength.x);
    // Between two elements, their distances to a border are all there is: a finer line would have gaps.
    float wide = 0.5 * max(unit, field.z);
    float border = clamp(wide + 0.5 - field.y, 0.0, 1.0) * sqrt(0.5 * unit / wide) * land;
    ground = mix(ground, borderColor, border * mapStrength.z);
    float coast = clamp(0.5 * unit + 0.5 - abs(field.x), 0.0, 1.0);
    return mix(ground, coastColor, coast * mapStrength.y);
}
#endif

#ifdef WORLD
uniform sampler2D world;
uniform vec2 worldSize;
#endif

#ifdef DETAIL
uniform sampler2D detail;
uniform vec3 fromDetail;  // the eye, from the detail's middle
uniform vec3 detailEast;
uniform vec3 detailNorth;
uniform float detailScale;  // elements
uniform float detailSize;
#endif

void main() {
    float a = dot(ray, ray);
    float b = dot(eye, ray);
    float discriminant = b * b - a * eyeExcess;
    float coverage = clamp(discriminant / max(fwidth(discriminant), 1e-30) + 0.5, 0.0, 1.0);
    // Beyond the limb the nearest point of the ray stands in, so that slopes stay continuous.
    float t = discriminant > 0.0 ? eyeExcess / (-b + sqrt(discriminant)) : -b / a;
    vec3 hit = normalize(eye + t * ray);
#if defined(PLAIN) || defined(MINIFIED)
    // The slopes of u and v by calculus: u jumps at 180°, and differences between pixels would see that.
    float ring = max(dot(hit.xy, hit.xy), 1e-7);
    vec3 acrossX = dFdx(hit);
    vec3 acrossY = dFdy(hit);
    vec2 uvX = vec2((hit.x * acrossX.y - hit.y * acrossX.x) / (2.0 * kPi * ring),
                    -acrossX.z * inversesqrt(ring) / kPi);
    vec2 uvY = vec2((hit.x * acrossY.y - hit.y * acrossY.x) / (2.0 * kPi * ring),
                    -acrossY.z * inversesqrt(ring) / kPi);
#endif
#ifdef DETAIL
    vec3 away = fromDetail + t * ray;
    vec2 at = vec2(dot(away, detailEast), dot(away, detailNorth)) *
              (detailScale * inversesqrt(max(1.0 - 0.25 * dot(away, away), 0.05)));
#endif
    float facing = clamp(-dot(hit, ray) * inversesqrt(a), 0.0, 1.0);
    if (b >= 0.0 || coverage <= 0.0) discard;
#if defined(PLAIN) || defined(MINIFIED) || defined(MAGNIFIED) || defined(WORLD)
    vec2 uv = vec2(atan(hit.y, hit.x) / (2.0 * kPi) + 0.5,
                   0.5 - atan(hit.z, axisRatio * sqrt(max(dot(hit.xy, hit.xy), 1e-7))) / kPi);
#endif

    vec3 ground = vec3(0.0);
#ifdef MINIFIED
    ground = texture2DGradARB(image, uv, uvX, uvY).rgb;
#endif
#ifdef MAGNIFIED
#ifdef MINIFIED
    ground = mix(ground, smoothLookUp(uv), smoothness);
#else
    ground = smoothLookUp(uv);
#endif
#endif
#ifdef PLAIN
    vec2 degrees = uv * vec2(360.0, 180.0);
    vec2 pixel = (abs(uvX) + abs(uvY)) * vec2(360.0, 180.0);
    float meridian = abs(degrees.y - 90.0) < 80.0 ? gridLine(degrees.x, 10.0, pixel.x) : 0.0;
    float grid = max(gridLine(degrees.y, 10.0, pixel.y), meridian);
    float main = max(gridLine(degrees.y, 90.0, pixel.y), gridLine(degrees.x, 90.0, pixel.x));
    ground = mix(vec3(0.13, 0.21, 0.33), vec3(0.45, 0.56, 0.70), 0.5 * grid);
    ground = mix(ground, vec3(0.70, 0.80, 0.92), 0.6 * main);
#endif

#ifdef WORLD
    vec4 field = inPixels(texture2DLod(world, vec2(uv.x, 1.0 - uv.y), 0.0).rg,
                          worldSize.y / kPi * pixelAngle * t * sqrt(a / max(facing, 0.05)));
#endif
#ifdef DETAIL
    vec4 close = inPixels(texture2DLod(detail, at / detailSize + 0.5, 0.0).rg,
                          detailScale * pixelAngle * t * sqrt(a / max(facing, 0.05)));
#ifdef WORLD
    float inside = clamp((0.48 - length(at) / detailSize) * 40.0, 0.0, 1.0);
    field = mix(field, close, inside);
#else
    vec4 field = close;
#endif
#endif
#if defined(WORLD) || defined(DETAIL)
    ground = paintMap(ground, field, -hit.z);
#endif

    // The photographs' oceans are nearly black; lift the dark a little.
    ground += (1.0 - ground) * (1.0 - ground) * vec3(0.012, 0.042, 0.050);
    // More air lies before what is seen at a flat angle.
    float haze = (1.0 - facing) * (1.0 - facing);
    ground *= mix(1.0, 0.72 + 0.28 * facing, clamp(eyeExcess * 20.0, 0.0, 1.0));
    gl_FragColor = vec4(mix(ground, kAir, 0.75 * haze * haze), coverage);
}
)";

}  // namespace sandbox
