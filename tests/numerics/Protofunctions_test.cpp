// The normalised low-pass prototype: the family builders, the optimum-L table and the section
// cascade against tests/data/reference_roots.txt and the published Bessel 3 dB tables, which
// tests/data/make_reference_roots.py computes in 60-digit arithmetic from the definitions; and
// the edge rules of pairing roots into sections and of the corner search.
#include "numerics/Protofunctions.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cfloat>
#include <cmath>
#include <complex>
#include <cstdint>
#include <cstring>
#include <fstream>
#include <map>
#include <span>
#include <sstream>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "numerics/Matherrmain.h"
#include "numerics/OptimumLTable.h"
#include "numerics/Polymain.h"

namespace nerivane {
namespace {

// One case of the file: a family, its parameter text and order, and what it lists.
struct ReferenceCase {
    std::string family, param;
    int n = 0;
    std::vector<Complex> roots;
    std::vector<double> kappas;        // each root's relative condition number
    std::vector<double> coefficients;  // highest power first; none for the closed forms
};

struct Reference {
    std::vector<ReferenceCase> cases;
    std::map<int, std::vector<std::int64_t>> optimumL;
};

const Reference& Data() {
    static const Reference data = [] {
        Reference result;
        std::ifstream in(NERIVANE_TEST_DATA_DIR "/reference_roots.txt");
        for (std::string line, kind, family, param; std::getline(in, line);) {
            std::istringstream fields(line);
            int n = 0, degree = 0;
            double a = 0.0, b = 0.0, kappa = 0.0;
            fields >> kind;
            if (kind == "optL" && fields >> n) {
                for (std::int64_t c = 0; fields >> c;) result.optimumL[n].push_back(c);
            }
            if (kind != "root" && kind != "poly") continue;
            fields >> family >> param >> n;
            auto& cases = result.cases;
            if (cases.empty() || cases.back().family != family || cases.back().param != param ||
                cases.back().n != n)
                cases.push_back({family, param, n, {}, {}, {}});
            if (kind == "root" && fields >> a >> b >> kappa) {
                cases.back().roots.push_back({a, b});
                cases.back().kappas.push_back(kappa);
            }
            if (kind == "poly" && fields >> degree) {
                while (fields >> a) cases.back().coefficients.push_back(a);
            }
        }
        return result;
    }();
    return data;
}

using Coefficients = std::span<double, MaxFamilyPolynomialSize>;

struct Builders {
    Response index;
    void (*roots)(int n, double param, FamilyRoots& out);
    int (*polynomial)(int n, double param, Coefficients out);  // none for the closed forms
};

const std::map<std::string, Builders> ByFamily = {
    {"butterworth",
     {Response::Butterworth, [](int n, double, FamilyRoots& out) { ButterworthPoles(n, out); },
      nullptr}},
    {"chebyshev", {Response::Chebyshev, ChebyshevPoles, nullptr}},
    {"bessel",
     {Response::Bessel, [](int n, double, FamilyRoots& out) { BesselRoots(n, out); },
      [](int n, double, Coefficients out) { return BesselPolynomial(n, out); }}},
    {"gaussian",
     {Response::Gaussian, [](int n, double, FamilyRoots& out) { GaussianRoots(n, out); },
      [](int n, double, Coefficients out) { return GaussianPolynomial(n, out); }}},
    {"adjgauss", {Response::AdjustableGauss, AdjustableGaussRoots, AdjustableGaussPolynomial}},
    {"papoulis", {Response::Papoulis, PapoulisRoots, PapoulisPolynomial}},
};

// Every family at every order from 1 to 20, Chebyshev and Papoulis also at the clamps of e. Each
// reference root takes the nearest delivered root not yet taken, so a root delivered twice while
// another is missing fails. A root of condition number kappa may move by about kappa * eps from
// the rounding of the coefficients alone; the finder adds a fraction of that (measured below 0.5
// for Papoulis near 20 poles, kappa up to 5e10). The coefficients are a few roundings deep; the
// odd powers of the even polynomials must be exact zeros.
TEST(FamilyBuilders, MatchEveryReferenceRootAndCoefficient) {
    ASSERT_EQ(Data().cases.size(), 18u * MaxPoles);
    for (const ReferenceCase& ref : Data().cases) {
        SCOPED_TRACE(ref.family + " " + ref.param + ", N = " + std::to_string(ref.n));
        const Builders& build = ByFamily.at(ref.family);
        FamilyRoots out;
        build.roots(ref.n, std::stod(ref.param), out);
        ASSERT_EQ(out.count, static_cast<int>(ref.roots.size()));
        EXPECT_EQ(out.note, nullptr);
        // The builder stretches Adjustable Gauss imaginary parts by 1.1; the file has the roots.
        const double stretch = ref.family == "adjgauss" ? 1.1 : 1.0;
        std::vector<Complex> found(out.roots.begin(), out.roots.begin() + out.count);
        for (std::size_t r = 0; r < ref.roots.size(); ++r) {
            const Complex want{ref.roots[r].re, ref.roots[r].im * stretch};
            const auto best = std::min_element(found.begin(), found.end(), [&](auto a, auto b) {
                return ComplexAbs(a - want) < ComplexAbs(b - want);
            });
            EXPECT_LE(ComplexAbs(*best - want) / ComplexAbs(want),
                      std::max(1e-9, 16.0 * ref.kappas[r] * DBL_EPSILON))
                << "reference root " << want.re << " " << want.im;
            found.erase(best);
        }
        if (build.polynomial == nullptr) continue;
        std::array<double, MaxFamilyPolynomialSize> coefficients{};
        const int degree = build.polynomial(ref.n, std::stod(ref.param), coefficients);
        ASSERT_EQ(static_cast<std::size_t>(degree) + 1, ref.coefficients.size());
        for (int i = 0; i <= degree; ++i) {
            const double want = ref.coefficients[i];
            EXPECT_TRUE(want == 0.0 ? coefficients[i] == 0.0
                                    : std::fabs(coefficients[i] / want - 1.0) <= 1e-14)
                << "coefficient " << i << " is " << coefficients[i] << ", not " << want;
        }
    }
}

constexpr double GridStep = 1.0 / 512.0;  // of the corner search, in rad/s

double W0(const ProtoSections& s, int i) {
    return s.DenS2[i] == 0.0 ? s.DenS0[i] : std::sqrt(s.DenS0[i]);
}

// Magnitude of the all-pole cascade at w rad/s, 1 at DC.
double CascadeMagnitude(const ProtoSections& s, int count, double w) {
    double h = 1.0;
    for (int i = 0; i < count; ++i)
        h *= s.DenS0[i] /
             std::abs(std::complex<double>(s.DenS0[i] - s.DenS2[i] * w * w, s.DenS1[i] * w));
    return h;
}

// One all-pole section per upper-left pole of the family, the real one first-order, ordered
// from the highest damping to the lowest and moved by the reported corner scale. The corner
// search stops at the first point of its grid below 0.7071, so the rescaled cascade is above
// that level one grid step (which shrinks with the frequencies) below 1 rad/s and below it at
// 1 rad/s; Butterworth needs no search and is 1/sqrt(2) there exactly. A single pole is the
// Butterworth one for every family, which the test below checks.
TEST(BuildPrototype, SectionsAreTheFamilysPolesByDampingThreeDbDownAtOneRadian) {
    for (const ReferenceCase& ref : Data().cases) {
        const double param = std::stod(ref.param);
        // Only ripples the ripple box reaches: 0.001 to 2 dB, for Chebyshev at most 1 dB, and
        // less from 16 poles on, where the innermost poles come within half a degree of the
        // imaginary axis.
        const double limit = ref.family == "chebyshev" ? (ref.n < 16 ? 1.0 : 0.25) : 2.0;
        const bool rippled = ref.family == "chebyshev" || ref.family == "papoulis";
        if (ref.n == 1 || (rippled && (param < 0.001 || param > limit))) continue;
        SCOPED_TRACE(ref.family + " " + ref.param + ", N = " + std::to_string(ref.n));
        const Builders& build = ByFamily.at(ref.family);
        const bool gauss = build.index == Response::AdjustableGauss;
        ProtoSections s;
        // The parameter the family does not use is set to nonsense.
        const PrototypeResult result =
            BuildPrototype(build.index, ref.n, gauss ? 7.0 : param, gauss ? param : 7.0, s);
        EXPECT_EQ(result.note, nullptr);
        ASSERT_EQ(result.sectionCount, (ref.n + 1) / 2);
        FamilyRoots roots;
        build.roots(ref.n, param, roots);
        std::vector<std::complex<double>> poles;  // a closed-form real pole may lie at -1e-16 j
        for (const Complex r : std::span(roots.roots).first(roots.count)) {
            if (r.re < 0.0 && r.im > -1e-9) poles.emplace_back(r.re, r.im);
        }
        std::sort(poles.begin(), poles.end(),
                  [](auto a, auto b) { return a.real() / std::abs(a) < b.real() / std::abs(b); });
        ASSERT_EQ(static_cast<int>(poles.size()), result.sectionCount);
        for (int i = 0; i < result.sectionCount; ++i) {
            const double damping = SectionDamping(s, i);
            const std::complex<double> pole =
                W0(s, i) / result.cornerScale *
                std::complex<double>(-damping, std::sqrt(1.0 - damping * damping));
            EXPECT_LE(std::abs(pole - poles[i]), 1e-12 * std::abs(poles[i]))
                << "section " << i << " has pole " << pole << ", family pole " << poles[i];
            EXPECT_EQ(s.DenS2[i] == 0.0, i == 0 && ref.n % 2 == 1) << "section " << i;
            EXPECT_TRUE(s.NumS2[i] == 0.0 && s.NumS1[i] == 0.0 && s.NumS0[i] == 1.0) << i;
        }
        const int count = result.sectionCount;
        EXPECT_GE(CascadeMagnitude(s, count, 1.0 - GridStep * result.cornerScale - 1e-9), 0.7071);
        const double atOne = CascadeMagnitude(s, count, 1.0);
        EXPECT_TRUE(build.index == Response::Butterworth ? std::fabs(atOne - M_SQRT1_2) < 1e-12
                                                         : atOne < 0.7071)
            << "|H| = " << atOne << " at 1 rad/s";
    }
}

// Published 3 dB-normalised Bessel sections, regenerated in high precision beside the data
// file. The program's corner is the first point of a 1/512 rad/s grid over the unscaled poles
// where the magnitude is below 0.7071, so it lies in [W7071, W7071 + h) and each section
// frequency is the published one times W3 / corner; the damping does not depend on it.
TEST(BuildPrototype, BesselMatchesThePublishedThreeDbNormalisedSections) {
    std::ifstream file(NERIVANE_TEST_DATA_DIR "/bessel_3db_poles.txt");
    ASSERT_TRUE(file.is_open());
    std::vector<double> w3(MaxPoles + 1), w7071(MaxPoles + 1);
    std::vector<std::vector<std::pair<double, double>>> table(MaxPoles + 1);  // damping, w0
    for (std::string line, kind; std::getline(file, line);) {
        std::istringstream fields(line);
        int n = 0, order = 0;
        double w0 = 0.0, damping = 0.0;
        fields >> kind >> n;
        if (kind == "w3db") fields >> w3[n] >> w7071[n];
        if (kind == "section" && fields >> order >> w0 >> damping)
            table[n].emplace_back(damping, w0);
    }
    for (int n = 2; n <= MaxPoles; ++n) {
        SCOPED_TRACE("N = " + std::to_string(n));
        ProtoSections s;
        const int count = BuildPrototype(Response::Bessel, n, 0.0, 0.0, s).sectionCount;
        ASSERT_EQ(count, static_cast<int>(table[n].size()));
        // From 14 poles on the roots' condition numbers pass 1e8 and the roots carry errors of
        // about condition number times epsilon (a few 1e-7 at 20 poles).
        const double rootError = n < 14 ? 1e-9 : 1e-6;
        for (int i = 0; i < count; ++i) {
            const double ratio = W0(s, i) / table[n][i].second;
            EXPECT_NEAR(SectionDamping(s, i), table[n][i].first, rootError) << "section " << i;
            EXPECT_LE(ratio, w3[n] / w7071[n] + rootError) << "section " << i;
            EXPECT_GT(ratio, w3[n] / (w7071[n] + GridStep) - rootError) << "section " << i;
        }
    }
}

// A single pole is the same first-order section whatever the family, even one beyond the menu;
// more poles of a family beyond the menu build nothing and leave every slot an all-pass unity.
TEST(BuildPrototype, OnePoleIsOneSectionForAnyFamilyAndUnknownFamiliesBuildNothing) {
    for (int family = -1; family <= 8; ++family) {
        SCOPED_TRACE(family);
        ProtoSections s;
        ASSERT_EQ(BuildPrototype(static_cast<Response>(family), 1, 0.5, 0.5, s).sectionCount, 1);
        EXPECT_TRUE(s.DenS2[0] == 0.0 && s.DenS1[0] == 1.0 && std::fabs(s.DenS0[0] - 1.0) < 1e-15);
        if (family >= Index(Response::Butterworth) && family <= Index(Response::AdjustableGauss))
            continue;
        EXPECT_EQ(BuildPrototype(static_cast<Response>(family), 4, 0.2, 0.0, s).sectionCount, 0);
        for (int i = 0; i < MaxSections; ++i)
            EXPECT_TRUE(s.DenS2[i] == 0.0 && s.DenS1[i] == 0.0 && s.DenS0[i] == 1.0 &&
                        s.NumS2[i] == 0.0 && s.NumS1[i] == 0.0 && s.NumS0[i] == 1.0)
                << "slot " << i;
    }
}

struct PrototypeCall {
    Response family;
    int poles;
    double ripple, gamma;
};

struct BuiltPrototype {
    PrototypeResult result;
    ProtoSections sections;
    std::vector<std::string> mathErrors;
    bool operator==(const BuiltPrototype& o) const {
        return result.sectionCount == o.result.sectionCount && result.note == o.result.note &&
               result.cornerScale == o.result.cornerScale &&
               std::memcmp(&sections, &o.sections, sizeof sections) == 0 &&
               mathErrors == o.mathErrors;
    }
};

BuiltPrototype Build(const PrototypeCall& call) {
    RecordingMathErrorLog log;
    InstallMathErrorLog(&log);
    BuiltPrototype built;
    built.result = BuildPrototype(call.family, call.poles, call.ripple, call.gamma, built.sections);
    InstallMathErrorLog(nullptr);
    built.mathErrors = log.lines;
    return built;
}

// A thread builds each prototype from nothing the first time it asks for it.
BuiltPrototype BuildOnNewThread(const PrototypeCall& call) {
    BuiltPrototype built;
    std::thread([&] { built = Build(call); }).join();
    return built;
}

// A build after another is the one a fresh thread makes, whichever argument changed, and a
// build that raised math errors raises them again when repeated.
TEST(BuildPrototype, ARepeatOrAChangeOfAnyArgumentBuildsWhatAFreshThreadBuilds) {
    const PrototypeCall before{Response::Chebyshev, 6, 0.5, 0.3};
    const std::vector<PrototypeCall> calls = {
        before,
        {Response::Papoulis, 6, 0.5, 0.3},
        {Response::Chebyshev, 7, 0.5, 0.3},
        {Response::Chebyshev, 6, 0.25, 0.3},
        {Response::AdjustableGauss, 6, 0.5, 0.3},
        {Response::AdjustableGauss, 6, 0.5, 0.6},
        {Response::Chebyshev, 6, -1.0, 0.3},  // math errors
    };
    for (std::size_t i = 1; i < calls.size(); ++i) {
        SCOPED_TRACE(i);
        const BuiltPrototype fresh = BuildOnNewThread(calls[i]);
        Build(i == 5 ? calls[4] : before);
        EXPECT_TRUE(Build(calls[i]) == fresh);
        EXPECT_TRUE(Build(calls[i]) == fresh);
        EXPECT_EQ(fresh.mathErrors.empty(), i + 1 < calls.size());
    }
}

TEST(RootsToSections, PairsConjugatesAndDropsWhatCannotBeASection) {
    const std::vector<Complex> roots = {
        {0.0, 2.0},  {-1.0, 1.0}, {0.0, -2.0}, {-1.0, -1.0},  // axis pair, left-half pair
        {-3.0, 0.0}, {-3.0, 0.0},                             // repeated real root: one section
        {1.0, 1.0},  {1.0, -1.0}, {2.0, 0.0},  {0.0, 0.0},    // right half plane, origin: none
        {-5.0, 4.0},                                          // no partner: none
    };
    const std::array<std::array<double, 3>, 3> expected{{{1, 0, 4}, {1, 2, 2}, {0, 1, 3}}};
    ProtoSections s;
    ResetSections(s);
    ASSERT_EQ(RootsToSections(roots, s), 3);
    for (int i = 0; i < 3; ++i)
        EXPECT_EQ((std::array{s.DenS2[i], s.DenS1[i], s.DenS0[i]}), expected[i]) << "section " << i;
}

TEST(NormaliseCorner, ResponseThatNeverFallsUsesTheLastGridPoint) {
    ProtoSections s;
    ResetSections(s);
    s.DenS1[0] = 1.0;
    s.DenS0[0] = 100.0;  // a pole far beyond the 11.7 rad/s the search covers
    EXPECT_DOUBLE_EQ(NormaliseCorner(1, s), 512.0 / 5999.0);
}

// The rows are exact integers up to 1e17: a wrong last digit moves the Papoulis coefficients by
// far less than the test above can see. The generator builds them from Legendre polynomials in
// fractions and checks its first rows against the published ones.
TEST(OptimumLTable, EveryRowIsTheReferenceRowAndOtherOrdersHaveNone) {
    ASSERT_EQ(Data().optimumL.size(), static_cast<std::size_t>(MaxPoles));
    for (const auto& [n, row] : Data().optimumL) {
        const std::span<const std::int64_t> stored = OptimumLCoefficients(n);
        EXPECT_EQ(std::vector<std::int64_t>(stored.begin(), stored.end()), row) << "N = " << n;
    }
    for (const int n : {-1, 0, MaxPoles + 1}) EXPECT_TRUE(OptimumLCoefficients(n).empty()) << n;
}

}  // namespace
}  // namespace nerivane
