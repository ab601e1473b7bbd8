#include "format/Annotation.h"

#include "format/LabelText.h"
#include "format/OptionalField.h"
#include "format/TextWriter.h"

namespace halCore::ZEL {
namespace {

std::string_view keywordOf(OutlineThickness thickness) {
    switch (thickness) {
        case OutlineThickness::Thin:
            return "thin";
        case OutlineThickness::Thick:
            return "thick";
        case OutlineThickness::None:
            break;
    }
    return "none";
}

}  // namespace

void Annotation::setLabel(std::string_view label) {
    setName(label);
    setText(textFromLabel(label));
}

std::string Annotation::label() const {
    std::string name;
    if (!text_) return getName(name) == 0 ? name : std::string();
    return getName(name) == 0 ? labelFromTextAndName(*text_, name) : labelFromText(*text_);
}

int Annotation::getPosition(Vec3& out) const {
    return getField(position_, out, Vec3());
}
int Annotation::getText(std::string& out) const {
    return getField(text_, out, std::string());
}
int Annotation::getFontName(std::string& out) const {
    return getField(fontName_, out, "arial.ttf");
}
int Annotation::getTextSize(int& out) const {
    return getField(textSize_, out, 15);
}
int Annotation::getTextColor(Color& out) const {
    return getField(textColor_, out, Color());
}
int Annotation::getOutlineColor(Color& out) const {
    return getField(outlineColor_, out, Color(0, 0, 0, 255));
}
int Annotation::getOutlineThickness(OutlineThickness& out) const {
    return getField(outlineThickness_, out, OutlineThickness::None);
}
int Annotation::getIconFile(std::string& out) const {
    return getField(iconFile_, out, std::string());
}
int Annotation::getPriority(double& out) const {
    return getField(priority_, out, 0.0);
}

void Annotation::serializeToStream_(std::ostream& out) const {
    TextWriter writer(out);
    writer.text("annotation ").text(textFromLabel(text_.value_or(std::string()))).endLine();
    if (position_) serializePoints_(writer, {&*position_, 1});
    if (fontName_) {
        // A line without a font name is allowed, but means nothing.
        const std::string fontName = nameInLine(*fontName_);
        if (!fontName.empty()) writer.text("fontname ").text(fontName).endLine();
    }
    if (textSize_) writer.text("fontsize ").integer(*textSize_).endLine();
    if (textColor_) writer.text("linecolor hex ").color(*textColor_).endLine();
    if (outlineColor_) writer.text("textoutlinecolor hex ").color(*outlineColor_).endLine();
    if (outlineThickness_) writer.text("textoutlinethickness ").text(keywordOf(*outlineThickness_)).endLine();
    if (priority_) writer.text("priority ").number(*priority_).endLine();
}

}  // namespace halCore::ZEL
