#pragma once

#include <string>
#include <vector>

#include "common/NumberText.h"
#include "common/Strings.h"
#include "model/RandomShapes.h"

namespace OverlayEditor {

/// Files as people and programs write them, the same in every run: any kind, any units, comments, unknown
/// words, errors, odd blanks.
class RandomFiles {
  public:
    explicit RandomFiles(RandomShapes& random) : random_(random) {}

    std::string make() {
        eol_ = random_.maybe() ? "\n" : "\r\n";
        std::string text = chance(5) ? "\xEF\xBB\xBF" : "";
        if (random_.maybe()) text += "# Of the harbour office" + eol_ + "version 2" + eol_ + eol_;
        for (int i = random_.integer(1, 6); i > 0; --i) {
            const std::string one = block();
            text += between() + one + (chance(8) ? one : "");
        }
        if (chance(6)) text += "start" + eol_ + "circle" + eol_ + "# without an end" + eol_;
        if (chance(4)) text.resize(text.size() - eol_.size());
        return text;
    }

  private:
    bool chance(int in) { return random_.integer(1, in) == 1; }
    template <typename... Texts>
    std::string any(Texts... texts) {
        const std::vector<std::string> all{texts...};
        return all[static_cast<std::size_t>(random_.integer(0, static_cast<int>(all.size()) - 1))];
    }
    std::string number(double low, double high) {
        const double value = random_.number(low, high);
        return UTILS::writeNumber(value, any("3", "6", "15") == "3" ? 3 : random_.maybe() ? 6 : 15);
    }
    std::string between() {
        return any(eol_, eol_ + eol_, "# above" + eol_, "lla 1 2 3" + eol_, " \t" + eol_,
                   "# one" + eol_ + "// two" + eol_, "# apart" + eol_ + eol_, std::string());
    }
    std::string line(std::string text) {
        if (chance(6)) text = any("  ", "\t", "    ") + text;
        if (chance(9))
            text = UTILS::upperCase(text.substr(0, text.find(' '))) +
                   text.substr(std::min(text.find(' '), text.size()));
        if (chance(12)) text += any(" ", "\t", "  ");
        return text + eol_;
    }
    std::string point(const std::string& keyword) {
        const bool relative = keyword.find("xy") != std::string::npos;
        std::string text = keyword + any(" ", "  ", "\t");
        if (relative)
            text += number(-5000, 5000) + " " + number(-5000, 5000);
        else
            text += (chance(30) ? "21.3O" : any(number(-80, 80), "21:18:36N", "-7.25")) + any(" ", "   ") +
                    any(number(-170, 170), "157:51:30W");
        if (random_.maybe()) text += " " + any("0", "10", number(-10, 3000));
        return line(text);
    }
    std::string block() {
        if (chance(10))
            return any("start\nlatlonaltbox 4 3 1 2 0\nend\n", "start\nfoo\nend\n",
                       "start\nline\ncircle\nend\n");
        const std::string kind =
            any("circle", "sphere", "hemisphere", "cone", "ellipse", "arc", "cylinder", "ellipsoid", "orbit",
                "line", "polygon", "poly", "points", "linesegs", "annotation", "box");
        const bool relative = chance(3);
        const bool list =
            kind == "line" || kind == "polygon" || kind == "poly" || kind == "points" || kind == "linesegs";
        std::string text = line("start");
        if (kind == "annotation")
            text += line("annotation " + any("Pier_7", "Light  house", "a\\nb", "x")) +
                    (random_.maybe() ? point(relative ? "xy" : "ll") : "");
        else
            text += line(kind == "box" ? "polygon" : kind);
        std::vector<std::string> lines;
        if (kind == "box") {
            const std::string a = number(1, 5), b = number(6, 9), c = number(10, 20), d = number(21, 30);
            const std::string k = relative ? "xy " : "ll ";
            std::string corners = line(k + a + " " + c);
            if (random_.maybe())
                corners += line(k + a + " " + d) + line(k + b + " " + d) + line(k + b + " " + c);
            else
                corners += line(k + b + " " + c) + line(k + b + " " + d) + line(k + a + " " + d);
            text += corners;
        }
        for (int i = list ? random_.integer(3, 9) : 0; i > 0; --i) {
            text += point(relative ? any("xy", "xyz") : any("ll", "lla", "latlon"));
            if (chance(8)) text += any("# a corner" + eol_, "lla here there" + eol_, eol_);
        }
        if (list && !relative && chance(3)) text += line("mgrs 4QFJ1234567890 " + any("", "7"));
        const bool round = !list && kind != "box" && kind != "annotation";
        if (round) {
            lines.push_back(point(relative ? any("centerxy", "centerxyz") : any("centerll", "centerlla")));
            if (kind == "orbit") lines.push_back(point(relative ? "centerxy2" : "centerll2"));
            const bool axes = kind == "ellipse" || kind == "arc" || kind == "cylinder" || kind == "ellipsoid";
            if (!axes || random_.maybe()) lines.push_back(line(any("radius ", "diameter ") + number(1, 900)));
            if (axes && random_.maybe())
                lines.push_back(line(any("majoraxis ", "semimajoraxis ") + number(1, 900)));
            if (axes && (lines.size() < 2 || random_.maybe()))
                lines.push_back(line(any("minoraxis ", "semiminoraxis ") + number(1, 900)));
            if (random_.maybe()) lines.push_back(line("height " + number(1, 900)));
            if (axes && random_.maybe()) lines.push_back(line("anglestart " + number(-50, 400)));
            if (axes && random_.maybe())
                lines.push_back(line(any("angleend ", "angledeg ") + number(1, 350)));
        } else if (kind == "annotation" && random_.maybe()) {
            lines.push_back(point(relative ? "centerxy" : "centerll"));
        }
        const std::vector<std::string> extras{"# inside",
                                              "# back\\",
                                              std::string("# nul \0 x", 9),
                                              "# \xff\xfe \"quoted  words",
                                              "// slashes",
                                              "comment words",
                                              "/one",
                                              "linestyle dashed",
                                              "linestyle dotted",
                                              "outline false",
                                              "extrude true 50",
                                              "altitudemode clamptoground",
                                              "tessellate true",
                                              "lineprojection greatcircle",
                                              "off",
                                              "depthbuffer false",
                                              "verticaldatum egm96",
                                              "priority 3",
                                              "pointsize 4",
                                              "scale 1 2 3",
                                              "orient 45 10",
                                              "3d follow cp",
                                              "3d offsetalt 5",
                                              "3d billboard x",
                                              "timeunits secs",
                                              "innerradius 4",
                                              "foo 1 2",
                                              "altitudeunits m",
                                              "altitudeunits ft",
                                              "altitudeunits kiloyards",
                                              "rangeunits nm",
                                              "rangeunits m",
                                              "rangeunits nautical miles",
                                              "angleunits rad",
                                              "angleunits deg",
                                              "filled",
                                              "filled",
                                              "linecolor red",
                                              "linecolor hex ff00ff80",
                                              "linecolor hex 0x80ff0000",
                                              "linecolor purple",
                                              "fillcolor blue",
                                              "linewidth 3",
                                              "linewidth wide",
                                              "3d name Fence  post",
                                              "3d name \"a  b\" c",
                                              "fontname times.ttf",
                                              "fontsize 12",
                                              "textoutlinecolor green",
                                              "textoutlinethickness thick",
                                              "radius",
                                              "ref 21.3 -158"};
        for (int i = random_.integer(0, 9); i > 0; --i)
            lines.push_back(line(
                extras[static_cast<std::size_t>(random_.integer(0, static_cast<int>(extras.size()) - 1))]));
        for (const std::string& one : lines) text += one + (chance(15) ? eol_ : "");
        return text + line("end");
    }

    RandomShapes& random_;
    std::string eol_;
};

}  // namespace OverlayEditor
