#!/usr/bin/python3
"""Writes the golden data of the prototype family tests.

Run with Debian's interpreter and python3-mpmath:

    /usr/bin/python3 tests/data/make_reference_roots.py

It writes, beside itself:

  reference_roots.txt   the roots of every family polynomial for N = 1 to 20, and the
                        polynomials' coefficients, computed in 60-digit arithmetic from the
                        definitions (integers and rationals kept exact as long as possible)
  bessel_3db_poles.txt  the Bessel sections scaled so that the cascade is 3 dB down at
                        1 rad/s, as the classic Bessel tables list them

Nothing here starts from a double: the family parameters are turned into e from their
decimal text, the optimum-L polynomials are built from Legendre polynomials with
fractions, and every root is polished and its residual checked before it is written.
"""

import math
import os
from fractions import Fraction

import mpmath
from mpmath import mp, mpf, mpc

mp.dps = 60

MAX_N = 20
HERE = os.path.dirname(os.path.abspath(__file__))

CHEBYSHEV_RIPPLES = ("0.0", "0.2", "1.0", "3.0")
PAPOULIS_RIPPLES = ("0.2", "1.0")
ADJGAUSS_GAMMAS = ("-1", "-0.7", "0", "0.5", "1")

# Residual accepted after polishing, relative to sum |a_i| |r|^i: far below anything a double
# can resolve, so the written digits are all correct.
RESIDUAL_LIMIT = mpf(10) ** -45


# ---------------------------------------------------------------------------------------------
# Optimum-L polynomials from the Legendre construction, exact.


def poly_mul(a, b):
    """Product of two polynomials held lowest power first."""
    out = [Fraction(0)] * (len(a) + len(b) - 1)
    for i, ai in enumerate(a):
        for j, bj in enumerate(b):
            out[i + j] += ai * bj
    return out


def poly_add(a, b):
    n = max(len(a), len(b))
    return [(a[i] if i < len(a) else 0) + (b[i] if i < len(b) else 0) for i in range(n)]


def poly_scale(a, c):
    return [c * x for x in a]


def poly_eval(a, x):
    acc = Fraction(0)
    for c in reversed(a):
        acc = acc * x + c
    return acc


def poly_compose(a, b):
    """a(b(u)) by Horner's scheme, both lowest power first."""
    out = [Fraction(0)]
    for c in reversed(a):
        out = poly_add(poly_mul(out, b), [c])
    return out


def legendre(count):
    """P_0 .. P_{count-1} in u, lowest power first, by Bonnet's recurrence."""
    rows = [[Fraction(1)], [Fraction(0), Fraction(1)]]
    for i in range(1, count - 1):
        up = poly_scale(poly_mul([Fraction(0), Fraction(1)], rows[i]), Fraction(2 * i + 1, i + 1))
        rows.append(poly_add(up, poly_scale(rows[i - 1], Fraction(-i, i + 1))))
    return rows[:count]


def optimum_l(n):
    """L_n(x), x = w^2, as integers, highest power first.

    Odd n = 2k+1: the integral from -1 to 2x-1 of [sum_{i<=k} (2i+1) P_i(u)]^2 du.
    Even n = 2k+2: the integral from -1 to 2x-1 of (u+1) [sum over i<=k, i = k mod 2, of
    (2i+1) P_i(u)]^2 du. Either is then scaled so that L_n(1) = 1.
    """
    p = legendre(n + 1)
    if n % 2:
        k = (n - 1) // 2
        terms = range(0, k + 1)
        weight = [Fraction(1)]
    else:
        k = (n - 2) // 2
        terms = range(k % 2, k + 1, 2)
        weight = [Fraction(1), Fraction(1)]
    inner = [Fraction(0)]
    for i in terms:
        inner = poly_add(inner, poly_scale(p[i], Fraction(2 * i + 1)))
    integrand = poly_mul(weight, poly_mul(inner, inner))
    antiderivative = [Fraction(0)] + [c / (i + 1) for i, c in enumerate(integrand)]
    antiderivative[0] = -poly_eval(antiderivative, Fraction(-1))
    in_x = poly_compose(antiderivative, [Fraction(-1), Fraction(2)])
    in_x = poly_scale(in_x, 1 / poly_eval(in_x, Fraction(1)))
    while len(in_x) > n + 1 and in_x[-1] == 0:
        in_x.pop()
    assert len(in_x) == n + 1, n
    assert all(c.denominator == 1 for c in in_x), (n, in_x)
    return [int(c) for c in reversed(in_x)]


OPTIMUM_L_FIRST_ROWS = {
    1: [1, 0],
    2: [1, 0, 0],
    3: [3, -3, 1, 0],
    4: [6, -8, 3, 0, 0],
    5: [20, -40, 28, -8, 1, 0],
}


# ---------------------------------------------------------------------------------------------
# Family polynomials, highest power first, as mpf values (exact where the definition is).


def decimal(text):
    return mpf(text)


def clamp(lo, x, hi):
    return lo if x < lo else (hi if x > hi else x)


def bessel_polynomial(n):
    coefficients = [mpf(1)]
    for i in range(n - 1, -1, -1):
        value = Fraction(math.factorial(2 * n - i),
                         math.factorial(i) * math.factorial(n - i) * 2 ** (n - i))
        assert value.denominator == 1
        coefficients.append(mpf(int(value)))
    return coefficients


def even_polynomial(coefficient_of_s2k, n):
    """The degree-2n polynomial sum_k c_k s^(2k), highest power first."""
    coefficients = []
    for k in range(n, -1, -1):
        coefficients.append(coefficient_of_s2k(k))
        if k:
            coefficients.append(mpf(0))
    return coefficients


def gaussian_polynomial(n):
    return even_polynomial(lambda k: (-1) ** k / mpf(math.factorial(k)), n)


def adjgauss_exponent(gamma):
    return 2 * gamma if gamma > 0 else gamma


def adjgauss_polynomial(n, gamma):
    g = adjgauss_exponent(gamma)
    return even_polynomial(
        lambda k: mpf(1) if k == 0 else (-1) ** k * mpf(math.factorial(k)) ** g, n)


def chebyshev_e(ripple):
    return clamp(mpf("1e-5"), mp.sqrt(mpf(10) ** (mpf("0.1") * ripple) - 1), mpf("0.996"))


def papoulis_e(ripple):
    return clamp(mpf("0.001"), mp.sqrt(mpf(10) ** (mpf("0.5") * ripple) - 1), mpf(10000))


def papoulis_polynomial(n, ripple):
    e = papoulis_e(ripple)
    row = optimum_l(n)  # highest power of x first
    x_coefficients = list(reversed(row))  # lowest first
    return even_polynomial(
        lambda k: mpf(1) if k == 0 else e * (-1) ** k * x_coefficients[k], n)


# ---------------------------------------------------------------------------------------------
# Roots.


def horner_with_derivative(coefficients, z):
    value = mpc(0)
    derivative = mpc(0)
    for c in coefficients:
        derivative = derivative * z + value
        value = value * z + c
    return value, derivative


def absolute_sum(coefficients, z):
    """sum |a_i| |z|^i, the scale of p(z) against which residuals are judged."""
    r = abs(z)
    acc = mpf(0)
    for c in coefficients:
        acc = acc * r + abs(c)
    return acc


def condition_number(coefficients, z):
    _, derivative = horner_with_derivative(coefficients, z)
    return absolute_sum(coefficients, z) / (abs(z) * abs(derivative))


def polish(coefficients, z):
    with mp.workdps(mp.dps + 40):
        for _ in range(20):
            value, derivative = horner_with_derivative(coefficients, z)
            step = value / derivative
            z -= step
            if abs(step) <= abs(z) * mpf(10) ** -(mp.dps + 30):
                break
    return z


def roots_of(coefficients):
    """All roots of a polynomial (highest power first), polished and checked."""
    degree = len(coefficients) - 1
    even = degree % 2 == 0 and all(c == 0 for c in coefficients[1::2])
    if even and degree > 0:
        # The even polynomials are solved in x = s^2 (half the degree, far better behaved),
        # then both square roots of every x root are polished on the full polynomial.
        half = coefficients[0::2]
        x_roots = mpmath.polyroots(half, maxsteps=2000, extraprec=600)
        candidates = []
        for x in x_roots:
            s = mp.sqrt(mpc(x))
            candidates += [s, -s]
    else:
        candidates = list(mpmath.polyroots(coefficients, maxsteps=2000, extraprec=600))
    roots = [polish(coefficients, mpc(z)) for z in candidates]
    assert len(roots) == degree
    for z in roots:
        value, _ = horner_with_derivative(coefficients, z)
        assert abs(value) <= RESIDUAL_LIMIT * absolute_sum(coefficients, z), (coefficients, z)
    # Distinct roots whose elementary symmetric functions give back the polynomial: no root
    # was found twice while another was missed.
    for i in range(degree):
        for j in range(i + 1, degree):
            assert abs(roots[i] - roots[j]) > mpf(10) ** -20 * abs(roots[i]), (i, j)
    rebuilt = [mpc(1)]
    for z in roots:
        rebuilt = [a - z * b for a, b in zip(rebuilt + [0], [0] + rebuilt)]
    lead = coefficients[0]
    scale = max(abs(c) for c in coefficients)
    for a, b in zip(rebuilt, coefficients):
        assert abs(a * lead - b) <= mpf(10) ** -35 * scale, (a * lead, b)
    return sorted(roots, key=lambda z: (z.real, z.imag))


# ---------------------------------------------------------------------------------------------
# Closed forms.

HALF_PI = mp.pi / 2


def butterworth_poles(n):
    poles = []
    for k in range(n):
        t = (2 * k + 1) * HALF_PI / n
        poles.append(mpc(-mp.sin(t), mp.cos(t)))
    return poles


def chebyshev_poles(n, ripple):
    a = mp.asinh(1 / chebyshev_e(ripple)) / n
    poles = []
    for k in range(n):
        t = (2 * k + 1) * HALF_PI / n
        poles.append(mpc(-mp.sinh(a) * mp.sin(t), mp.cosh(a) * mp.cos(t)))
    return poles


# ---------------------------------------------------------------------------------------------
# Output.


def number(x):
    return mpmath.nstr(x, 18, min_fixed=1, max_fixed=0, strip_zeros=False)


def short(x):
    return mpmath.nstr(x, 4, min_fixed=1, max_fixed=0)


def root_line(family, param, n, z, kappa):
    im = z.imag if abs(z.imag) > mpf(10) ** -50 * abs(z) else mpf(0)
    return f"root {family} {param} {n} {number(z.real)} {number(im)} {short(kappa)}"


def coefficient_line(family, param, n, coefficients):
    return f"poly {family} {param} {n} {len(coefficients) - 1} " + " ".join(
        number(c) for c in coefficients)


def polynomial_families():
    for n in range(1, MAX_N + 1):
        yield "bessel", "0", n, bessel_polynomial(n)
    for n in range(1, MAX_N + 1):
        yield "gaussian", "0", n, gaussian_polynomial(n)
    for gamma in ADJGAUSS_GAMMAS:
        for n in range(1, MAX_N + 1):
            yield "adjgauss", gamma, n, adjgauss_polynomial(n, decimal(gamma))
    for ripple in PAPOULIS_RIPPLES:
        for n in range(1, MAX_N + 1):
            yield "papoulis", ripple, n, papoulis_polynomial(n, decimal(ripple))


HEADER = """\
# Reference roots of the prototype families, N = 1 to 20.
# Made by tests/data/make_reference_roots.py (Debian python3 with python3-mpmath, 60 digits);
# do not edit, run the script again.
#
# Lines:
#   poly FAMILY PARAM N DEGREE c_0 ... c_DEGREE   the family polynomial, highest power first
#   root FAMILY PARAM N RE IM KAPPA               one root of it, or one closed-form pole
# FAMILY is butterworth, chebyshev, bessel, gaussian, adjgauss or papoulis; PARAM is the
# ripple in dB (chebyshev, papoulis), gamma (adjgauss) or 0. The roots of a case are listed
# in no particular order; every root the builder delivers is listed, so there are N of them
# for butterworth, chebyshev and bessel and 2N for the others.
#
# The polynomials are exactly the builders' definitions, evaluated without rounding:
#   bessel:   s^N + sum_i (2N-i)!/(i! (N-i)! 2^(N-i)) s^i
#   gaussian: sum_k (-1)^k s^(2k) / k!
#   adjgauss: 1 + sum_{k>=1} (-1)^k (k!)^g s^(2k), g = 2 gamma for gamma > 0, else gamma.
#             The roots are those of this polynomial BEFORE the builder multiplies every
#             imaginary part by 1.1: the test applies that stretch itself.
#   papoulis: 1 + e L_N(-s^2), e = sqrt(10^(0.5 ripple) - 1) clamped to [0.001, 10000], with
#             the optimum-L polynomial L_N built here from Legendre polynomials in exact
#             rationals (its integer coefficients follow on the optL lines).
# The closed forms:
#   butterworth: pole k = (-sin t, cos t), t = (2k+1) pi / (2N)
#   chebyshev:   a = asinh(1/e)/N, pole k = (-sinh a sin t, cosh a cos t), with
#                e = sqrt(10^(0.1 ripple) - 1) clamped to [1e-5, 0.996]
#
# KAPPA is the relative condition number of the root, sum_i |a_i| |r|^i / (|r| |p'(r)|): a
# relative change of eps in every coefficient moves the root by at most about KAPPA eps,
# relative to |r|. It is 1 for the closed forms.
#
# Every root was polished by Newton's method at 100 digits; its residual is below 1e-45 of
# sum |a_i| |r|^i, and the roots multiplied out give back the polynomial's coefficients.
"""


def write_reference_roots(path):
    lines = [HEADER.rstrip("\n")]
    lines.append("#   optL N c_N ... c_0                            L_N(x), highest power first")
    for n in range(1, MAX_N + 1):
        row = optimum_l(n)
        if n in OPTIMUM_L_FIRST_ROWS:
            assert row == OPTIMUM_L_FIRST_ROWS[n], (n, row)
        assert row[-1] == 0 and sum(row) == 1
        lines.append(f"optL {n} " + " ".join(str(c) for c in row))
    for n in range(1, MAX_N + 1):
        for z in butterworth_poles(n):
            lines.append(root_line("butterworth", "0", n, z, 1))
    for ripple in CHEBYSHEV_RIPPLES:
        for n in range(1, MAX_N + 1):
            for z in chebyshev_poles(n, decimal(ripple)):
                lines.append(root_line("chebyshev", ripple, n, z, 1))
    worst = {}
    for family, param, n, coefficients in polynomial_families():
        lines.append(coefficient_line(family, param, n, coefficients))
        for z in roots_of(coefficients):
            kappa = condition_number(coefficients, z)
            key = (family, param)
            worst[key] = max(worst.get(key, mpf(0)), kappa)
            lines.append(root_line(family, param, n, z, kappa))
    with open(path, "w") as out:
        out.write("\n".join(lines) + "\n")
    for (family, param), kappa in worst.items():
        print(f"{family} {param}: largest condition number {short(kappa)}")


# ---------------------------------------------------------------------------------------------
# Bessel sections normalised to 3 dB at 1 rad/s.


def magnitude_squared(roots, w):
    """|H(jw)|^2 of the all-pole filter with these poles and H(0) = 1."""
    acc = mpf(1)
    for z in roots:
        acc *= abs(z) ** 2 / abs(mpc(0, w) - z) ** 2
    return acc


def crossing_frequency(roots, magnitude):
    target = magnitude**2
    lo, hi = mpf(0), mpf(1)
    while magnitude_squared(roots, hi) > target:
        hi *= 2
    w = mp.findroot(lambda w: magnitude_squared(roots, w) - target, (lo + hi) / 2, tol=1e-50)
    assert abs(magnitude_squared(roots, w) - target) < mpf(10) ** -45
    # Magnitude falls monotonically for a Bessel filter, so the crossing found is the only one.
    assert magnitude_squared(roots, w * (1 - mpf(10) ** -6)) > target
    return w


BESSEL_HEADER = """\
# Bessel low-pass sections scaled so that the whole cascade is 3 dB down (|H| = 1/sqrt 2)
# at 1 rad/s, N = 2 to 20, as the classic Bessel filter tables list them.
# Made by tests/data/make_reference_roots.py (Debian python3 with python3-mpmath, 60 digits);
# do not edit, run the script again.
#
# Lines:
#   w3db N W3 W7071           the 3 dB frequency of the unscaled reverse Bessel polynomial
#                             (poles of delay 1 s); the sections below are its poles / W3.
#                             W7071 is where |H| falls to 0.7071, a little beyond W3
#   section N ORDER W0 DAMPING Q
# ORDER is 1 for the real pole (W0 = |p|, DAMPING 1, Q 0.5) and 2 for a conjugate pair
# (W0 = |p|, DAMPING = -Re p / |p|, Q = 1 / (2 DAMPING)). Sections are listed from the highest
# damping to the lowest, the real pole counting as damping 1.
#
# A corner taken as the first point of a grid of step h rad/s (on the unscaled poles) where
# |H| < 0.7071 lands in [W7071, W7071 + h), so the W0 scaled by it are these W0 times
# W3 / corner: smaller by up to about h / W3 relative (a little more, as W7071 > W3). DAMPING
# and Q do not depend on the scaling at all.
"""


def write_bessel_3db(path):
    lines = [BESSEL_HEADER.rstrip("\n")]
    for n in range(2, MAX_N + 1):
        roots = roots_of(bessel_polynomial(n))
        w3 = crossing_frequency(roots, 1 / mp.sqrt(2))
        w7071 = crossing_frequency(roots, mpf("0.7071"))
        lines.append(f"w3db {n} {number(w3)} {number(w7071)}")
        sections = []
        for z in roots:
            if abs(z.imag) <= mpf(10) ** -40 * abs(z):
                sections.append((mpf(1), 1, abs(z) / w3))
            elif z.imag > 0:
                sections.append((-z.real / abs(z), 2, abs(z) / w3))
        assert len(sections) == (n + 1) // 2
        for damping, order, w0 in sorted(sections, key=lambda item: -item[0]):
            lines.append(f"section {n} {order} {number(w0)} {number(damping)} "
                         f"{number(1 / (2 * damping))}")
    with open(path, "w") as out:
        out.write("\n".join(lines) + "\n")


def main():
    write_reference_roots(os.path.join(HERE, "reference_roots.txt"))
    write_bessel_3db(os.path.join(HERE, "bessel_3db_poles.txt"))


if __name__ == "__main__":
    main()
