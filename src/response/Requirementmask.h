// A requirement the filter must meet, as an engineer states it: the largest attenuation allowed
// in the pass band and the smallest required in the stop band, with their edges. Attenuation
// is counted down from the response's peak. Checks a response over any set of frequencies.
#pragma once

#include <array>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "circuit/Components.h"

namespace nerivane {

enum class MaskKind { LowPass, HighPass, BandPass, Notch };

struct RequirementMask {
    MaskKind kind = MaskKind::LowPass;
    // Low and high pass use the first entry of each; band pass and notch both, lower first.
    std::array<double, 2> passEdgesHz{1000.0, 0.0};
    std::array<double, 2> stopEdgesHz{3000.0, 0.0};
    // Band pass and notch: the centre the design is built around; 0 takes the geometric
    // middle of the pass edges (band pass) or of the stop edges (notch).
    double centreHz = 0.0;
    double passDb = 1.0;   // Ap: largest attenuation in the pass band
    double stopDb = 40.0;  // As: smallest attenuation in the stop band

    friend bool operator==(const RequirementMask&, const RequirementMask&) = default;
};

// The mask in the command line's words: "fp=1k,ap=1,fs=3k,as=40" (low pass when fp < fs, high
// pass when fp > fs), "fp1=9k,fp2=11k,fs1=7k,fs2=14k,ap=1,as=30[,f0=10k]" (band pass when the
// stop edges lie outside the pass edges, notch when inside). Frequencies take SI prefixes.
struct ParsedMask {
    std::optional<RequirementMask> mask;
    std::string problem;  // why the text is not a mask, when it is not
};
ParsedMask ParseMask(std::string_view text);
std::string MaskText(const RequirementMask& mask);

// Why the mask cannot be met by any filter (edges out of order, As not above Ap ...), or empty.
std::string MaskProblem(const RequirementMask& mask);

// "low pass", "high pass", "band pass", "notch".
const char* MaskKindName(MaskKind kind);
// The kind of filter a circuit makes.
MaskKind MaskKindOf(Topology topology);

double MaskCentreHz(const RequirementMask& mask);

// A stretch of frequencies where the response is held: in a pass region at most passDb below
// the reference, in a stop region at least stopDb below it. toHz may be infinite.
struct MaskRegion {
    double fromHz;
    double toHz;
    bool pass;
};
std::vector<MaskRegion> MaskRegions(const RequirementMask& mask);

// Where a response is checked besides a sweep: the edges, where a monotonic response comes
// closest to the limits, and a point a thousand times into each pass band that runs to DC or
// to infinity, where the response has its pass-band gain.
std::vector<double> MaskCheckPoints(const RequirementMask& mask);

// How far a response stays inside the mask: the smallest distance, in dB, to the limit over
// the points of the pass regions and of the stop regions (+infinity where a kind of region
// holds no point). Negative where it leaves the mask.
struct MaskMargins {
    double passDb;
    double stopDb;
    bool Meets() const { return passDb >= 0.0 && stopDb >= 0.0; }
};
MaskMargins MarginsAgainst(const RequirementMask& mask, double referenceDb,
                           std::span<const double> frequencies, std::span<const double> db);
// The smaller of two margins, region by region.
MaskMargins Worse(const MaskMargins& a, const MaskMargins& b);

}  // namespace nerivane
