#include <chrono>
#include <filesystem>
#include <new>
#include <sstream>
#include <utility>

#include "common/Files.h"
#include "common/Notify.h"
#include "common/NumberText.h"
#include "common/Strings.h"
#include "format/Parser.h"
#include "format/TextBuffer.h"
#include "model/Document.h"
#include "model/FileDisplays.h"
#include "model/Utils.h"
#include "pi/PIHALVIS.h"

namespace OverlayEditor {

namespace {

constexpr const char* kSuffix = ".zel";

/// Whether two texts are of the same shapes; line ends and the like do not count.
bool sameShapes(std::string_view a, std::string_view b) {
    const auto canonical = [](std::string_view text) {
        halCore::ZEL::Parser::Shapes shapes;
        halCore::ZEL::ParseReport report;
        halCore::ZEL::Parser().parse(text, shapes, report);
        const auto buffer = TextBuffer::take();
        buffer->out().precision(UTILS::kSignificantDigits);
        for (const auto& shape : shapes) shape->serializeToStream(buffer->out());
        return buffer->text();
    };
    return a == b || canonical(a) == canonical(b);
}

}  // namespace

double Document::Reading::part() const {
    constexpr double textsPart = 0.3;
    if (text) return textsPart * text->part();
    const std::size_t all = loaded.shapes.size();
    const std::size_t done = staged ? staged->next + staged->displayed : 0;
    return textsPart +
           (1.0 - textsPart) * (all > 0 ? static_cast<double>(done) / static_cast<double>(2 * all) : 1.0);
}

bool Document::Reading::isOn(unsigned long platformId) const {
    return platformId != 0 && platformId == (staged ? staged->overlay.attachedPlatformId() : platform);
}

Document::Reading Document::begin(std::string text, const std::string& fileName, void* zel,
                                  const TextPart* part) const {
    Reading reading;
    reading.fileName = fileName;
    reading.zel = zel;
    reading.platform = zel ? PIHALVIS::getZELHost(zel) : 0;
    const auto reference = Attachment::findDefaultRefLla(reading.platform);
    // The editor's own goes when something is loaded.
    if (attachment_.isReferencePlatform(reading.platform)) reading.platform = 0;
    reading.seesReference = reference.has_value();
    reading.converter = std::make_unique<PointConverter>();
    reading.converter->setReferenceLla(reference.value_or(halCore::Vec3()), reading.platform);
    reading.text = std::make_unique<OverlayReading>(std::move(text), fileName, preferences_,
                                                    reading.converter.get(), 0, part);
    reading.isPart = part != nullptr;
    return reading;
}

bool Document::readOn_(Reading& reading, Slice& slice) const {
    if (!reading.text) return true;
    if (!reading.text->goOn(slice)) return false;
    LoadResult& loaded = reading.loaded;
    loaded = reading.text->take();
    reading.text.reset();
    const std::string& fileName = reading.fileName;
    if (loaded.error.empty()) {
        if (!reading.isPart) loaded.tell(fileName);
        if (reading.isElsewhere)
            halNotify::notify(halNotify::Warning)
                << fileName
                << " holds something else than the host shows of it: that is edited, and the file "
                << "will be copied before it is replaced";
    } else if (!UTILS::equalsIgnoringCase(std::filesystem::path(fileName).extension().native(), kSuffix))
        halNotify::notify(halNotify::Error)
            << "Not loaded: " << fileName
            << " is no ZEL file, and the editor edits no others. What is edited stays";
    else
        halNotify::notify(halNotify::Error)
            << "Not loaded: " << fileName << ": " << loaded.error << ". What is edited stays";
    return true;
}

bool Document::goOn(Reading& reading, Slice& slice) {
    try {
        if (!readOn_(reading, slice)) return false;
        return !reading.loaded.error.empty() || stage_(reading, slice);
    } catch (const std::bad_alloc&) {
        reading.text.reset();
        reading.staged.reset();
        reading.loaded = {};
        reading.loaded.error = "not enough memory";
        halNotify::notify(halNotify::Error)
            << "Not loaded: " << reading.fileName << ": " << reading.loaded.error << ". What is edited stays";
    }
    return true;
}

Document::Reading Document::readWhole_(Reading reading) const {
    Slice whole;
    readOn_(reading, whole);
    return reading;
}

Document::Reading Document::beginFile(const std::string& fileName) const {
    std::string error;
    try {
        std::string text;
        FileVersion version = FileVersion::read(fileName, text, error);
        if (error.empty()) {
            // A file that the host displays is edited in its place, so that it is not drawn twice.
            Reading reading = begin(std::move(text), fileName, displayOf(fileName));
            reading.version = std::move(version);
            return reading;
        }
    } catch (const std::bad_alloc&) {
        error = "not enough memory";
    }
    halNotify::notify(halNotify::Error)
        << "Not loaded: " << fileName << ": " << error << ". What is edited stays";
    Reading reading;
    reading.loaded.error = std::move(error);
    return reading;
}

Document::Reading Document::beginOverlay(void* zel) const {
    const std::string fileName = PIHALVIS::getZELFilename(zel);
    std::ostringstream text;
    if (PIHALVIS::serializeZELToStream(zel, text) != 0) {
        Reading reading;
        reading.loaded.error = "the host gave no text of it";
        halNotify::notify(halNotify::Error) << "Not loaded: " << (fileName.empty() ? "the overlay" : fileName)
                                            << ": " << reading.loaded.error << ". What is edited stays";
        return reading;
    }
    // A file that says the same says it in its own words.
    std::string inFile;
    const bool hasFile = UTILS::readFile(fileName, inFile).empty();
    const bool isSame = hasFile && sameShapes(text.view(), inFile);
    FileVersion version(fileName, inFile);
    Reading reading = begin(isSame ? std::move(inFile) : std::move(text).str(), fileName, zel);
    if (isSame) reading.version = std::move(version);
    reading.isElsewhere = hasFile && !isSame;
    return reading;
}

bool Document::stage_(Reading& reading, Slice& slice) {
    const LoadResult& loaded = reading.loaded;
    if (!reading.staged) {
        reading.staged = std::make_unique<Staged>();
        Attachment& attachment = reading.staged->attachment;
        halCore::Vec3 reference;
        reading.converter->getReferenceLla(reference);
        if (reading.platform != 0 || (!loaded.fromNowhere && !loaded.reference)) {
            attachment.take(std::move(reading.converter), reference, reading.platform);
        } else {
            if (loaded.fromNowhere && reading.seesReference)
                warnOfAssumedReference_(reading.fileName, reference);
            attachment.takeReference(std::move(reading.converter),
                                     loaded.fromNowhere ? reference : *loaded.reference, !loaded.fromNowhere);
        }
        reading.staged->overlay.restoreSource(loaded.source);
        reading.staged->overlay.setNextNumber(overlay_.reserveNumbers(loaded.shapes.size()));
    }
    Staged& staged = *reading.staged;
    constexpr std::size_t units = 20;
    constexpr std::size_t pointsOfAUnit = 10;
    const auto unitsOf = [](const Shape& shape) { return units + shape.placed().size() / pointsOfAUnit; };
    ShapeWriter writer = staged.overlay.writer();
    while (staged.next < loaded.shapes.size()) {
        Shape* const shape = reading.loaded.shapes[staged.next++].release();
        // Beside offsets, places stay places.
        if (!shape->placed().frame()) shape->keepPlaces();
        staged.overlay.addInactive(shape);
        staged.overlay.adoptLast(writer);
        if (history_.keeps()) staged.states.append(staged.overlay.numberOf(shape), shape->state());
        if (slice.isOver(unitsOf(*shape))) return false;
    }
    if (!editing_) return true;
    // The host draws a frame whenever it displays more: so that comes last, and nothing else beside it.
    if (staged.displayed == 0) staged.toDisplay = staged.overlay.shapes();
    while (staged.displayed < staged.toDisplay.size()) {
        Shape& shape = *staged.toDisplay[staged.displayed++];
        shape.setActive(true);
        if (slice.isOver(unitsOf(shape))) break;
    }
    return staged.displayed == staged.toDisplay.size();
}

bool Document::take(Reading reading) {
    Slice whole;
    goOn(reading, whole);
    if (!reading.loaded.error.empty()) return false;
    Staged& staged = *reading.staged;
    history_.commit();
    history_.switchFile(
        fileState_(),
        "load " + (reading.fileName.empty() ? "shapes"
                                            : std::filesystem::path(reading.fileName).filename().string()));
    // Should memory run out, part of one file is not saved as another.
    file_.name.clear();
    file_.known = {};
    file_.awaited.clear();
    showPriorZEL_();
    // The dialog may have been closed, or opened, meanwhile.
    for (Shape* const shape : staged.overlay.shapes())
        if (shape->active() != editing_) shape->setActive(editing_);
    overlay_.exchange(staged.overlay);
    attachment_.exchange(staged.attachment);
    if (history_.keeps()) history_.exchange(std::move(staged.states));
    overlay_.setZelId(reading.zel);
    if (reading.zel && editing_) PIHALVIS::showZELFile(reading.zel, false);
    file_.name = std::move(reading.fileName);
    file_.known = std::move(reading.version);
    keep_();
    showKeptBlocks_();
    overlay_.deleteShapes(staged.overlay);
    return true;
}

void Document::drop(Reading reading) {
    reading.text.reset();
    reading.loaded.shapes.clear();
    if (reading.staged) overlay_.deleteShapes(reading.staged->overlay);
}

void Document::warnOfAssumedReference_(const std::string& fileName, const halCore::Vec3& lla) const {
    const auto& units = *preferences_.unitsProvider();
    halNotify::notify(halNotify::Warning)
        << fileName << " has offsets and no reference of its own: they are taken to count from "
        << units.formatLatitude(lla.lat()) << ' ' << units.formatLongitude(lla.lon())
        << " until the overlay is attached to a platform";
}

void Document::showPriorZEL_() {
    void* const zel = overlay_.zelId();
    if (!zel) return;
    overlay_.setZelId(nullptr);
    PIHALVIS::showZELFile(zel, true);
}

void Document::cleanupPriorZEL_() {
    overlay_.setAttachedPlatformId(0, nullptr, false);
    showPriorZEL_();
    attachment_.release();
}

}  // namespace OverlayEditor
