// A small modified-nodal-analysis solver, the reference the closed-form section responses are
// checked against: parts between named nodes, one complex solve per frequency. It works in
// long double so that its own rounding stays below the doubles it is compared with.
#pragma once

#include <algorithm>
#include <complex>
#include <string>
#include <vector>

namespace nerivane::nodal {

class Circuit {
  public:
    void Resistor(const std::string& a, const std::string& b, double ohms) {
        parts_.push_back({Node(a), Node(b), 1.0L / ohms, false});
    }
    void Capacitor(const std::string& a, const std::string& b, double farads) {
        parts_.push_back({Node(a), Node(b), farads, true});
    }
    // Joins two nodes: a zero-volt source, whose current is one more unknown.
    void Wire(const std::string& a, const std::string& b) {
        sources_.push_back({Node(a), Node(b), 0, 0, 1.0L});
    }
    // The op amp: an internal node held at gain * (v(p) - v(m)) by an ideal source, and
    // outputResistance from there to out (none when it is 0). Its equation is divided by the
    // gain so that a gain of 1e12 does not swamp the conductances.
    void OpAmp(const std::string& p, const std::string& m, const std::string& out, double gain,
               double outputResistance) {
        const std::string driven = outputResistance != 0.0 ? "x" + out : out;
        if (outputResistance != 0.0) Resistor(driven, out, outputResistance);
        sources_.push_back({Node(driven), 0, Node(p), Node(m), 1.0L / gain});
    }

    // v(out) / v(in) at s = j w, in driven by a one-volt source.
    std::complex<double> Transfer(const std::string& in, const std::string& out, double w) {
        return Drive(in, out, w, false).vOut;
    }

    // The section as a two-port driven by one volt at in: v(out) and the current into in, and
    // with out shorted to ground the current out delivers into the short.
    struct Port {
        std::complex<double> vOut, iIn, iOut;
    };
    Port Drive(const std::string& in, const std::string& out, double w, bool outShorted) {
        std::vector<Source> sources = sources_;
        if (outShorted) sources.push_back({Node(out), 0, 0, 0, 1.0L});
        sources.push_back({Node(in), 0, 0, 0, 1.0L});
        const int output = Node(out), nodes = static_cast<int>(names_.size()) - 1;
        const int n = nodes + static_cast<int>(sources.size());
        // Unknowns from 1: the nodes, then each source's current. Ground, 0, has none.
        std::vector<std::vector<Value>> m(n, std::vector<Value>(n + 1));
        const auto add = [&m](int row, int col, Value v) {
            if (row != 0 && col != 0) m[row - 1][col - 1] += v;
        };
        for (const Part& part : parts_) {
            const Value y = part.capacitor ? Value(0.0L, w * part.value) : Value(part.value);
            add(part.a, part.a, y), add(part.b, part.b, y);
            add(part.a, part.b, -y), add(part.b, part.a, -y);
        }
        // A source's current leaves plus and enters minus; its own row fixes the voltage:
        // weight * (v(plus) - v(minus)) - (v(p) - v(m)) = 0, or 1 for the input.
        for (int k = 0, row = nodes + 1; k < static_cast<int>(sources.size()); ++k, ++row) {
            const Source& s = sources[k];
            add(row, s.plus, s.weight), add(row, s.minus, -s.weight);
            add(row, s.p, -1.0L), add(row, s.m, 1.0L);
            add(s.plus, row, 1.0L), add(s.minus, row, -1.0L);
        }
        m[n - 1][n] = 1.0L;
        // Gauss-Jordan elimination with partial pivoting.
        for (int col = 0; col < n; ++col) {
            const auto pivot = std::max_element(m.begin() + col, m.end(), [col](auto& a, auto& b) {
                return std::abs(a[col]) < std::abs(b[col]);
            });
            std::swap(m[col], *pivot);
            for (int row = 0; row < n; ++row)
                if (row != col)  // k falls so that m[row][col] changes last
                    for (int k = n; k >= col; --k)
                        m[row][k] -= m[row][col] / m[col][col] * m[col][k];
        }
        const auto unknown = [&m, n](int k) {
            const Value v = m[k - 1][n] / m[k - 1][k - 1];
            return std::complex<double>(static_cast<double>(v.real()),
                                        static_cast<double>(v.imag()));
        };
        // A source's current is the one leaving its plus node through the source.
        return {unknown(output), -unknown(n), outShorted ? unknown(n - 1) : 0.0};
    }

  private:
    using Value = std::complex<long double>;
    struct Part {
        int a, b;
        long double value;  // a conductance, or a capacitance
        bool capacitor;
    };
    struct Source {
        int plus, minus, p, m;  // a wire or the input has no controlling nodes (p = m = 0)
        long double weight;
    };

    int Node(const std::string& name) {
        const auto found = std::find(names_.begin(), names_.end(), name);
        if (found == names_.end()) names_.push_back(name);
        return static_cast<int>(std::find(names_.begin(), names_.end(), name) - names_.begin());
    }

    std::vector<std::string> names_{"gnd"};
    std::vector<Part> parts_;
    std::vector<Source> sources_;
};

}  // namespace nerivane::nodal
