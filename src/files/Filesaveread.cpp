#include "files/Filesaveread.h"

#include <cmath>
#include <cstring>
#include <iterator>
#include <string_view>

#include "app/Initializevars.h"
#include "files/Atomicwrite.h"
#include "files/Designrecord.h"
#include "files/Regularfiles.h"
#include "numerics/Sivalue.h"

namespace nerivane {
namespace {

// clang-format off
constexpr const char* FamilyTexts[] = {
    " Pole Butterworth", " Pole Chebyshev", " Pole Papoulis", " Pole Bessel", " Pole Gaussian",
    " Pole Adj Gauss", " Pole Z Plane", " Pole Inv Cheby", " Pole Elliptic",
};
constexpr const char* TopologyTexts[] = {
    " VCVS LPF", " MFB LPF", " VCVS HPF", " MFB HPF", " VCVS BPF", " MFB_BPF", " NOTCH",
};
// clang-format on

std::int32_t ReadInt32(const unsigned char* bytes, std::size_t offset) {
    std::int32_t value = 0;
    std::memcpy(&value, bytes + offset, sizeof value);
    return value;
}

bool VersionAccepted(std::int32_t major, std::int32_t minor) {
    // Files of version 2.0 to 2.2 and 1.0 to 1.1 share this layout.
    const std::int64_t magnitude = std::abs(static_cast<std::int64_t>(minor));
    if (major == 2) return magnitude < 3;
    if (major == 1) return magnitude <= 1;
    return false;
}

// Each field a file holds out of range is replaced by its default, and the replacement said.
class Repairs {
  public:
    template <typename T>
    void KeepInRange(const std::string& field, T& value, T low, T high, T fallback) {
        if (value >= low && value <= high) return;
        Say(field, std::to_string(value), std::to_string(fallback));
        value = fallback;
    }
    void KeepUsable(const std::string& field, double& value, double low, double high,
                    double fallback) {
        if (value >= low && value <= high) return;
        Say(field, ExactText(value), ExactText(fallback));
        value = fallback;
    }
    std::vector<std::string> said;

  private:
    void Say(const std::string& field, const std::string& from, const std::string& to) {
        said.push_back(field + " " + from + " replaced by " + to);
    }
};

}  // namespace

bool WriteDesignFile(const std::string& path, const DesignState& state, std::string* reason) {
    const DesignRecord record = ToRecord(state);
    const auto* bytes = reinterpret_cast<const char*>(&record);
    return WriteFileAtomically(path, std::string_view(bytes, sizeof record), reason);
}

std::string SaveFailedText(const std::string& path, const std::string& reason) {
    return std::string(SaveFailedMessage) + "\n\"" + path + "\": " + reason + ".";
}

std::string WithDesignExtension(const std::string& path) {
    const std::string ending = std::string(".") + DesignFileExtension;
    if (path.ends_with(ending)) return path;
    return path + ending;
}

bool ValidateDesignBytes(const unsigned char* bytes, std::size_t count, DesignRecord& scratch) {
    if (count < offsetof(DesignRecord, RecordSize) + sizeof(std::int32_t)) return false;
    const std::int32_t size = ReadInt32(bytes, offsetof(DesignRecord, RecordSize));
    if (size == static_cast<std::int32_t>(OlderRecordSize) && count == OlderRecordSize) {
        // The earlier, shorter record: its fields are a prefix of this one's.
        std::memcpy(&scratch, bytes, OlderRecordSize);
        scratch.RecordSize = DesignRecordSize;
    } else if (count == sizeof(DesignRecord) && size == DesignRecordSize) {
        std::memcpy(&scratch, bytes, sizeof scratch);
    } else {
        return false;
    }
    return IdentityMatches(scratch) && VersionAccepted(scratch.VersionMajor, scratch.VersionMinor);
}

std::vector<std::string> SanitizeDesignRecord(DesignRecord& s) {
    const DesignRecord defaults = ToRecord(DefaultDesignState());
    Repairs r;
    r.KeepInRange("ResponseIndex", s.ResponseIndex, 0, 8, defaults.ResponseIndex);
    r.KeepInRange("TopologyIndex", s.TopologyIndex, 0, 6, defaults.TopologyIndex);
    r.KeepInRange("SweepIndex", s.SweepIndex, 0, 5, defaults.SweepIndex);
    r.KeepInRange("NumPoles", s.NumPoles, 1, MaxPoles, defaults.NumPoles);
    s.NumSections = SectionsForPoles(static_cast<Topology>(s.TopologyIndex), s.NumPoles);
    r.KeepInRange("SelectedSection", s.SelectedSection, 0, s.NumSections - 1, 0);
    r.KeepInRange("AdjustFocus", s.AdjustFocus, 0, FocusNothing, defaults.AdjustFocus);
    r.KeepUsable("F0", s.F0, 1.0, 1e8, defaults.F0);
    r.KeepUsable("BandWidth", s.BandWidth, 10.0, 1e8, defaults.BandWidth);
    r.KeepUsable("Ripple", s.Ripple, 0.0, 2.0, defaults.Ripple);
    r.KeepUsable("Gamma", s.Gamma, -1.0, 1.0, defaults.Gamma);
    r.KeepUsable("SectionGain", s.SectionGain, 0.09, 11.0, defaults.SectionGain);
    r.KeepUsable("OpAmpGainBandwidth", s.OpAmpGainBandwidth, 1e3, 1e8, defaults.OpAmpGainBandwidth);
    r.KeepUsable("OpAmpOutputResistance", s.OpAmpOutputResistance, 0.0, 1e4,
                 defaults.OpAmpOutputResistance);
    r.KeepUsable("PhaseThreshold", s.PhaseThreshold, -200.0, 200.0, defaults.PhaseThreshold);
    r.KeepUsable("TestValue", s.TestValue, -100.0, 100.0, defaults.TestValue);
    for (int i = 0; i < MaxSections; ++i) {
        const std::string section = "[" + std::to_string(i) + "]";
        r.KeepUsable("SectionC1" + section, s.SectionC1[i], MinCapacitance, MaxCapacitance,
                     defaults.SectionC1[i]);
        r.KeepUsable("SectionC2" + section, s.SectionC2[i], MinCapacitance, MaxCapacitance,
                     defaults.SectionC2[i]);
    }
    const auto mode = static_cast<std::int32_t>(s.Tolerance);
    if (mode < 0 || mode > 2) s.Tolerance = defaults.Tolerance;
    if (s.ReadOut != ReadOutMode::ValueAtFrequency) s.ReadOut = ReadOutMode::GraphPosition;
    if (s.Magnitude != MagnitudeMode::Linear) s.Magnitude = MagnitudeMode::Db;
    if (s.Phase != PhaseMode::Hilbert) s.Phase = PhaseMode::Plain;
    return r.said;
}

OpenResult ReadDesignFile(const std::string& path, DesignState& state) {
    const std::string extension = std::string(".") + DesignFileExtension;
    if (path.size() < extension.size() ||
        path.compare(path.size() - extension.size(), extension.size(), extension) != 0)
        return {OpenOutcome::WrongExtension, ""};
    const FileContents file = ReadRegularFile(path, sizeof(DesignRecord));
    switch (file.status) {
        case ReadStatus::Read: break;
        case ReadStatus::Missing: return {OpenOutcome::Missing, file.reason};
        // A longer file is not ours either.
        case ReadStatus::TooLarge: return {OpenOutcome::Incompatible, file.reason};
        case ReadStatus::NotAFile:
        case ReadStatus::Unreadable: return {OpenOutcome::Unreadable, file.reason};
    }
    // An older, shorter record leaves the later fields as the design on screen has them.
    DesignRecord scratch = ToRecord(state);
    if (!ValidateDesignBytes(reinterpret_cast<const unsigned char*>(file.bytes.data()),
                             file.bytes.size(), scratch))
        return {OpenOutcome::Incompatible, ""};
    OpenResult opened{OpenOutcome::Opened, "", SanitizeDesignRecord(scratch)};
    state = FromRecord(scratch);
    return opened;
}

std::string RepairedFileMessage(const std::string& path, const std::vector<std::string>& repairs) {
    std::string text = "The design file \"" + path +
                       "\" held values out of range, replaced so that it can be used:";
    for (const std::string& repair : repairs) text += "\n" + repair;
    return text;
}

std::string UnreadableFileMessage(const std::string& path, const std::string& reason) {
    return "Open File operation failed: \"" + path + "\": " + reason + ".";
}

std::string ProposedFileName(const DesignState& state) {
    const int family = Index(state.ResponseIndex);
    const int topology = Index(state.TopologyIndex);
    return std::to_string(state.NumPoles) +
           (family >= 0 && family <= 8 ? FamilyTexts[family] : FamilyTexts[0]) +
           (topology >= 0 && topology <= 6 ? TopologyTexts[topology] : TopologyTexts[0]);
}

std::string DesignTitle(const std::string& path) {
    const std::size_t slash = path.find_last_of('/');
    std::string name = slash == std::string::npos ? path : path.substr(slash + 1);
    const std::size_t dot = name.find_last_of('.');
    if (dot != std::string::npos && dot > 0) name.erase(dot);
    return name;
}

}  // namespace nerivane
