#include "gdal/WriteDataset.h"

#include <new>

#include <cpl_string.h>
#include <cpl_vsi.h>

#include "common/Files.h"
#include "common/NumberText.h"
#include "common/SaveFile.h"
#include "format/TextBuffer.h"

namespace exchange {
namespace {

constexpr std::size_t kMostNotes = 30;

bool isVirtual(const std::string& file) {
    return file.starts_with("/vsi");
}

/// Files of GDAL's own kinds (in memory, in archives, standard output) are written as they come.
std::string saveVirtually(const std::string& file, const std::string& text) {
    VSILFILE* const out = VSIFOpenL(file.c_str(), "wb");
    if (!out) return "it cannot be opened";
    const bool written = VSIFWriteL(text.data(), 1, text.size(), out) == text.size();
    return VSIFCloseL(out) == 0 && written ? "" : "it could not be written";
}

}  // namespace

WriteDataset::~WriteDataset() {
    save_();
    layers_.clear();
    if (notes_ > kMostNotes)
        CPLError(CE_Warning, CPLE_AppDefined, "%s: and %u messages more", GetDescription(),
                 static_cast<unsigned>(notes_ - kMostNotes));
}

GDALDataset* WriteDataset::create(const char* file, int, int, int bands, GDALDataType, char**) {
    if (bands > 0) {
        CPLError(CE_Failure, CPLE_NotSupported, "A ZEL file holds shapes, no raster");
        return nullptr;
    }
    VSIStatBufL status;
    if (!isVirtual(file) && VSIStatL(UTILS::directoryOf(file).c_str(), &status) != 0) {
        CPLError(CE_Failure, CPLE_OpenFailed, "%s: there is no such directory", file);
        return nullptr;
    }
    return new WriteDataset(file);
}

OGRLayer* WriteDataset::GetLayer(int number) {
    return number < 0 || number >= GetLayerCount() ? nullptr
                                                   : layers_[static_cast<std::size_t>(number)].get();
}

int WriteDataset::TestCapability(const char* capability) {
    return EQUAL(capability, ODsCCreateLayer) || EQUAL(capability, ODsCZGeometries) ||
           EQUAL(capability, ODsCRandomLayerWrite);
}

OGRLayer* WriteDataset::ICreateLayer(const char* name, OGRSpatialReference* reference,
                                     OGRwkbGeometryType type, char**) {
    return layers_.emplace_back(std::make_unique<WriteLayer>(*this, name, reference, type)).get();
}

void WriteDataset::add(halCore::ZEL::ZelShapePtr shape) {
    shapes_.push_back(std::move(shape));
    saved_ = false;
}

void WriteDataset::note(const std::string& text) {
    if (++notes_ <= kMostNotes)
        CPLError(CE_Warning, CPLE_AppDefined, "%s: %s", GetDescription(), text.c_str());
}

bool WriteDataset::save_() {
    if (saved_) return true;
    const std::string file = GetDescription();
    std::string problem;
    try {
        const auto buffer = OverlayEditor::TextBuffer::take();
        std::ostream& out = buffer->out();
        out.precision(UTILS::kSignificantDigits);
        out << "version 2\n\n";
        for (const halCore::ZEL::ZelShapePtr& shape : shapes_) {
            shape->serializeToStream(out);
            out << '\n';
        }
        problem =
            isVirtual(file) ? saveVirtually(file, buffer->text()) : UTILS::saveFile(file, buffer->text());
    } catch (const std::bad_alloc&) {
        problem = "not enough memory";
    }
    if (problem.empty())
        saved_ = true;
    else
        CPLError(CE_Failure, CPLE_FileIO, "%s: %s", file.c_str(), problem.c_str());
    return problem.empty();
}

}  // namespace exchange
