// The command line's names for topologies, response families and the other choices, and their
// indices; the exported netlist's title uses them too.
#pragma once

#include <array>
#include <optional>
#include <string>
#include <string_view>

namespace nerivane {

inline constexpr std::array<std::string_view, 7> TopologyNames = {
    "vcvs-lpf", "mfb-lpf", "vcvs-hpf", "mfb-hpf", "vcvs-bpf", "mfb-bpf", "notch"};

inline constexpr std::array<std::string_view, 6> ResponseNames = {
    "butterworth", "chebyshev", "papoulis", "bessel", "gaussian", "adjustable-gauss"};

inline constexpr std::array<std::string_view, 6> SweepNames = {
    "linear", "half-to-double", "two-octaves", "three-octaves", "one-decade", "two-decades"};

inline constexpr std::array<std::string_view, 3> ModeNames = {"exact", "standard", "worst"};

// In the order of the plot check boxes: 10 dB and 1 dB magnitude, phase, group delay, pulse.
inline constexpr std::array<std::string_view, 5> TraceNames = {"mag10", "mag1", "phase", "gd",
                                                               "pulse"};
inline constexpr std::array<std::string_view, 2> MagnitudeNames = {"db", "linear"};
inline constexpr std::array<std::string_view, 2> PhaseNames = {"plain", "hilbert"};

// The index of name in names, if it is there.
template <std::size_t N>
std::optional<int> IndexOfName(const std::array<std::string_view, N>& names,
                               std::string_view name) {
    for (std::size_t i = 0; i < N; ++i) {
        if (names[i] == name) return static_cast<int>(i);
    }
    return std::nullopt;
}

// "a, b, c": the accepted names for a usage message.
template <std::size_t N>
std::string JoinNames(const std::array<std::string_view, N>& names) {
    std::string joined;
    for (std::size_t i = 0; i < N; ++i) {
        if (i > 0) joined += ", ";
        joined += names[i];
    }
    return joined;
}

// The name of an index, or "index N" for values that only the F5 key reaches.
template <std::size_t N>
std::string NameOfIndex(const std::array<std::string_view, N>& names, int index) {
    if (index >= 0 && index < static_cast<int>(N)) return std::string(names[index]);
    return "index " + std::to_string(index);
}
// The option name of a topology, family or sweep.
template <std::size_t N, typename Enum>
std::string NameOf(const std::array<std::string_view, N>& names, Enum value) {
    return NameOfIndex(names, Index(value));
}

}  // namespace nerivane
