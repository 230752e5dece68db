#include "app/Picturefiles.h"

#include <cctype>
#include <stdexcept>

#include "files/Atomicwrite.h"
#include "response/SvgCanvas.h"

namespace nerivane {
namespace {

constexpr double PrintRatio = 2.0;
constexpr Rgb Paper{255, 255, 255};

bool EndsWith(const std::string& text, const std::string& ending) {
    if (text.size() < ending.size()) return false;
    for (std::size_t i = 0; i < ending.size(); ++i) {
        const char c = text[text.size() - ending.size() + i];
        if (std::tolower(static_cast<unsigned char>(c)) != ending[i]) return false;
    }
    return true;
}

void WriteSchematicFile(const std::string& path, std::string_view bytes) {
    std::string reason;
    if (!WriteFileAtomically(path, bytes, &reason))
        throw std::runtime_error("Cannot write the schematic file \"" + path + "\": " + reason +
                                 ".");
}

}  // namespace

bool IsPlotFileName(const std::string& path) {
    return EndsWith(path, ".png") || EndsWith(path, ".bmp") || IsVectorPlotFileName(path);
}

bool IsVectorPlotFileName(const std::string& path) {
    return EndsWith(path, ".svg") || IsPdfFileName(path);
}

bool IsPdfFileName(const std::string& path) {
    return EndsWith(path, ".pdf");
}

bool IsSchematicFileName(const std::string& path) {
    return EndsWith(path, ".svg") || EndsWith(path, ".png");
}

ImageFormat PlotFileFormat(const std::string& path) {
    return EndsWith(path, ".bmp") ? ImageFormat::Bmp : ImageFormat::Png;
}

void WritePictureFile(const std::string& path, std::string_view bytes) {
    std::string reason = "the image could not be encoded";
    if (bytes.empty() || !WriteFileAtomically(path, bytes, &reason))
        throw std::runtime_error("Cannot write the image file \"" + path + "\": " + reason + ".");
}

std::string SchematicSvg(const Schematic& schematic) {
    const TextSize size = SchematicSize(schematic);
    return SvgDocument(size.width, size.height,
                       [&schematic](Canvas& canvas) { DrawSchematic(canvas, schematic); });
}

void SaveSchematic(const Schematic& schematic, const std::string& path,
                   const RasterMaker& makeRaster) {
    if (EndsWith(path, ".svg")) return WriteSchematicFile(path, SchematicSvg(schematic));
    if (!EndsWith(path, ".png"))
        throw std::runtime_error("The schematic file \"" + path + "\" must end in .svg or .png.");
    const TextSize size = SchematicSize(schematic);
    const std::unique_ptr<Raster> raster =
        makeRaster({size.width, size.height, PrintRatio, Paper, true});
    DrawSchematic(*raster->NewCanvas(), schematic);
    const std::string bytes = raster->Encode(ImageFormat::Png);
    if (bytes.empty()) throw std::runtime_error("Cannot draw the schematic for \"" + path + "\".");
    WriteSchematicFile(path, bytes);
}

}  // namespace nerivane
