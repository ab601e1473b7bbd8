#include <random>
#include <sstream>

#include <gtest/gtest.h>

#include "support/ZelText.h"

namespace halCore::ZEL {
namespace {

using namespace std::string_literals;

constexpr std::string_view kGood = "start\ncircle\nend\n";

struct Case {
    std::string text;
    std::string messages;
    std::size_t shapes;
};

/// Whatever stands between good blocks, these are read.
TEST(BadInput, hasADefinedOutcome) {
    const Case cases[] = {
        {"", "", 0},
        {"\n\n \t\r\n", "", 0},
        {"\xEF\xBB\xBFstart\ncircle\nend\n", "", 1},
        {"start\r\ncircle\r\nradius 5\r\nend\r\n", "", 1},
        {"start\ncircle\nend", "", 1},
        // A lone CR is white space: the line goes on.
        {"start\rcircle\ncircle\nend\n", "", 1},
        {"start\npolygon\nlla 1 2 0\rlla 3 4 0\nll 1 2\nll 3 4\nend\n", "", 1},
        {"start\ncircle\n\0\0\nend\n"s, "3: Found unknown ZEL command \0\0\n"s, 1},
        {"st\0art\ncircle\nend\n"s,
         "1: token \"st\0art\" detected outside of a valid start/end block\n"
         "2: token \"circle\" detected outside of a valid start/end block\n"
         "3: end command encountered before start\n"s,
         0},
        {"start\ncircle\n3d name \xff\xfe\nend\n", "", 1},
        {"start\ncircle\n3d name \"unclosed quote  to the end\nradius 5\nend\n", "", 1},
        {"start\ncircle\nradius 1e999\nend\n", "1: Invalid radius: 1e999 for circle circle\n", 1},
        {"start\npoints\nlla nan 1 2\nlla 1,5 2 0\nlla 0x10 2 0\nlla 1 2 inf\nend\n", "", 1},
        {"start\nstart\nend\nend\n",
         "2: nested start command not allowed\n"
         "3: end command encountered before recognized ZEL shape type keyword\n"
         "4: end command encountered before start\n",
         0},
    };
    for (const Case& test : cases) {
        const Parsed result = parsed(test.text);
        EXPECT_EQ(messages(result.report), test.messages) << test.text;
        EXPECT_EQ(result.shapes.size(), test.shapes) << test.text;

        // The same from a stream, and among good blocks.
        Parser::Shapes shapes;
        ParseReport report;
        std::istringstream stream(test.text);
        Parser().parse(stream, shapes, report);
        EXPECT_EQ(messages(report), test.messages) << test.text;
        EXPECT_EQ(shapes.size(), test.shapes) << test.text;
        const std::string among = test.text + "\n" + std::string(kGood);
        EXPECT_EQ(parsed(among).shapes.size(), test.shapes + 1) << test.text;
    }
}

TEST(BadInput, badPointsAreLeftOutAndBadAltitudesAreZero) {
    EXPECT_EQ(rewritten("start\npoints\nlla nan 1 2\nlla 1,5 2 0\nlla 0x10 2 0\nlla 1 2 inf\nend\n"),
              "start\npoints\nlla 1 2 0\nend\n");
}

/// Numbers at the edges of a double's range stay what they are when they are written and read again.
TEST(BadInput, extremeNumbers) {
    const std::string text =
        "start\ncircle\nradius 1e300\n3d offsetalt 1e-251\nscale 1e-249 -1e299 0.000001\nend\n";
    EXPECT_EQ(rewritten(text),
              "start\ncircle\nradius 1e+300\n3d offsetalt 0\nscale 1e-249 -1e+299 1e-06\nend\n");
    EXPECT_EQ(rewritten(rewritten(text)), rewritten(text));
    EXPECT_EQ(messages(parsed("start\nellipse\nsemimajoraxis 9e299\nend\n").report),
              "1: Invalid majoraxis: 1.8e+300 for ellipse ellipse\n");
}

/// The stream is read in blocks: a line may lie across any of their borders.
TEST(Streams, blocksDoNotShow) {
    std::string text;
    for (int i = 0; i < 5000; ++i)
        text += "start\nline\nlla 1." + std::to_string(i) + " 2 3\nlla 4 5 6\n3d name Line number " +
                std::to_string(i) + "\nend\n";
    std::istringstream stream(text);
    Parser::Shapes shapes;
    ParseReport report;
    Parser().parse(stream, shapes, report);
    EXPECT_EQ(messages(report), "");
    std::string fromStream;
    for (const auto& shape : shapes) fromStream += written(*shape);
    EXPECT_EQ(fromStream, rewritten(text));
    EXPECT_EQ(shapes.size(), 5000u);
    EXPECT_TRUE(stream.eof());
}

/// One character at a time, from a stream that throws at its end.
TEST(Streams, thatThrowJustEnd) {
    class Drip : public std::streambuf {
      public:
        explicit Drip(std::string text) : text_(std::move(text)) {}

      protected:
        int_type underflow() override {
            if (next_ == text_.size()) return traits_type::eof();
            current_ = text_[next_++];
            setg(&current_, &current_, &current_ + 1);
            return traits_type::to_int_type(current_);
        }

      private:
        std::string text_;
        std::size_t next_ = 0;
        char current_ = 0;
    };
    Drip drip("start\ncircle\nend\nstart\npoints\nll 1 2\nend");
    std::istream stream(&drip);
    stream.exceptions(std::ios::badbit | std::ios::failbit | std::ios::eofbit);
    Parser::Shapes shapes;
    Parser().parse(stream, shapes);
    EXPECT_EQ(shapes.size(), 2u);
}

std::string repeated(std::string_view part, std::size_t count) {
    std::string text;
    text.reserve(part.size() * count);
    for (std::size_t i = 0; i < count; ++i) text += part;
    return text;
}

/// Four megabytes of the same again and again: anything quadratic would not come to its end here. Every part
/// leaves a good block behind it readable.
TEST(Repetition, isReadToItsEnd) {
    const std::pair<std::string, std::string> parts[] = {
        {"start\n", ""},
        {"start\nline\n", ""},
        {"start\ncircle\nend\n", ""},
        {"ll 1 2\n", "start\npoints\n"},
        {"ll x y\n", "start\npoints\n"},
        {"# comment\n", "start\npoints\n"},
        {"radius 5\n", "start\ncircle\n"},
        {"altitudeunits feet\n", "start\ncircle\n"},
        {"x", ""},
        {"a b ", "start\nannotation "},
        {"_ \\n", "start\nannotation "},
        {"\" ", "start\n3d name "},
        {"1", "start\ncircle\nradius "},
    };
    for (const auto& [part, begin] : parts) {
        const std::size_t count = (std::size_t{1} << 22) / part.size();
        const Parsed result =
            parsed(begin + repeated(part, count) + "\nend\nend\nstart\nsphere\nradius 1\nend\n");
        ASSERT_FALSE(result.shapes.empty()) << part;
        EXPECT_EQ(result.shapes.back()->shapeType(), ShapeType::Sphere) << part;
    }
}

TEST(Samples, areReadWithoutAMessageAndStayTheSame) {
    for (const auto& [name, blocks] :
         {std::pair("countries-110m.zel", 286u), {"coast-110m.zel", 126u}, {"keywords.zel", 19u}}) {
        const std::string text = sample(name);
        const Parsed result = parsed(text);
        EXPECT_EQ(messages(result.report), "");
        EXPECT_EQ(result.shapes.size(), blocks);
        const std::string once = rewritten(text);
        EXPECT_EQ(rewritten(once), once);
        EXPECT_EQ(once.find("3d name Côte d'Ivoire\n") != std::string::npos, blocks == 286u);
    }
}

}  // namespace
}  // namespace halCore::ZEL
