#pragma once

#include "common/Vec3.h"
#include "format/PlainNumber.h"

namespace halCore::ZEL {

/// Reads two or three plain numbers (`scanPlainNumber`) from `p` to the end of the line, whatever white space
/// is between them. Returns the line feed, which must stand before `end`, or null for every other text.
inline const char* scanPlainPoint(const char* p, const char* end, Vec3& point) {
    const auto skipBlanks = [](const char* at) {
        while (*at == ' ' || *at == '\t') ++at;
        return at;
    };
    const auto endsLine = [](const char* at) { return *at == '\n' || (*at == '\r' && at[1] == '\n'); };
    if (*p != ' ' && *p != '\t') return nullptr;
    double x = 0.0;
    double y = 0.0;
    double z = 0.0;
    p = skipBlanks(p);
    if (!scanPlainNumber(p, end, x)) return nullptr;
    p = skipBlanks(p);
    if (!scanPlainNumber(p, end, y)) return nullptr;
    p = skipBlanks(p);
    if (!endsLine(p)) {
        if (!scanPlainNumber(p, end, z)) return nullptr;
        p = skipBlanks(p);
        if (!endsLine(p)) return nullptr;
    }
    if (*p == '\r') ++p;
    point.set(x, y, z);
    return p;
}

}  // namespace halCore::ZEL
