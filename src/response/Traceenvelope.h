// The tolerance envelope of a worst-case analysis: at every sweep point, the lowest and the
// highest value each trace took over all runs. Undrawn phase and delay points take no part; a
// point no run drew stays undrawn.
#pragma once

#include "response/Traces.h"

namespace nerivane {

struct TraceEnvelope {
    int runs = 0;
    Traces low;
    Traces high;
};

// Adds one run's traces; run 0 starts the envelope afresh.
void AddToEnvelope(int run, const Traces& traces, TraceEnvelope& envelope);

// The traces an envelope is kept of, with their names in exports.
struct EnvelopeTrace {
    const char* name;
    std::array<double, TracePoints> Traces::*values;
};
inline constexpr std::array<EnvelopeTrace, 5> EnvelopeTraces = {{
    {"mag_db", &Traces::magnitudeDb},
    {"mag_linear", &Traces::magnitudeLinear},
    {"phase_deg", &Traces::phase},
    {"hilbert_phase_deg", &Traces::hilbertPhase},
    {"group_delay_s", &Traces::groupDelay},
}};

}  // namespace nerivane
