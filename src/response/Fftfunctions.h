// The FFT and the square-pulse response: the circuit is simulated on a dense linear grid,
// multiplied by the spectrum of a rectangular pulse and brought back to the time domain,
// giving the trace that shows overshoot and ringing.
#pragma once

#include <span>

#include "circuit/Components.h"
#include "circuit/Componentsettings.h"
#include "numerics/Message.h"
#include "response/Traces.h"

namespace nerivane {

inline constexpr int FftForward = 0;
inline constexpr int FftInverse = 1;

// In place on n complex values stored interleaved (re, im); n a power of two from 8 to
// 1048576. Forward scales by 1/n, inverse not at all. A bad size or type adds "Invalid FFT
// type or size." (caption "FFT Error") to messages and leaves the data alone; returns whether
// it transformed.
bool Fft(std::span<double> interleaved, int n, int type, Messages& messages);

struct PulseInputs {
    Topology topology = Topology::VcvsLowPass;
    int numSections = 1;
    double f0 = 5000.0;
    const SectionComponents* parts = nullptr;
    const ComponentSettings* settings = nullptr;  // op-amp model (the nominal circuit is used)
};

// Fills traces.pulse (TracePoints values on the plot's 0..1 scale, placed by topology),
// traces.pulseTimeStep = 1 / (40 F0) and traces.hasPulse.
void CalcPulseResponse(const PulseInputs& inputs, Traces& traces, Messages& messages);

}  // namespace nerivane
