// A small modified-nodal-analysis solver, the reference the closed-form circuit routines are
// checked against: parts between named nodes, one complex solve per frequency. It works in
// long double so that its own rounding stays below the doubles it is compared with.
#pragma once

#include <algorithm>
#include <complex>
#include <cstddef>
#include <string>
#include <utility>
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
    // outputResistance from there to out (none when it is 0).
    void OpAmp(const std::string& p, const std::string& m, const std::string& out, double gain,
               double outputResistance) {
        std::string driven = out;
        if (outputResistance != 0.0) {
            driven = "x" + std::to_string(sources_.size());
            Resistor(driven, out, outputResistance);
        }
        sources_.push_back({Node(driven), 0, Node(p), Node(m), 1.0L / gain});
    }

    // v(out) / v(in) at s = j w, in driven by an ideal source.
    std::complex<double> Transfer(const std::string& in, const std::string& out, double w) {
        const int inNode = Node(in);
        const int outNode = Node(out);
        const std::size_t nodes = names_.size() - 1;  // ground has no unknown
        const std::size_t size = nodes + sources_.size() + 1;
        Matrix m(size, Row(size + 1, 0.0L));
        // Adds to one entry; ground has no row or column.
        const auto add = [&m](std::size_t row, int node, Value value) {
            if (node != 0) m[row][node - 1] += value;
        };

        for (const Part& part : parts_) {
            const Value y = part.capacitor ? Value(0.0L, w * part.value) : Value(part.value);
            Stamp(m, part.a, part.b, y);
        }
        // Source k's current leaves plus and enters minus; its own row fixes the voltage.
        for (std::size_t k = 0; k < sources_.size(); ++k) {
            const Source& source = sources_[k];
            const std::size_t row = nodes + k;
            add(row, source.plus, source.weight);
            add(row, source.minus, -source.weight);
            add(row, source.p, -1.0L);
            add(row, source.m, 1.0L);
            if (source.plus != 0) m[source.plus - 1][row] += 1.0L;
            if (source.minus != 0) m[source.minus - 1][row] -= 1.0L;
        }
        const std::size_t inputRow = size - 1;
        add(inputRow, inNode, 1.0L);
        m[inNode - 1][inputRow] = 1.0L;
        m[inputRow][size] = 1.0L;

        const std::vector<Value> v = Solve(m);
        return {static_cast<double>(v[outNode - 1].real()),
                static_cast<double>(v[outNode - 1].imag())};
    }

  private:
    using Value = std::complex<long double>;
    using Row = std::vector<Value>;
    using Matrix = std::vector<Row>;

    struct Part {
        int a, b;
        long double value;  // a conductance, or a capacitance
        bool capacitor;
    };
    // A wire: v(plus) - v(minus) = 0, with weight 1 and no controlling nodes (p = m = 0).
    // An op amp: v(plus) / gain - (v(p) - v(m)) = 0, minus being ground. Its equation is
    // divided by the gain so that a gain of 1e12 does not swamp the conductances.
    struct Source {
        int plus, minus;
        int p, m;
        long double weight;
    };

    int Node(const std::string& name) {
        const auto found = std::find(names_.begin(), names_.end(), name);
        if (found != names_.end()) return static_cast<int>(found - names_.begin());
        names_.push_back(name);
        return static_cast<int>(names_.size()) - 1;
    }

    static void Stamp(Matrix& m, int a, int b, Value y) {
        if (a != 0) m[a - 1][a - 1] += y;
        if (b != 0) m[b - 1][b - 1] += y;
        if (a != 0 && b != 0) {
            m[a - 1][b - 1] -= y;
            m[b - 1][a - 1] -= y;
        }
    }

    // Gaussian elimination with partial pivoting on the augmented matrix.
    static std::vector<Value> Solve(Matrix m) {
        const std::size_t n = m.size();
        for (std::size_t col = 0; col < n; ++col) {
            std::size_t pivot = col;
            for (std::size_t row = col + 1; row < n; ++row)
                if (std::abs(m[row][col]) > std::abs(m[pivot][col])) pivot = row;
            std::swap(m[col], m[pivot]);
            for (std::size_t row = col + 1; row < n; ++row) {
                const Value factor = m[row][col] / m[col][col];
                for (std::size_t k = col; k <= n; ++k) m[row][k] -= factor * m[col][k];
            }
        }
        std::vector<Value> x(n);
        for (std::size_t row = n; row-- > 0;) {
            Value sum = m[row][n];
            for (std::size_t k = row + 1; k < n; ++k) sum -= m[row][k] * x[k];
            x[row] = sum / m[row][row];
        }
        return x;
    }

    std::vector<std::string> names_{"gnd"};
    std::vector<Part> parts_;
    std::vector<Source> sources_;
};

}  // namespace nerivane::nodal
