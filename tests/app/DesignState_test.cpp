#include "app/DesignState.h"

#include <gtest/gtest.h>

#include <cstring>

#include "app/Initializevars.h"

namespace nerivane {
namespace {

TEST(DesignState, StartUpDefaultsAreAThreePoleAdjustableGaussLowPassAtFiveKilohertz) {
    const DesignState s = DefaultDesignState();
    EXPECT_EQ(s.ResponseIndex, 5);
    EXPECT_EQ(s.TopologyIndex, 0);
    EXPECT_EQ(s.SweepIndex, 4);
    EXPECT_EQ(s.NumPoles, 3);
    EXPECT_EQ(s.NumSections, 2);
    EXPECT_EQ(s.SelectedSection, 0);
    EXPECT_EQ(s.F0, 5000.0);
    EXPECT_EQ(s.BandWidth, 2000.0);
    EXPECT_EQ(s.Ripple, 0.2);
    EXPECT_EQ(s.Gamma, 0.0);
    EXPECT_EQ(s.SectionGain, 1.0);
    EXPECT_EQ(s.PlotTopDb, 10.0);
    EXPECT_EQ(s.GroupDelayScale, 1.0);
    EXPECT_EQ(s.PhaseThreshold, -30.0);
    EXPECT_EQ(s.AdjustFocus, FocusSection);
    EXPECT_EQ(s.IdealOpAmp, 1);
    EXPECT_EQ(s.Tolerance, ToleranceMode::Exact);
    EXPECT_EQ(s.FreqMin, 500.0);
    EXPECT_EQ(s.FreqMax, 50000.0);
    for (int i = 0; i < MaxSections; ++i) {
        EXPECT_EQ(s.SectionC1[i], 1e-10);
        EXPECT_EQ(s.SectionC2[i], 1e-9);
    }
    EXPECT_EQ(s.PlotMag, 1);
    EXPECT_EQ(s.PlotMag1dB, 0);
    EXPECT_EQ(s.PlotPhase, 0);
    EXPECT_EQ(s.PlotGroupDelay, 0);
    EXPECT_EQ(s.PlotPulse, 0);
    EXPECT_EQ(s.PlotReference, 0);
    EXPECT_EQ(s.AutoScale, 1);
    EXPECT_EQ(s.ReadOut, ReadOutMode::GraphPosition);
    EXPECT_EQ(s.Magnitude, MagnitudeMode::Db);
    EXPECT_EQ(s.Phase, PhaseMode::Plain);
    EXPECT_EQ(ReadRecordText(s.ToleranceText, std::size(s.ToleranceText)), "Exact R");
    EXPECT_EQ(ReadRecordText(s.CapacitorToleranceText, 8), "10 %");
    EXPECT_EQ(ReadRecordText(s.ResistorToleranceText, 8), "1 %");
}

// The saved image is the record itself: identity text, version and size sit where the file
// format puts them, little-endian, and unused bytes are zero so that saving the same design
// twice gives the same file.
TEST(DesignState, ByteImageCarriesIdentityVersionAndSize) {
    const DesignState s = DefaultDesignState();
    unsigned char bytes[DesignRecordSize];
    std::memcpy(bytes, &s, sizeof bytes);

    const char* identity = IdentityText;
    for (std::size_t i = 0; identity[i] != '\0'; ++i) {
        EXPECT_EQ(bytes[2 * i], static_cast<unsigned char>(identity[i]));
        EXPECT_EQ(bytes[2 * i + 1], 0);
    }
    const auto int32At = [&](int offset) {
        return static_cast<std::int32_t>(bytes[offset] | bytes[offset + 1] << 8 |
                                         bytes[offset + 2] << 16 | bytes[offset + 3] << 24);
    };
    EXPECT_EQ(int32At(136), 2);
    EXPECT_EQ(int32At(140), 2);
    EXPECT_EQ(int32At(144), 2016);
    EXPECT_EQ(int32At(148), 5);  // response family
    EXPECT_EQ(int32At(156), 3);  // poles
    double f0 = 0.0;
    std::memcpy(&f0, bytes + 168, sizeof f0);
    EXPECT_EQ(f0, 5000.0);
    for (std::size_t i = offsetof(DesignState, Reserved); i < sizeof bytes; ++i)
        EXPECT_EQ(bytes[i], 0) << i;

    const DesignState again = DefaultDesignState();
    EXPECT_EQ(std::memcmp(&s, &again, sizeof s), 0);
    EXPECT_EQ(ReadRecordText(s.VersionText, std::size(s.VersionText)), "Version 2.2");
}

TEST(DesignState, SectionsFollowPolesByTopology) {
    // clang-format off
    const struct { std::int32_t topology, poles, sections; } cases[] = {
        {VcvsLowPass,  3, 2}, {VcvsLowPass,  4, 2}, {MfbHighPass,  1, 1}, {MfbLowPass, 20, 10},
        {VcvsBandPass, 4, 4}, {MfbBandPass,  3, 3}, {VcvsNotch,   10, 10},
    };
    // clang-format on
    for (const auto& c : cases) EXPECT_EQ(SectionsForPoles(c.topology, c.poles), c.sections);
}

}  // namespace
}  // namespace nerivane
