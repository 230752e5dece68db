// The transform against the definition summed in long double, and its refusals. The pulses
// it makes are the golden table's.
#include "response/Fftfunctions.h"

#include <gtest/gtest.h>

#include <cmath>
#include <complex>
#include <limits>
#include <random>
#include <vector>

namespace nerivane {
namespace {

using LongComplex = std::complex<long double>;

constexpr double Eps = std::numeric_limits<double>::epsilon();

std::vector<double> RandomInterleaved(int n, unsigned seed) {
    std::mt19937_64 engine(seed);
    std::uniform_real_distribution<double> value(-1.0, 1.0);
    std::vector<double> data(2 * static_cast<std::size_t>(n));
    for (double& x : data) x = value(engine);
    return data;
}

// The definition, summed in long double: X[k] = scale * sum x[t] e^(sign j 2 pi k t / n).
std::vector<LongComplex> DirectDft(const std::vector<double>& data, int n, int type) {
    const long double sign = type == FftForward ? -1.0L : 1.0L;
    const long double scale = type == FftForward ? 1.0L / n : 1.0L;
    const long double twoPi = 6.283185307179586476925286766559L;
    std::vector<LongComplex> root(static_cast<std::size_t>(n));
    for (int m = 0; m < n; ++m) {
        const long double angle = twoPi * m / n;
        root[static_cast<std::size_t>(m)] = {std::cos(angle), sign * std::sin(angle)};
    }
    std::vector<LongComplex> out(static_cast<std::size_t>(n));
    for (int k = 0; k < n; ++k) {
        LongComplex sum = 0.0L;
        for (int t = 0; t < n; ++t) {
            const LongComplex x{data[2 * static_cast<std::size_t>(t)],
                                data[2 * static_cast<std::size_t>(t) + 1]};
            sum += x * root[static_cast<std::size_t>((static_cast<long long>(k) * t) % n)];
        }
        out[static_cast<std::size_t>(k)] = sum * scale;
    }
    return out;
}

// |got - want| / |want| over the whole vector (Euclidean norms).
double RelativeError(const std::vector<double>& got, const std::vector<LongComplex>& want) {
    long double error = 0.0L, norm = 0.0L;
    for (std::size_t k = 0; k < want.size(); ++k) {
        const LongComplex g{got[2 * k], got[2 * k + 1]};
        error += std::norm(g - want[k]);
        norm += std::norm(want[k]);
    }
    return static_cast<double>(std::sqrt(error / norm));
}

double RelativeError(const std::vector<double>& got, const std::vector<double>& want) {
    double error = 0.0, norm = 0.0;
    for (std::size_t i = 0; i < want.size(); ++i) {
        error += (got[i] - want[i]) * (got[i] - want[i]);
        norm += want[i] * want[i];
    }
    return std::sqrt(error / norm);
}

// A radix-2 transform's rounding error grows with the number of stages. One unit per stage is
// over four times the worst error measured at any size (0.22), and a wrong twiddle factor or
// index gives errors of order one.
double Tolerance(int n) {
    return Eps * std::log2(static_cast<double>(n));
}

TEST(Fft, MatchesDirectTransformAtEverySizeBothWays) {
    for (int n = 8; n <= 4096; n *= 2) {
        for (const int type : {FftForward, FftInverse}) {
            std::vector<double> data = RandomInterleaved(n, static_cast<unsigned>(n + type));
            const std::vector<LongComplex> want = DirectDft(data, n, type);
            Messages messages;
            ASSERT_TRUE(Fft(data, n, type, messages));
            EXPECT_LE(RelativeError(data, want), Tolerance(n)) << "n " << n << " type " << type;
        }
    }
}

TEST(Fft, ForwardThenInverseGivesTheDataBack) {
    for (const int n : {8, 64, 4096, 65536, 1048576}) {
        const std::vector<double> original = RandomInterleaved(n, 99);
        std::vector<double> data = original;
        Messages messages;
        ASSERT_TRUE(Fft(data, n, FftForward, messages));
        ASSERT_TRUE(Fft(data, n, FftInverse, messages));
        EXPECT_LE(RelativeError(data, original), 2.0 * Tolerance(n)) << n;
    }
}

// A size that is no power of two from 8 to 2^20, an unknown type or too few values is refused
// with one message and the data left alone.
TEST(Fft, BadSizeOrTypeIsRefusedAndLeavesTheDataAlone) {
    Messages messages;
    const struct {
        int n, type;
        std::size_t values;
    } cases[] = {{4, FftForward, 8},
                 {12, FftInverse, 24},
                 {0, FftForward, 16},
                 {-8, FftInverse, 16},
                 {2097152, FftForward, 4194304},
                 {8, 2, 16},
                 {8, -1, 16},
                 {16, FftForward, 31}};
    for (const auto& c : cases) {
        std::vector<double> data = RandomInterleaved(static_cast<int>(c.values / 2), 5);
        data.resize(c.values);
        const std::vector<double> before = data;
        EXPECT_FALSE(Fft(data, c.n, c.type, messages)) << c.n << " " << c.type;
        EXPECT_EQ(data, before) << c.n << " " << c.type;
    }
    ASSERT_EQ(messages.size(), std::size(cases));
    EXPECT_EQ(messages[0].text, "Invalid FFT type or size.");
    EXPECT_EQ(messages[0].caption, "FFT Error");
    for (const int n : {8, 1048576}) {
        std::vector<double> data(2 * static_cast<std::size_t>(n), 1.0);
        EXPECT_TRUE(Fft(data, n, FftForward, messages)) << n;
    }
    EXPECT_EQ(messages.size(), std::size(cases));
}

}  // namespace
}  // namespace nerivane
