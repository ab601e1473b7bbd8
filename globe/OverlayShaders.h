#pragma once

namespace sandbox {

/// Put before both fragment shaders: `sight` answers how much of a place is seen past the earth, 0 to 1,
/// for an eye-relative position in metres. The same question as isHiddenByEarth(), for each pixel; what
/// is solid is hidden as soon as it is below the ground.
inline constexpr const char* kSightShader = R"(#version 120
uniform vec3 eye;
uniform float eyeExcess;
uniform vec3 toUnitSphere;

float sight(vec3 fromEye, bool solid) {
    vec3 s = fromEye * toUnitSphere;
    float a = dot(s, s);
    float b = dot(eye, s);
    float discriminant = b * b - a * eyeExcess;
    float past = a + b;
    float soft = clamp(0.5 - past / max(fwidth(past), 1e-15), 0.0, 1.0);
    if (b >= 0.0 || discriminant <= 0.0) return 1.0;
    if (!solid) return soft;
    return eyeExcess / (sqrt(discriminant) - b) < 1.0 - 2e-6 ? 0.0 : 1.0;
}
)";

/// Put before both vertex shaders: a position of two parts relative to the eye.
inline constexpr const char* kRelativeShader = R"(#version 120
uniform mat4 matrix;
uniform vec3 eyeHigh;
uniform vec3 eyeLow;
vec3 relative(vec3 high, vec3 low) { return (high - eyeHigh) + (low - eyeLow); }
)";

inline constexpr const char* kMeshVertexShader = R"(
attribute vec3 high;
attribute vec3 low;
attribute vec4 color;
attribute vec3 normal;
varying vec3 fromEye;
varying vec4 tint;
varying vec3 outwards;
void main() {
    fromEye = relative(high, low);
    tint = color;
    outwards = normal;
    gl_Position = matrix * vec4(fromEye, 1.0);
}
)";

inline constexpr const char* kMeshFragmentShader = R"(
uniform bool solid;
varying vec3 fromEye;
varying vec4 tint;
varying vec3 outwards;
void main() {
    float seen = sight(fromEye, solid);
    // Without a normal of its own a face is flat.
    vec3 flatNormal = normalize(cross(dFdx(fromEye), dFdy(fromEye)));
    vec3 normal = dot(outwards, outwards) > 0.1 ? normalize(outwards) : flatNormal;
    if (seen <= 0.0) discard;
    vec3 shade = tint.rgb;
    if (solid) {
        // Light from the upper left behind the eye's zenith, so that faces tell apart from any side.
        vec3 light = normalize(normalize(eye) - 0.6 * normalize(fromEye));
        shade *= 0.55 + 0.45 * abs(dot(normal, light));
    }
    gl_FragColor = vec4(shade, tint.a * seen);
}
)";

/// Of opaque areas that nobody need ask what the earth hides of: a small part of the time.
inline constexpr const char* kPlainMeshFragmentShader = R"(#version 120
varying vec4 tint;
void main() { gl_FragColor = tint; }
)";

inline constexpr const char* kPictureVertexShader = R"(
attribute vec3 high;
attribute vec3 low;
attribute vec2 place;
varying vec3 fromEye;
varying vec2 at;
void main() {
    fromEye = relative(high, low);
    at = place;
    gl_Position = matrix * vec4(fromEye, 1.0);
}
)";

/// The picture's colours are premultiplied.
inline constexpr const char* kPictureFragmentShader = R"(
uniform sampler2D picture;
varying vec3 fromEye;
varying vec2 at;
void main() {
    float seen = sight(fromEye, false);
    vec4 colour = texture2D(picture, at);
    if (seen <= 0.0) discard;
    gl_FragColor = colour * seen;
}
)";

/// One instance a segment: start to end, with its neighbours. `corner`: x 0 at the start and 1 at the
/// end, y -1 and 1 at the sides. `style`: width, stroke, flags (1 no previous, 2 no next, 4 solid, 8 over
/// bodies).
/// Everything is laid out in pixels of the screen, so w is 1 and what varies, varies along the screen.
inline constexpr const char* kLineVertexShader = R"(
uniform vec2 viewport;
uniform float nearPlane;
uniform float pixelRatio;
attribute vec2 corner;
attribute vec4 previousHigh;
attribute vec3 previousLow;
attribute vec4 startHigh;
attribute vec3 startLow;
attribute vec4 endHigh;
attribute vec3 endLow;
attribute vec4 nextHigh;
attribute vec3 nextLow;
attribute vec4 color;
attribute vec4 style;
varying vec4 tint;
varying vec4 place;     // along, across, length, half width (pixels)
varying vec4 cuts;      // normals of the bisectors at start and end; zero = round cap
varying vec4 startEye;  // eye-relative metres and depth
varying vec4 endEye;
varying vec2 metres;    // distance along the line at start and end
varying vec2 stroke;    // stroke, flags

vec2 pixel(vec4 clip) { return (clip.xy / clip.w * 0.5 + 0.5) * viewport; }

// The line on which two segments meet, as its normal along the line of travel.
vec2 bisector(vec2 before, vec2 after) {
    vec2 sum = before + after;
    return dot(sum, sum) < 0.01 ? vec2(0.0) : normalize(sum);
}

void main() {
    gl_Position = vec4(2.0, 2.0, 2.0, 1.0);
    tint = color;
    place = cuts = startEye = endEye = vec4(0.0);
    metres = stroke = vec2(0.0);
    if (style.x <= 0.0) return;

    vec3 a = relative(startHigh.xyz, startLow);
    vec3 b = relative(endHigh.xyz, endLow);
    vec4 clipA = matrix * vec4(a, 1.0);
    vec4 clipB = matrix * vec4(b, 1.0);
    if (clipA.w < nearPlane && clipB.w < nearPlane) return;
    metres = vec2(startHigh.w, endHigh.w);
    bool cutA = mod(style.z, 2.0) < 0.5;
    bool cutB = mod(floor(style.z / 2.0), 2.0) < 0.5;
    if (clipA.w < nearPlane) {
        float t = (nearPlane - clipA.w) / (clipB.w - clipA.w);
        a = mix(a, b, t);
        clipA = mix(clipA, clipB, t);
        metres.x = mix(metres.x, metres.y, t);
        cutA = false;
    } else if (clipB.w < nearPlane) {
        float t = (nearPlane - clipB.w) / (clipA.w - clipB.w);
        b = mix(b, a, t);
        clipB = mix(clipB, clipA, t);
        metres.y = mix(metres.y, metres.x, t);
        cutB = false;
    }
    vec2 pixelA = pixel(clipA);
    vec2 pixelB = pixel(clipB);
    vec2 span = pixelB - pixelA;
    float len = length(span);
    vec2 along = len > 1e-4 ? span / len : vec2(1.0, 0.0);
    vec2 across = vec2(-along.y, along.x);

    vec2 normalA = vec2(0.0);
    vec2 normalB = vec2(0.0);
    if (cutA) {
        vec4 clip = matrix * vec4(relative(previousHigh.xyz, previousLow), 1.0);
        vec2 before = clip.w < nearPlane ? vec2(0.0) : pixelA - pixel(clip);
        float size = length(before);
        normalA = bisector(size > 1e-4 ? before / size : along, along);
    }
    if (cutB) {
        vec4 clip = matrix * vec4(relative(nextHigh.xyz, nextLow), 1.0);
        vec2 after = clip.w < nearPlane ? vec2(0.0) : pixel(clip) - pixelB;
        float size = length(after);
        normalB = bisector(along, size > 1e-4 ? after / size : along);
    }
    cuts = vec4(dot(normalA, along), dot(normalA, across), dot(normalB, along), dot(normalB, across));

    float halfWidth = 0.5 * style.x * pixelRatio;
    float reach = halfWidth + 1.0;
    // Where it meets another piece, no farther than the round outside of their joint.
    float reachA = cuts.x > 0.0 ? halfWidth * abs(cuts.y) + 1.0 : reach;
    float reachB = cuts.z > 0.0 ? halfWidth * abs(cuts.w) + 1.0 : reach;
    vec2 at = mix(pixelA - along * reachA, pixelB + along * reachB, corner.x) + across * (corner.y * reach);
    place = vec4(mix(-reachA, len + reachB, corner.x), corner.y * reach, len, halfWidth);
    startEye = vec4(a, clipA.w);
    endEye = vec4(b, clipB.w);
    stroke = style.yz;
    float depth = mix(clipA.z / clipA.w, clipB.z / clipB.w, corner.x);
    // A hair before the faces that the line belongs to. Round ones bend away from it at their rim.
    float before = mod(floor(style.z / 4.0), 2.0) > 0.5 ? 3.2e-4 : 4e-5;
    if (style.z >= 7.5) depth = -1.0;
    gl_Position = vec4(at / viewport * 2.0 - 1.0, clamp(depth - before, -1.0, 1.0), 1.0);
}
)";

inline constexpr const char* kLineFragmentShader = R"(
uniform float pixelRatio;
varying vec4 tint;
varying vec4 place;
varying vec4 cuts;
varying vec4 startEye;
varying vec4 endEye;
varying vec2 metres;
varying vec2 stroke;
void main() {
    float t = clamp(place.x / max(place.z, 1e-4), 0.0, 1.0);
    // Equal steps on screen are not equal steps in space.
    float s = t * startEye.w / mix(endEye.w, startEye.w, t);
    vec3 fromEye = mix(startEye.xyz, endEye.xyz, s);
    float flags = floor(stroke.y + 0.5);
    float seen = sight(fromEye, mod(floor(flags / 4.0), 2.0) > 0.5);

    float beyond = max(max(-place.x, place.x - place.z), 0.0);
    float alpha = clamp(place.w + 0.5 - length(vec2(beyond, place.y)), 0.0, 1.0);
    // A hair of overlap: rounding must not leave a pixel to neither of two neighbours.
    if (dot(place.xy, cuts.xy) < -0.004) alpha = 0.0;
    if (dot(place.xy - vec2(place.z, 0.0), cuts.zw) > 0.004) alpha = 0.0;

    if (stroke.x > 0.5) {
        // A pattern fixed to the ground, its period doubling as one moves away: every second mark stays.
        bool dotted = stroke.x > 1.5;
        float metresPerPixel = abs(metres.y - metres.x) / max(place.z, 1e-3);
        float wanted = (dotted ? 2.0 * place.w + 4.0 * pixelRatio : 4.0 * place.w + 10.0 * pixelRatio);
        float period = exp2(floor(log2(max(wanted * metresPerPixel, 1e-3)) + 0.5));
        float at = mix(metres.x, metres.y, s) / period;
        float off = abs(fract(at + 0.5) - 0.5) * period / max(metresPerPixel, 1e-9);
        if (dotted) {
            alpha = min(alpha, clamp(place.w + 0.5 - length(vec2(off, place.y)), 0.0, 1.0));
        } else {
            float dash = 0.3 * period / max(metresPerPixel, 1e-9);
            alpha = min(alpha, clamp(dash + 0.5 - off, 0.0, 1.0));
        }
    }
    alpha *= seen;
    if (alpha <= 0.0) discard;
    gl_FragColor = vec4(tint.rgb, tint.a * alpha);
}
)";

}  // namespace sandbox
