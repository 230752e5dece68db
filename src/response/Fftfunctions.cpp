#include "response/Fftfunctions.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstddef>
#include <vector>

#include "circuit/Circuitanalysis.h"
#include "circuit/Sectionresponses.h"
#include "numerics/Mathfunctions.h"

namespace nerivane {

namespace {

constexpr int FftSmallestSize = 8;
constexpr int FftLargestSize = 1048576;
constexpr double HalfSqrtTwo = 0.7071067811865476;

bool ValidFftRequest(std::span<const double> interleaved, int n, int type) {
    const bool typeKnown = type == FftForward || type == FftInverse;
    const bool sizeKnown = n >= FftSmallestSize && n <= FftLargestSize &&
                           std::has_single_bit(static_cast<unsigned>(n));
    return typeKnown && sizeKnown && interleaved.size() >= 2 * static_cast<std::size_t>(n);
}

// Bit-reversed indices by doubling: every pass appends the entries so far plus the next lower
// bit, so no index is ever reversed bit by bit.
std::vector<int> BitReversalTable(int n) {
    std::vector<int> table;
    table.reserve(static_cast<std::size_t>(n));
    table.push_back(0);
    for (int step = n / 2; step >= 1; step /= 2) {
        const std::size_t count = table.size();
        for (std::size_t i = 0; i < count; ++i) table.push_back(table[i] + step);
    }
    return table;
}

struct Twiddles {
    std::vector<double> cos;
    std::vector<double> sin;
};

// e^(sign j 2 pi k / n) for k < n/2. Only the first octant is evaluated and mirrored into the
// other three, and the octant boundaries are set exactly, so factors that are equal by symmetry
// are equal bit for bit and no error grows with the angle.
Twiddles TwiddleTable(int n, double sign) {
    const int half = n / 2;
    const int quarter = n / 4;
    const int eighth = n / 8;
    Twiddles table{std::vector<double>(static_cast<std::size_t>(half)),
                   std::vector<double>(static_cast<std::size_t>(half))};
    const auto set = [&](int k, double c, double s) {
        table.cos[static_cast<std::size_t>(k)] = c;
        table.sin[static_cast<std::size_t>(k)] = sign * s;
    };
    set(0, 1.0, 0.0);
    set(eighth, HalfSqrtTwo, HalfSqrtTwo);
    set(quarter, 0.0, 1.0);
    set(3 * eighth, -HalfSqrtTwo, HalfSqrtTwo);
    const double step = 2.0 * Pi / n;
    for (int k = 1; k < eighth; ++k) {
        const double c = std::cos(k * step);
        const double s = std::sin(k * step);
        set(k, c, s);
        set(quarter - k, s, c);
        set(quarter + k, -s, c);
        set(half - k, -c, s);
    }
    return table;
}

// Decimation in time on bit-reversed input, in place: log2 n stages, each joining pairs of
// transforms of length half into one of length 2 half.
void Butterflies(std::span<double> re, std::span<double> im, const Twiddles& w) {
    const std::size_t n = re.size();
    for (std::size_t half = 1; half < n; half *= 2) {
        const std::size_t stride = n / (2 * half);
        for (std::size_t start = 0; start < n; start += 2 * half) {
            for (std::size_t j = 0; j < half; ++j) {
                const double wr = w.cos[j * stride];
                const double wi = w.sin[j * stride];
                const std::size_t a = start + j;
                const std::size_t b = a + half;
                const double tr = wr * re[b] - wi * im[b];
                const double ti = wr * im[b] + wi * re[b];
                re[b] = re[a] - tr;
                im[b] = im[a] - ti;
                re[a] += tr;
                im[a] += ti;
            }
        }
    }
}

}  // namespace

bool Fft(std::span<double> interleaved, int n, int type, Messages& messages) {
    if (!ValidFftRequest(interleaved, n, type)) {
        messages.push_back({"Invalid FFT type or size.", "FFT Error"});
        return false;
    }
    // Everything is allocated before the caller's data are written, so an allocation failure
    // (std::bad_alloc) leaves them as they were.
    const std::vector<int> order = BitReversalTable(n);
    const auto size = static_cast<std::size_t>(n);
    std::vector<double> re(size);
    std::vector<double> im(size);
    for (std::size_t i = 0; i < size; ++i) {
        const auto from = 2 * static_cast<std::size_t>(order[i]);
        re[i] = interleaved[from];
        im[i] = interleaved[from + 1];
    }
    Butterflies(re, im, TwiddleTable(n, type == FftForward ? -1.0 : 1.0));
    const double scale = type == FftForward ? 1.0 / n : 1.0;
    for (std::size_t i = 0; i < size; ++i) {
        interleaved[2 * i] = re[i] * scale;
        interleaved[2 * i + 1] = im[i] * scale;
    }
    return true;
}

namespace {

// The grid runs from 0 to fs in PulseGridSteps steps; mirrored, it makes a transform of twice
// that length whose samples are 1 / (2 fs) apart.
constexpr int PulseGridSteps = 2048;
constexpr int PulseFftSize = 2 * PulseGridSteps;
constexpr double SamplingSpanPerF0 = 20.0;
// Half the 25.6 / F0 the trace shows, so the input stops in the middle of the trace.
constexpr double PulseWidthTimesF0 = 12.8;
constexpr double TraceSwing = 0.6;

// f = 0 is replaced by a tenth of the first step: the pulse spectrum divides by j w.
std::vector<double> PulseGrid(double fs) {
    std::vector<double> f(PulseGridSteps + 1);
    for (int i = 1; i <= PulseGridSteps; ++i)
        f[static_cast<std::size_t>(i)] = i * fs / PulseGridSteps;
    f[0] = 0.1 * f[1];
    return f;
}

// The nominal circuit over the grid, in a scratch array: the caller's sweep and response are
// never touched, so nothing has to be restored or simulated again afterwards.
std::vector<Complex> SimulateNominal(const PulseInputs& inputs, std::span<const double> f) {
    std::vector<Complex> h(f.size());
    SimulateCascade(inputs.topology, *inputs.parts, inputs.numSections, OpAmpOf(*inputs.settings),
                    f, h);
    return h;
}

// The spectrum of a unit pulse from 0 to T: (1 - e^(-j w T)) / (j w).
Complex PulseSpectrum(double w, double pulseWidth) {
    const double x = w * pulseWidth;
    return DivideScaled({1.0 - std::cos(x), std::sin(x)}, {0.0, w});
}

// The full period of a real signal from its spectrum up to the folding point: the upper half
// mirrors the lower as conjugates, and the folding bin must be real, so it keeps only the
// magnitude with the sign of its real part.
std::vector<double> ConjugateSymmetricSpectrum(std::span<const Complex> x) {
    std::vector<double> spectrum(2 * PulseFftSize);
    const auto put = [&](int bin, Complex value) {
        spectrum[2 * static_cast<std::size_t>(bin)] = value.re;
        spectrum[2 * static_cast<std::size_t>(bin) + 1] = value.im;
    };
    put(0, x[0]);
    for (int i = 1; i < PulseGridSteps; ++i) {
        put(i, x[static_cast<std::size_t>(i)]);
        put(PulseFftSize - i, Conjugate(x[static_cast<std::size_t>(i)]));
    }
    const Complex folding = x[PulseGridSteps];
    const double magnitude = ComplexAbs(folding);
    put(PulseGridSteps, {folding.re >= 0.0 ? magnitude : -magnitude, 0.0});
    return spectrum;
}

// Where the trace's zero sits on the 0..1 plot: low passes rise from the bottom, an odd number
// of inverting MFB low-pass stages turns the trace over so it falls from the top, and the others
// swing both ways about the middle.
double PulseBaseline(Topology topology, int numSections) {
    if (topology == Topology::VcvsLowPass) return 0.2;
    if (topology == Topology::MfbLowPass) return numSections % 2 == 0 ? 0.2 : 0.8;
    return 0.5;
}

}  // namespace

void CalcPulseResponse(const PulseInputs& inputs, Traces& traces, Messages& messages) {
    const double fs = SamplingSpanPerF0 * inputs.f0;
    const double pulseWidth = PulseWidthTimesF0 / inputs.f0;
    const std::vector<double> f = PulseGrid(fs);
    std::vector<Complex> x = SimulateNominal(inputs, f);
    for (std::size_t i = 0; i < x.size(); ++i) {
        x[i] = x[i] * PulseSpectrum(2.0 * Pi * f[i], pulseWidth);
    }
    std::vector<double> signal = ConjugateSymmetricSpectrum(x);
    Fft(signal, PulseFftSize, FftInverse, messages);
    // The unscaled inverse sums the spectrum; times the grid step it approximates the inverse
    // Fourier integral.
    const double gridStep = fs / PulseGridSteps;
    const double baseline = PulseBaseline(inputs.topology, inputs.numSections);
    for (std::size_t i = 0; i < traces.pulse.size(); ++i) {
        traces.pulse[i] = TraceSwing * signal[2 * i] * gridStep + baseline;
    }
    traces.pulseTimeStep = 1.0 / (2.0 * fs);
    traces.hasPulse = true;
}

}  // namespace nerivane
