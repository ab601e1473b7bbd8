#include "cli/EditedText.h"

#include <algorithm>
#include <istream>
#include <memory>
#include <utility>

#include "cli/Pieces.h"
#include "cli/TextView.h"
#include "format/Parser.h"
#include "model/Document.h"

namespace cli {
namespace {

namespace ZEL = halCore::ZEL;
using OverlayEditor::TextOffsets;
using OverlayEditor::TextPart;

/// What must be known of the whole text before the first part is edited.
struct Survey {
    ZEL::ParseReport report;
    TextOffsets offsets;
};

Survey survey(std::string_view text) {
    Survey all;
    TextView view(text);
    std::istream stream(&view);
    readInPieces(stream, [&all](std::istream& piece, std::size_t linesBefore) -> FinishPiece {
        const auto part = std::make_shared<Survey>();
        part->report.linesBefore = linesBefore;
        ZEL::Parser::Shapes shapes;
        ZEL::Parser().parse(piece, shapes, part->report);
        for (const auto& shape : shapes) part->offsets.note(*shape);
        return [&all, part] {
            all.report.append(std::move(part->report));
            all.offsets.append(part->offsets);
        };
    });
    return all;
}

}  // namespace

Edited editText(std::string text, const std::string& name, bool anew,
                const std::function<void(std::string_view)>& write, std::size_t part) {
    using OverlayEditor::Document;
    const OverlayEditor::Preferences preferences;
    Edited edited;
    // \return what is to be said of it
    const auto edit = [&](std::string piece, const TextPart* of) {
        OverlayEditor::Overlay overlay;
        Document document(preferences, overlay);
        document.history().keepNothing();
        Document::Reading reading = document.read(std::move(piece), name, nullptr, of);
        OverlayEditor::LoadRemarks remarks = reading.loaded;
        edited.error = reading.loaded.error;
        if (!edited.error.empty()) {
            // What cannot be loaded is not saved either.
            write(reading.loaded.source->text());
            return remarks;
        }
        document.take(std::move(reading));
        OverlayEditor::Overlay::Losses lost;
        write(anew && !overlay.shapes().empty() ? overlay.textAnew(lost) : document.text());
        for (ZEL::ParseMessage& message : lost) edited.lost.tell(std::move(message));
        edited.shapes += overlay.shapes().size();
        return remarks;
    };

    std::size_t size = firstPiece(text, part);
    if (size == text.size()) {
        edit(std::move(text), nullptr);
        return edited;
    }
    const Survey whole = survey(text);
    OverlayEditor::tellMessages(whole.report, name);
    TextPart of{.lineEnd = ZEL::SourceText::lineEndOf(text), .offsets = whole.offsets};
    OverlayEditor::LoadRemarks remarks;
    for (std::string_view rest(text); !rest.empty(); rest.remove_prefix(size)) {
        size = firstPiece(rest, part);
        const std::string_view piece = rest.substr(0, size);
        remarks.append(edit(std::string(piece), &of));
        of.linesBefore += static_cast<std::size_t>(std::ranges::count(piece, '\n'));
        of.leftOutBefore = remarks.leftOut;
    }
    remarks.tellLeftOut(name);
    if (whole.report.shapes == 0 && (whole.report.blocks > 0 || !whole.report.messages.empty()))
        edited.error = OverlayEditor::kNoShapes;
    else
        remarks.tell(name);
    return edited;
}

}  // namespace cli
