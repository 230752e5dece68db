#include "cli/Rasterplugin.h"

#include <dlfcn.h>

#include <filesystem>
#include <stdexcept>
#include <string>
#include <vector>

namespace nerivane::cli {
namespace {

constexpr const char* PluginName = "libnerivane-raster.so";
using MakeRaster = Raster* (*)(const RasterSpec*);
using MakePdfPage = PdfPage* (*)(int, int, const PdfWriter*);

// Beside the program in the build, in lib/nerivane under an installed one, and wherever the
// loader's own search (the program's run path) finds it.
std::vector<std::string> PluginCandidates() {
    std::vector<std::string> candidates;
    std::error_code error;
    const std::filesystem::path program = std::filesystem::read_symlink("/proc/self/exe", error);
    if (!error) {
        const std::filesystem::path folder = program.parent_path();
        candidates.push_back((folder / PluginName).string());
        candidates.push_back((folder.parent_path() / "lib" / "nerivane" / PluginName).string());
    }
    candidates.push_back(PluginName);
    return candidates;
}

struct PluginEntries {
    MakeRaster makeRaster;
    MakePdfPage makePdfPage;
};

PluginEntries LoadEntries() {
    std::string reasons;
    for (const std::string& candidate : PluginCandidates()) {
        // Kept open for the life of the process: the rasters it makes live in its code.
        void* plugin = dlopen(candidate.c_str(), RTLD_NOW | RTLD_LOCAL);
        if (plugin == nullptr) {
            reasons += std::string("\n  ") + dlerror();
            continue;
        }
        void* raster = dlsym(plugin, "NerivaneMakeRaster");
        void* pdf = dlsym(plugin, "NerivaneMakePdfPage");
        if (raster != nullptr && pdf != nullptr)
            return {reinterpret_cast<MakeRaster>(raster), reinterpret_cast<MakePdfPage>(pdf)};
        reasons += "\n  " + candidate + ": no raster entry point";
    }
    throw std::runtime_error("Cannot open the picture renderer " + std::string(PluginName) + ":" +
                             reasons);
}

const PluginEntries& Entries() {
    static const PluginEntries entries = LoadEntries();
    return entries;
}

}  // namespace

void LoadRasterPlugin() {
    Entries();
}

std::unique_ptr<Raster> MakePluginRaster(const RasterSpec& spec) {
    return std::unique_ptr<Raster>(Entries().makeRaster(&spec));
}

std::unique_ptr<PdfPage> MakePluginPdfPage(int width, int height, const PdfWriter& write) {
    std::unique_ptr<PdfPage> page(Entries().makePdfPage(width, height, &write));
    if (!page) throw std::runtime_error("The picture renderer cannot make a PDF page.");
    return page;
}

}  // namespace nerivane::cli
