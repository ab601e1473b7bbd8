#include "gdal/ReadDataset.h"

#include <array>
#include <new>
#include <string>

#include <cpl_conv.h>
#include <cpl_string.h>
#include <cpl_vsi.h>

#include "common/Files.h"
#include "common/NumberText.h"
#include "common/Strings.h"
#include "format/Parser.h"

namespace exchange {

namespace ZEL = halCore::ZEL;

namespace {

constexpr std::size_t kMostMessages = 100;

bool hasSuffix(const char* file) {
    return EQUAL(CPLGetExtension(file), "zel");
}

/// Whether the first line that is no comment, no version and not empty opens a block.
bool opensBlock(std::string_view head) {
    head = head.starts_with("\xef\xbb\xbf") ? head.substr(3) : head;
    while (true) {
        const std::size_t end = head.find('\n');
        // A line that is cut off says nothing.
        if (end == std::string_view::npos) return false;
        const std::string line = UTILS::lowerCase(UTILS::trimmed(head.substr(0, end)));
        head.remove_prefix(end + 1);
        const std::string_view word = std::string_view(line).substr(0, line.find_first_of(" \t"));
        if (word == "start") return line == word;
        if (!line.empty() && line[0] != '#' && line[0] != '/' && word != "comment" && word != "version")
            return false;
    }
}

void warn(const char* file, const ZEL::ParseReport& report) {
    for (std::size_t i = 0; i < report.messages.size(); ++i) {
        const ZEL::ParseMessage& message = report.messages[i];
        if (i == kMostMessages) {
            CPLError(CE_Warning, CPLE_AppDefined, "%s: and %u messages more", file,
                     static_cast<unsigned>(report.messageCount() - i));
            return;
        }
        CPLError(CE_Warning, CPLE_AppDefined, "%s:%u: %s", file, static_cast<unsigned>(message.line),
                 message.text.c_str());
    }
}

/// Nothing, with an error, when an option cannot be used.
std::optional<ReadOptions> optionsOf(CSLConstList given) {
    ReadOptions options;
    const char* const layers = CSLFetchNameValueDef(given, "LAYERS", "BY_KIND");
    options.oneLayer = EQUAL(layers, "ALL");
    options.split = CPLTestBool(CSLFetchNameValueDef(given, "SPLIT", "YES"));
    if (const char* const text = CSLFetchNameValue(given, "TOLERANCE")) {
        options.tolerance = UTILS::readNumber(text).value_or(0.0);
        if (!(options.tolerance > 0.0)) {
            CPLError(CE_Failure, CPLE_IllegalArg, "TOLERANCE=%s: metres above 0 are wanted", text);
            return std::nullopt;
        }
    }
    if (const char* const text = CSLFetchNameValue(given, "ABOUT")) {
        options.about = placeOfText(text);
        if (!options.about) {
            CPLError(CE_Failure, CPLE_IllegalArg,
                     "ABOUT=%s: latitude,longitude[,altitude[,heading]] are wanted, in degrees and metres",
                     text);
            return std::nullopt;
        }
    }
    return options;
}

struct FreeBytes {
    void operator()(GByte* bytes) const { VSIFree(bytes); }
};

}  // namespace

int ReadDataset::identify(GDALOpenInfo* info) {
    if (!info->fpL || info->bIsDirectory) return FALSE;
    if (hasSuffix(info->pszFilename)) return TRUE;
    return info->nHeaderBytes > 0 && opensBlock({reinterpret_cast<const char*>(info->pabyHeader),
                                                 static_cast<std::size_t>(info->nHeaderBytes)});
}

GDALDataset* ReadDataset::open(GDALOpenInfo* info) {
    if (!identify(info)) return nullptr;
    const char* const file = info->pszFilename;
    if (info->eAccess == GA_Update) {
        CPLError(CE_Failure, CPLE_NotSupported, "%s: a ZEL file is not updated in place; write a new one",
                 file);
        return nullptr;
    }
    const std::optional<ReadOptions> options = optionsOf(info->papszOpenOptions);
    if (!options) return nullptr;
    GByte* read = nullptr;
    vsi_l_offset size = 0;
    if (!VSIIngestFile(info->fpL, file, &read, &size, static_cast<GIntBig>(UTILS::kMaxFileSize)))
        return nullptr;
    const std::unique_ptr<GByte, FreeBytes> bytes(read);
    try {
        ZEL::Parser::Shapes shapes;
        ZEL::ParseReport report;
        ZEL::Parser().parse({reinterpret_cast<const char*>(read), static_cast<std::size_t>(size)}, shapes,
                            report);
        report.addUnterminatedBlock();
        warn(file, report);
        if (shapes.empty() && !report.messages.empty()) {
            CPLError(CE_Failure, CPLE_OpenFailed, "%s: there is no shape in it", file);
            return nullptr;
        }
        std::vector<ReadShape> taken;
        taken.reserve(shapes.size());
        for (std::size_t i = 0; i < shapes.size(); ++i)
            taken.push_back({std::move(shapes[i]), report.shapeLines[i]});
        auto dataset = std::make_unique<ReadDataset>();
        dataset->SetDescription(file);
        dataset->addLayers_(std::move(taken), *options, file);
        return dataset.release();
    } catch (const std::bad_alloc&) {
        CPLError(CE_Failure, CPLE_OutOfMemory, "%s: there is not enough memory for it", file);
        return nullptr;
    }
}

OGRLayer* ReadDataset::GetLayer(int number) {
    return number < 0 || number >= GetLayerCount() ? nullptr
                                                   : layers_[static_cast<std::size_t>(number)].get();
}

int ReadDataset::TestCapability(const char* capability) {
    return EQUAL(capability, ODsCZGeometries);
}

void ReadDataset::addLayers_(std::vector<ReadShape> shapes, const ReadOptions& options, const char* file) {
    if (options.oneLayer) {
        layers_.push_back(std::make_unique<ReadLayer>(CPLGetBasename(file), ZEL::ShapeType::None,
                                                      std::move(shapes), options));
        return;
    }
    constexpr std::size_t kKinds = static_cast<std::size_t>(ZEL::ShapeType::Orbit) + 1;
    std::array<std::vector<ReadShape>, kKinds> byKind;
    for (ReadShape& read : shapes) {
        auto& kind = byKind[static_cast<std::size_t>(read.shape->shapeType())];
        kind.push_back(std::move(read));
    }
    for (std::size_t i = 0; i < kKinds; ++i) {
        if (byKind[i].empty()) continue;
        const auto kind = static_cast<ZEL::ShapeType>(i);
        const std::string name(ZEL::ZelShape::shapeTypeToString(kind));
        layers_.push_back(std::make_unique<ReadLayer>(name.c_str(), kind, std::move(byKind[i]), options));
    }
}

}  // namespace exchange
