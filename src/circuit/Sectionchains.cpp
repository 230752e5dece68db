#include "circuit/Sectionchains.h"

#include <algorithm>

#include "circuit/Valuecalculations.h"

namespace nerivane {
namespace {

// Derived from the node equations by docs/derivations/section_chains.py; edit the script, not
// these functions.
// clang-format off
ChainPolynomials VcvsLowPassChain(const WorkingComponents& c, double Ro) {
    const double R1 = c.R1, R2 = c.R2, R3 = c.R3, R4 = c.R4, C1 = c.C1, C2 = c.C2;
    ChainPolynomials p;
    p.a.at0 = {R3 + R4 + Ro, C1*R1*R3 + C1*R1*R4 + C1*R1*Ro + C1*R2*R3 + C1*R2*R4 + C1*R2*Ro + C2*R1*R3 + C2*R1*R4 + C2*R1*Ro + C2*R3*Ro + C2*R4*Ro, C1*C2*(R1*R2*R3 + R1*R2*R4 + R1*R2*Ro + R1*R3*Ro + R1*R4*Ro + R2*R3*Ro + R2*R4*Ro), 0};
    p.a.slope = {R3, C1*R1*R3 + C1*R2*R3 - C2*R1*R4, C1*C2*R1*R2*R3, 0};
    p.b.at0 = {Ro*(R3 + R4), Ro*(R3 + R4)*(C1*R1 + C1*R2 + C2*R1), C1*C2*R1*R2*Ro*(R3 + R4), 0};
    p.b.slope = {0, 0, 0, 0};
    p.c.at0 = {0, (C1 + C2)*(R3 + R4 + Ro), C1*C2*(R2*R3 + R2*R4 + R2*Ro + R3*Ro + R4*Ro), 0};
    p.c.slope = {0, C1*R3 - C2*R4, C1*C2*R2*R3, 0};
    p.d.at0 = {0, Ro*(C1 + C2)*(R3 + R4), C1*C2*R2*Ro*(R3 + R4), 0};
    p.d.slope = {0, 0, 0, 0};
    p.common.at0 = {0, C2*Ro*(R3 + R4), C1*C2*R2*Ro*(R3 + R4), 0};
    p.common.slope = {R3 + R4, 0, 0, 0};
    return p;
}

ChainPolynomials MfbLowPassChain(const WorkingComponents& c, double Ro) {
    const double R1 = c.R1, R2 = c.R2, R3 = c.R3, C1 = c.C1, C2 = c.C2;
    ChainPolynomials p;
    p.a.at0 = {R1 + R2 + Ro, C1*R1*R2 + C1*R1*R3 + C1*R2*R3 + C1*R2*Ro + C1*R3*Ro + C2*R1*R2 + C2*R1*Ro, C1*C2*R1*(R2*R3 + R2*Ro + R3*Ro), 0};
    p.a.slope = {R1, C1*(R1*R2 + R1*R3 + R2*R3), C1*C2*R1*R2*R3, 0};
    p.b.at0 = {Ro*(R1 + R2), Ro*(C1*R1*R2 + C1*R1*R3 + C1*R2*R3 + C2*R1*R2), C1*C2*R1*R2*R3*Ro, 0};
    p.b.slope = {0, 0, 0, 0};
    p.c.at0 = {1, C1*R2 + C1*R3 + C2*R2 + C2*Ro, C1*C2*(R2*R3 + R2*Ro + R3*Ro), 0};
    p.c.slope = {1, C1*(R2 + R3), C1*C2*R2*R3, 0};
    p.d.at0 = {Ro, Ro*(C1*R2 + C1*R3 + C2*R2), C1*C2*R2*R3*Ro, 0};
    p.d.slope = {0, 0, 0, 0};
    p.common.at0 = {Ro, C1*Ro*(R2 + R3), 0, 0};
    p.common.slope = {-R2, 0, 0, 0};
    return p;
}

ChainPolynomials VcvsHighPassChain(const WorkingComponents& c, double Ro) {
    const double R1 = c.R1, R2 = c.R2, R3 = c.R3, R4 = c.R4, C1 = c.C1, C2 = c.C2;
    ChainPolynomials p;
    p.a.at0 = {R3 + R4 + Ro, C1*R1*R3 + C1*R1*R4 + C1*R1*Ro + C1*R3*Ro + C1*R4*Ro + C2*R1*R3 + C2*R1*R4 + C2*R1*Ro + C2*R2*R3 + C2*R2*R4 + C2*R2*Ro + C2*R3*Ro + C2*R4*Ro, C1*C2*R2*(R1*R3 + R1*R4 + R1*Ro + R3*Ro + R4*Ro), 0};
    p.a.slope = {R3, C1*R1*R3 + C2*R1*R3 - C2*R2*R4, C1*C2*R1*R2*R3, 0};
    p.b.at0 = {Ro*(R3 + R4), Ro*(R3 + R4)*(C1*R1 + C2*R1 + C2*R2), C1*C2*R1*R2*Ro*(R3 + R4), 0};
    p.b.slope = {0, 0, 0, 0};
    p.c.at0 = {0, C1*(R3 + R4 + Ro), C1*C2*(R1*R3 + R1*R4 + R1*Ro + R2*R3 + R2*R4 + R2*Ro + R3*Ro + R4*Ro), 0};
    p.c.slope = {0, C1*R3, C1*C2*(R1*R3 - R2*R4), 0};
    p.d.at0 = {0, C1*Ro*(R3 + R4), C1*C2*Ro*(R1 + R2)*(R3 + R4), 0};
    p.d.slope = {0, 0, 0, 0};
    p.common.at0 = {0, C1*Ro*(R3 + R4), C1*C2*R2*Ro*(R3 + R4), 0};
    p.common.slope = {0, 0, C1*C2*R1*R2*(R3 + R4), 0};
    return p;
}

ChainPolynomials FirstOrderVcvsHighPassChain(const WorkingComponents& c, double Ro) {
    const double R2 = c.R2, R3 = c.R3, R4 = c.R4, C2 = c.C2;
    ChainPolynomials p;
    p.a.at0 = {R3 + R4 + Ro, C2*R2*(R3 + R4 + Ro), 0, 0};
    p.a.slope = {R3, C2*R2*R3, 0, 0};
    p.b.at0 = {Ro*(R3 + R4), C2*R2*Ro*(R3 + R4), 0, 0};
    p.b.slope = {0, 0, 0, 0};
    p.c.at0 = {0, C2*(R3 + R4 + Ro), 0, 0};
    p.c.slope = {0, C2*R3, 0, 0};
    p.d.at0 = {0, C2*Ro*(R3 + R4), 0, 0};
    p.d.slope = {0, 0, 0, 0};
    p.common.at0 = {0, 0, 0, 0};
    p.common.slope = {0, C2*R2*(R3 + R4), 0, 0};
    return p;
}

ChainPolynomials MfbHighPassChain(const WorkingComponents& c, double Ro) {
    const double R1 = c.R1, R2 = c.R2, C1 = c.C1, C2 = c.C2;
    ChainPolynomials p;
    p.a.at0 = {1, 2*C1*R1 + C1*R2 + C1*Ro + C2*R1 + C2*Ro, C1*(C1*R1*R2 + C1*R1*Ro + C2*R1*R2 + C2*R1*Ro + C2*R2*Ro), pow(C1, 2)*C2*R1*R2*Ro};
    p.a.slope = {1, R1*(2*C1 + C2), C1*C2*R1*R2, 0};
    p.b.at0 = {Ro, Ro*(2*C1*R1 + C1*R2 + C2*R1), C1*R1*R2*Ro*(C1 + C2), 0};
    p.b.slope = {0, 0, 0, 0};
    p.c.at0 = {0, C1, C1*(C1*R1 + C1*R2 + C1*Ro + C2*R1 + C2*Ro), pow(C1, 2)*C2*R2*(R1 + Ro)};
    p.c.slope = {0, C1, C1*R1*(C1 + C2), pow(C1, 2)*C2*R1*R2};
    p.d.at0 = {0, C1*Ro, C1*Ro*(C1*R1 + C1*R2 + C2*R1), pow(C1, 2)*C2*R1*R2*Ro};
    p.d.slope = {0, 0, 0, 0};
    p.common.at0 = {0, 0, C1*R1*Ro*(C1 + C2), pow(C1, 2)*C2*R1*R2*Ro};
    p.common.slope = {0, 0, -pow(C1, 2)*R1*R2, 0};
    return p;
}

ChainPolynomials FirstOrderMfbHighPassChain(const WorkingComponents& c, double Ro) {
    const double R2 = c.R2, C1 = c.C1, C2 = c.C2;
    ChainPolynomials p;
    p.a.at0 = {1, C1*R2 + C1*Ro + C2*R2, C1*C2*R2*Ro, 0};
    p.a.slope = {1, C2*R2, 0, 0};
    p.b.at0 = {Ro, R2*Ro*(C1 + C2), 0, 0};
    p.b.slope = {0, 0, 0, 0};
    p.c.at0 = {0, C1, C1*C2*R2, 0};
    p.c.slope = {0, C1, C1*C2*R2, 0};
    p.d.at0 = {0, C1*Ro, C1*C2*R2*Ro, 0};
    p.d.slope = {0, 0, 0, 0};
    p.common.at0 = {0, C1*Ro, C1*C2*R2*Ro, 0};
    p.common.slope = {0, -C1*R2, 0, 0};
    return p;
}

ChainPolynomials VcvsBandPassChain(const WorkingComponents& c, double Ro) {
    const double R1 = c.R1, R2 = c.R2, R3 = c.R3, R4 = c.R4, C1 = c.C1;
    ChainPolynomials p;
    p.a.at0 = {2*R1*R4 + R1*Ro + 2*R2*R4 + R2*Ro + 2*R4*Ro, C1*(4*R1*R2*R4 + 2*R1*R2*Ro + 2*R1*R3*R4 + R1*R3*Ro + 4*R1*R4*Ro + 2*R2*R3*R4 + R2*R3*Ro + 2*R3*R4*Ro), pow(C1, 2)*R1*R3*(2*R2*R4 + R2*Ro + 2*R4*Ro), 0};
    p.a.slope = {R4*(R1 + R2), C1*R4*(2*R1*R2 - R1*R3 + R2*R3), pow(C1, 2)*R1*R2*R3*R4, 0};
    p.b.at0 = {2*R4*Ro*(R1 + R2), 2*C1*R4*Ro*(2*R1*R2 + R1*R3 + R2*R3), 2*pow(C1, 2)*R1*R2*R3*R4*Ro, 0};
    p.b.slope = {0, 0, 0, 0};
    p.c.at0 = {2*R4 + Ro, C1*(4*R2*R4 + 2*R2*Ro + 2*R3*R4 + R3*Ro + 4*R4*Ro), pow(C1, 2)*R3*(2*R2*R4 + R2*Ro + 2*R4*Ro), 0};
    p.c.slope = {R4, C1*R4*(2*R2 - R3), pow(C1, 2)*R2*R3*R4, 0};
    p.d.at0 = {2*R4*Ro, 2*C1*R4*Ro*(2*R2 + R3), 2*pow(C1, 2)*R2*R3*R4*Ro, 0};
    p.d.slope = {0, 0, 0, 0};
    p.common.at0 = {2*R4*Ro, 2*C1*R3*R4*Ro, 0, 0};
    p.common.slope = {0, 2*C1*R2*R3*R4, 0, 0};
    return p;
}

ChainPolynomials MfbBandPassChain(const WorkingComponents& c, double Ro) {
    const double R1 = c.R1, R2 = c.R2, R3 = c.R3, C1 = c.C1, C2 = c.C2;
    ChainPolynomials p;
    p.a.at0 = {R1 + R2, C1*R1*R2 + C1*R1*Ro + C1*R2*Ro + C2*R1*R2 + C2*R1*R3 + C2*R1*Ro + C2*R2*R3 + C2*R2*Ro, C1*C2*R3*(R1*R2 + R1*Ro + R2*Ro), 0};
    p.a.slope = {R1 + R2, R1*R2*(C1 + C2), C1*C2*R1*R2*R3, 0};
    p.b.at0 = {Ro*(R1 + R2), Ro*(C1*R1*R2 + C2*R1*R2 + C2*R1*R3 + C2*R2*R3), C1*C2*R1*R2*R3*Ro, 0};
    p.b.slope = {0, 0, 0, 0};
    p.c.at0 = {1, C1*R2 + C1*Ro + C2*R2 + C2*R3 + C2*Ro, C1*C2*R3*(R2 + Ro), 0};
    p.c.slope = {1, R2*(C1 + C2), C1*C2*R2*R3, 0};
    p.d.at0 = {Ro, Ro*(C1*R2 + C2*R2 + C2*R3), C1*C2*R2*R3*Ro, 0};
    p.d.slope = {0, 0, 0, 0};
    p.common.at0 = {0, R2*Ro*(C1 + C2), C1*C2*R2*R3*Ro, 0};
    p.common.slope = {0, -C2*R2*R3, 0, 0};
    return p;
}

ChainPolynomials NotchChain(const WorkingComponents& c, double Ro) {
    const double R1 = c.R1, R2 = c.R2, R3 = c.R3, Ca = c.C1, Cb = c.SecondC1 > 0.0 ? c.SecondC1 : c.C1, Cc = c.C2;
    ChainPolynomials p;
    p.a.at0 = {1, Ca*R3 + Ca*Ro + Cb*R1 + Cb*R2 + Cb*R3 + Cb*Ro + Cc*R1, Ca*Cb*R1*R3 + Ca*Cb*R1*Ro + Ca*Cb*R2*R3 + Ca*Cb*R2*Ro + Ca*Cc*R1*R3 + Ca*Cc*R1*Ro + Cb*Cc*R1*R2 + Cb*Cc*R1*R3 + Cb*Cc*R1*Ro, Ca*Cb*Cc*R1*R2*(R3 + Ro)};
    p.a.slope = {1, Ca*R3 + Cb*R3 + Cc*R1, R3*(Ca*Cb*R1 + Ca*Cb*R2 + Ca*Cc*R1 + Cb*Cc*R1), Ca*Cb*Cc*R1*R2*R3};
    p.b.at0 = {Ro, Ro*(Ca*R3 + Cb*R1 + Cb*R2 + Cb*R3 + Cc*R1), Ro*(Ca*Cb*R1*R3 + Ca*Cb*R2*R3 + Ca*Cc*R1*R3 + Cb*Cc*R1*R2 + Cb*Cc*R1*R3), Ca*Cb*Cc*R1*R2*R3*Ro};
    p.b.slope = {0, 0, 0, 0};
    p.c.at0 = {0, Ca + Cb + Cc, Ca*Cb*R1 + Ca*Cb*R2 + Ca*Cc*R1 + Ca*Cc*R3 + Ca*Cc*Ro + Cb*Cc*R2 + Cb*Cc*R3 + Cb*Cc*Ro, Ca*Cb*Cc*(R1*R2 + R1*R3 + R1*Ro + R2*R3 + R2*Ro)};
    p.c.slope = {0, Cc, Cc*(Ca*R1 + Ca*R3 + Cb*R3), Ca*Cb*Cc*R3*(R1 + R2)};
    p.d.at0 = {0, Ro*(Ca + Cb + Cc), Ro*(Ca*Cb*R1 + Ca*Cb*R2 + Ca*Cc*R1 + Ca*Cc*R3 + Cb*Cc*R2 + Cb*Cc*R3), Ca*Cb*Cc*Ro*(R1*R2 + R1*R3 + R2*R3)};
    p.d.slope = {0, 0, 0, 0};
    p.common.at0 = {0, Ro*(Ca + Cb), Ca*Ro*(Cb*R1 + Cb*R2 + Cc*R1), Ca*Cb*Cc*R1*R2*Ro};
    p.common.slope = {1, R3*(Ca + Cb), Ca*Cb*R3*(R1 + R2), Ca*Cb*Cc*R1*R2*R3};
    return p;
}
// clang-format on

// Markers into circuit values, as the plain section forms take them.
WorkingComponents AsSimulated(Topology topology, WorkingComponents c, double Ro) {
    if (topology == Topology::VcvsLowPass || topology == Topology::VcvsHighPass)
        c.R3 = SimulatedR3(c, Ro);
    if (topology == Topology::VcvsLowPass && c.C2 >= NotUsedThreshold) c.C2 = 0.0;
    return c;
}

ChainPolynomials Unity() {
    ChainPolynomials p{};
    p.a.at0[0] = p.common.at0[0] = 1.0;
    return p;
}

}  // namespace

ChainPolynomials ChainOf(Topology topology, const WorkingComponents& parts, double Ro) {
    const WorkingComponents c = AsSimulated(topology, parts, Ro);
    const bool firstOrder = c.R1 > NotUsedThreshold;
    switch (topology) {
        case Topology::VcvsLowPass: return VcvsLowPassChain(c, Ro);
        case Topology::MfbLowPass: return MfbLowPassChain(c, Ro);
        case Topology::VcvsHighPass:
            return firstOrder ? FirstOrderVcvsHighPassChain(c, Ro) : VcvsHighPassChain(c, Ro);
        case Topology::MfbHighPass:
            return firstOrder ? FirstOrderMfbHighPassChain(c, Ro) : MfbHighPassChain(c, Ro);
        case Topology::VcvsBandPass: return VcvsBandPassChain(c, Ro);
        case Topology::MfbBandPass: return MfbBandPassChain(c, Ro);
        case Topology::VcvsNotch: return NotchChain(c, Ro);
        default: return Unity();
    }
}

SectionPolynomials BuiltNotchPolynomials(const WorkingComponents& c, double A, double Ro) {
    const ChainPolynomials chain = NotchChain(c, Ro);
    SectionPolynomials p;
    for (int i = 0; i < 4; ++i) {
        p.n[i] = chain.common.at0[i] + A * chain.common.slope[i];
        p.d[i] = chain.a.at0[i] + A * chain.a.slope[i];
    }
    return p;
}

SinglePoleOpAmp SinglePoleOf(double gainBandwidth) {
    const double dcGain = std::min(gainBandwidth * 0.01, 1e5);
    return {dcGain, gainBandwidth / dcGain};
}

PhaseGain PhaseGainOf(double gainBandwidth) {
    const SinglePoleOpAmp opAmp = SinglePoleOf(gainBandwidth);
    return {opAmp.dcGain, 1.0 / (TwoPi * opAmp.poleHz)};
}

}  // namespace nerivane
