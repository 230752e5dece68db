#include "response/Requirementmask.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>
#include <map>

#include "numerics/Sivalue.h"

namespace nerivane {
namespace {

constexpr double Infinity = std::numeric_limits<double>::infinity();

bool IsTwoSided(MaskKind kind) {
    return kind == MaskKind::BandPass || kind == MaskKind::Notch;
}

std::string Frequency(double hz) {
    return SiText(hz, 9, "");
}

// The shortest text that reads back as the same number.
std::string Decibels(double x) {
    std::array<char, 32> buffer{};
    const auto written = std::to_chars(buffer.data(), buffer.data() + buffer.size(), x);
    return std::string(buffer.data(), written.ptr);
}

}  // namespace

const char* MaskKindName(MaskKind kind) {
    switch (kind) {
        case MaskKind::HighPass: return "high pass";
        case MaskKind::BandPass: return "band pass";
        case MaskKind::Notch: return "notch";
        case MaskKind::LowPass: break;
    }
    return "low pass";
}

MaskKind MaskKindOf(Topology topology) {
    switch (topology) {
        case Topology::VcvsHighPass:
        case Topology::MfbHighPass: return MaskKind::HighPass;
        case Topology::VcvsBandPass:
        case Topology::MfbBandPass: return MaskKind::BandPass;
        case Topology::VcvsNotch: return MaskKind::Notch;
        default: return MaskKind::LowPass;
    }
}

ParsedMask ParseMask(std::string_view text) {
    std::map<std::string, double, std::less<>> values;
    static constexpr std::string_view Keys[] = {"fp",  "fs", "fp1", "fp2", "fs1",
                                                "fs2", "f0", "ap",  "as"};
    std::size_t start = 0;
    while (start <= text.size()) {
        const std::size_t comma = std::min(text.find(',', start), text.size());
        const std::string_view item = text.substr(start, comma - start);
        start = comma + 1;
        const std::size_t equals = item.find('=');
        const std::string_view key = item.substr(0, std::min(equals, item.size()));
        if (std::find(std::begin(Keys), std::end(Keys), key) == std::end(Keys))
            return {std::nullopt, "\"" + std::string(item) +
                                      "\" is not one of fp, fs, fp1, fp2, fs1, fs2, f0, ap, as "
                                      "with a value"};
        if (equals == std::string_view::npos || values.count(key))
            return {std::nullopt,
                    "\"" + std::string(key) + "\" needs one value (" + std::string(key) + "=...)"};
        const bool decibels = key == "ap" || key == "as";
        const std::optional<double> value =
            ParseSiValue(item.substr(equals + 1), decibels ? "dB" : "Hz");
        if (!value || !std::isfinite(*value))
            return {std::nullopt, "\"" + std::string(item.substr(equals + 1)) +
                                      "\" is not a number for " + std::string(key)};
        values.emplace(std::string(key), *value);
    }
    const auto has = [&](const char* key) { return values.count(key) > 0; };
    if (!has("ap") || !has("as")) return {std::nullopt, "both ap and as are needed"};
    RequirementMask mask;
    mask.passDb = values["ap"];
    mask.stopDb = values["as"];
    const bool oneSided = has("fp") && has("fs") && !has("fp1") && !has("fp2") && !has("fs1") &&
                          !has("fs2") && !has("f0");
    const bool twoSided =
        !has("fp") && !has("fs") && has("fp1") && has("fp2") && has("fs1") && has("fs2");
    if (oneSided) {
        mask.passEdgesHz = {values["fp"], 0.0};
        mask.stopEdgesHz = {values["fs"], 0.0};
        mask.kind = values["fp"] > values["fs"] ? MaskKind::HighPass : MaskKind::LowPass;
    } else if (twoSided) {
        mask.passEdgesHz = {values["fp1"], values["fp2"]};
        mask.stopEdgesHz = {values["fs1"], values["fs2"]};
        mask.centreHz = has("f0") ? values["f0"] : 0.0;
        mask.kind = values["fs1"] < values["fp1"] ? MaskKind::BandPass : MaskKind::Notch;
    } else {
        return {std::nullopt,
                "give fp and fs (low or high pass) or fp1, fp2, fs1 and fs2 (band pass or "
                "notch, with f0 if wanted)"};
    }
    std::string problem = MaskProblem(mask);
    if (!problem.empty()) return {std::nullopt, problem};
    return {mask, {}};
}

std::string MaskText(const RequirementMask& mask) {
    std::string text;
    if (IsTwoSided(mask.kind)) {
        text = "fp1=" + Frequency(mask.passEdgesHz[0]) + ",fp2=" + Frequency(mask.passEdgesHz[1]) +
               ",fs1=" + Frequency(mask.stopEdgesHz[0]) + ",fs2=" + Frequency(mask.stopEdgesHz[1]);
        if (mask.centreHz > 0.0) text += ",f0=" + Frequency(mask.centreHz);
    } else {
        text = "fp=" + Frequency(mask.passEdgesHz[0]) + ",fs=" + Frequency(mask.stopEdgesHz[0]);
    }
    return text + ",ap=" + Decibels(mask.passDb) + ",as=" + Decibels(mask.stopDb);
}

std::string MaskProblem(const RequirementMask& mask) {
    const auto positive = [](double x) { return x > 0.0 && std::isfinite(x); };
    if (!positive(mask.passDb)) return "ap must be a positive number of dB";
    if (!(mask.stopDb > mask.passDb) || !std::isfinite(mask.stopDb))
        return "as must be larger than ap";
    const double fp1 = mask.passEdgesHz[0], fp2 = mask.passEdgesHz[1];
    const double fs1 = mask.stopEdgesHz[0], fs2 = mask.stopEdgesHz[1];
    switch (mask.kind) {
        case MaskKind::LowPass:
            if (!positive(fp1) || !(fs1 > fp1) || !std::isfinite(fs1))
                return "a low pass needs 0 < fp < fs";
            break;
        case MaskKind::HighPass:
            if (!positive(fs1) || !(fp1 > fs1) || !std::isfinite(fp1))
                return "a high pass needs 0 < fs < fp";
            break;
        case MaskKind::BandPass:
            if (!positive(fs1) || !(fp1 > fs1) || !(fp2 > fp1) || !(fs2 > fp2) ||
                !std::isfinite(fs2))
                return "a band pass needs 0 < fs1 < fp1 < fp2 < fs2";
            break;
        case MaskKind::Notch:
            if (!positive(fp1) || !(fs1 > fp1) || !(fs2 > fs1) || !(fp2 > fs2) ||
                !std::isfinite(fp2))
                return "a notch needs 0 < fp1 < fs1 < fs2 < fp2";
            break;
    }
    if (IsTwoSided(mask.kind) && mask.centreHz != 0.0) {
        const double low = mask.kind == MaskKind::BandPass ? fp1 : fs1;
        const double high = mask.kind == MaskKind::BandPass ? fp2 : fs2;
        if (!(mask.centreHz > low && mask.centreHz < high))
            return mask.kind == MaskKind::BandPass ? "f0 must lie between fp1 and fp2"
                                                   : "f0 must lie between fs1 and fs2";
    }
    return {};
}

double MaskCentreHz(const RequirementMask& mask) {
    if (mask.centreHz > 0.0) return mask.centreHz;
    const std::array<double, 2>& edges =
        mask.kind == MaskKind::Notch ? mask.stopEdgesHz : mask.passEdgesHz;
    return std::sqrt(edges[0] * edges[1]);
}

std::vector<MaskRegion> MaskRegions(const RequirementMask& mask) {
    const double fp1 = mask.passEdgesHz[0], fp2 = mask.passEdgesHz[1];
    const double fs1 = mask.stopEdgesHz[0], fs2 = mask.stopEdgesHz[1];
    switch (mask.kind) {
        case MaskKind::HighPass: return {{0.0, fs1, false}, {fp1, Infinity, true}};
        case MaskKind::BandPass:
            return {{0.0, fs1, false}, {fp1, fp2, true}, {fs2, Infinity, false}};
        case MaskKind::Notch: return {{0.0, fp1, true}, {fs1, fs2, false}, {fp2, Infinity, true}};
        case MaskKind::LowPass: break;
    }
    return {{0.0, fp1, true}, {fs1, Infinity, false}};
}

std::vector<double> MaskCheckPoints(const RequirementMask& mask) {
    std::vector<double> points;
    for (const MaskRegion& region : MaskRegions(mask)) {
        if (region.fromHz > 0.0) points.push_back(region.fromHz);
        if (std::isfinite(region.toHz)) points.push_back(region.toHz);
        if (!region.pass) continue;
        if (region.fromHz == 0.0) points.push_back(region.toHz / 1000.0);
        if (!std::isfinite(region.toHz)) points.push_back(1000.0 * region.fromHz);
    }
    return points;
}

MaskMargins MarginsAgainst(const RequirementMask& mask, double referenceDb,
                           std::span<const double> frequencies, std::span<const double> db) {
    MaskMargins margins{Infinity, Infinity};
    const std::vector<MaskRegion> regions = MaskRegions(mask);
    for (std::size_t k = 0; k < frequencies.size() && k < db.size(); ++k) {
        const double f = frequencies[k];
        for (const MaskRegion& region : regions) {
            if (f < region.fromHz || f > region.toHz) continue;
            // A point the response cannot give (NaN) fails the mask.
            double margin = region.pass ? db[k] - (referenceDb - mask.passDb)
                                        : (referenceDb - mask.stopDb) - db[k];
            if (std::isnan(margin)) margin = -Infinity;
            double& worst = region.pass ? margins.passDb : margins.stopDb;
            worst = std::min(worst, margin);
        }
    }
    return margins;
}

MaskMargins Worse(const MaskMargins& a, const MaskMargins& b) {
    return {std::min(a.passDb, b.passDb), std::min(a.stopDb, b.stopDb)};
}

}  // namespace nerivane
