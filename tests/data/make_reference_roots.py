#!/usr/bin/python3
"""Writes reference_roots.txt and bessel_3db_poles.txt beside itself in 60-digit arithmetic;
run with Debian's python3-mpmath: /usr/bin/python3 make_reference_roots.py. Nothing starts
from a double: parameters are read from their decimal text, the optimum-L polynomials are
built from Legendre polynomials in fractions, and every root is polished and checked."""

import math
import os
from fractions import Fraction

import mpmath
from mpmath import mp, mpf, mpc

mp.dps = 60
ORDERS = range(1, 21)
CHEBYSHEV_RIPPLES = ("0.0", "0.001", "0.2", "1.0", "3.0")
PAPOULIS_RIPPLES = ("0.0", "1e-9", "0.2", "1.0", "90")  # 0, 1e-9 and 90 dB meet the clamps
ADJGAUSS_GAMMAS = ("-1", "-0.7", "0", "0.5", "1")
# Published rows: they pin the construction below, which the stored table is checked against.
PUBLISHED_OPTIMUM_L = {1: [1, 0], 2: [1, 0, 0], 3: [3, -3, 1, 0], 4: [6, -8, 3, 0, 0],
                       5: [20, -40, 28, -8, 1, 0]}


def mul(a, b):
    """Product of two polynomials held lowest power first."""
    return [sum(a[i] * b[k - i] for i in range(len(a)) if 0 <= k - i < len(b))
            for k in range(len(a) + len(b) - 1)]


def combine(ca, a, cb, b):
    """ca a + cb b."""
    a, b = (p + [0] * (max(len(a), len(b)) - len(p)) for p in (a, b))
    return [ca * x + cb * y for x, y in zip(a, b)]


def optimum_l(n):
    """L_n(x), x = w^2, as integers, highest power first.

    With Q_i(t) = P_i(2t - 1) the Legendre polynomials moved to [0, 1], L_n(x) is the integral
    from 0 to x of [sum_{i<=k} (2i+1) Q_i(t)]^2 for odd n = 2k+1, and of
    t [sum over i<=k, i = k mod 2, of (2i+1) Q_i(t)]^2 for even n = 2k+2, scaled to L_n(1) = 1.
    """
    q = [[Fraction(1)], [Fraction(-1), Fraction(2)]]
    for i in range(1, n):  # Bonnet: (i+1) Q_{i+1} = (2i+1)(2t-1) Q_i - i Q_{i-1}
        q.append(combine(Fraction(2 * i + 1, i + 1), mul(q[1], q[i]),
                         Fraction(-i, i + 1), q[i - 1]))
    k = (n - 1) // 2
    inner = [Fraction(0)]
    for i in (range(0, k + 1) if n % 2 else range(k % 2, k + 1, 2)):
        inner = combine(1, inner, 2 * i + 1, q[i])
    integrand = mul(inner, inner) if n % 2 else mul([0, 1], mul(inner, inner))
    integral = [Fraction(0)] + [c / (j + 1) for j, c in enumerate(integrand)]
    row = [c / sum(integral) for c in reversed(integral)]
    assert len(row) == n + 1 and all(c.denominator == 1 for c in row), (n, row)
    assert PUBLISHED_OPTIMUM_L.get(n, row) == row, n
    return [int(c) for c in row]


def epsilon(ripple, fraction, low, high):
    """sqrt(10^(fraction ripple) - 1) clamped to [low, high]."""
    return min(max(mp.sqrt(mpf(10) ** (mpf(fraction) * mpf(ripple)) - 1), mpf(low)), mpf(high))


def even(coefficient, n):
    """sum_{k<=n} coefficient(k) s^(2k)."""
    return [c for k in range(n, 0, -1) for c in (coefficient(k), mpf(0))] + [coefficient(0)]


def bessel(n, _):
    """s^N + sum_i (2N-i)!/(i! (N-i)! 2^(N-i)) s^i."""
    f = math.factorial
    return [mpf(f(2 * n - i)) / (f(i) * f(n - i) * 2 ** (n - i)) for i in range(n, -1, -1)]


def adjgauss(n, gamma):
    """1 + sum_{k>=1} (-1)^k (k!)^g s^(2k), g = 2 gamma for gamma > 0, else gamma; the
    Gaussian's sum_k (-1)^k s^(2k) / k! is gamma = -1."""
    g = 2 * mpf(gamma) if mpf(gamma) > 0 else mpf(gamma)
    return even(lambda k: (-1) ** k * mpf(math.factorial(k)) ** g, n)


def papoulis(n, ripple):
    """1 + e L_N(-s^2), e = sqrt(10^(0.5 ripple) - 1) clamped to [0.001, 10000]."""
    e, x = epsilon(ripple, "0.5", "0.001", 10000), optimum_l(n)[::-1]
    return even(lambda k: mpf(1) if k == 0 else e * (-1) ** k * x[k], n)


def closed_form_poles(n, ripple=None):
    """Butterworth pole k = (-sin t, cos t), t = (2k+1) pi / 2N; Chebyshev (-sinh a sin t,
    cosh a cos t), a = asinh(1/e)/N, e = sqrt(10^(0.1 ripple) - 1) clamped to [1e-5, 0.996]."""
    a = mp.asinh(1 / epsilon(ripple, "0.1", "1e-5", "0.996")) / n if ripple else None
    sinh_a, cosh_a = (mp.sinh(a), mp.cosh(a)) if ripple else (1, 1)
    return [mpc(-sinh_a * mp.sin(t), cosh_a * mp.cos(t))
            for t in ((2 * k + 1) * (mp.pi / 2) / n for k in range(n))]


def horner(coefficients, z):
    """p(z), p'(z) and sum |a_i| |z|^i, the scale of p(z) against which residuals are judged."""
    value, derivative, size = mpc(0), mpc(0), mpf(0)
    for c in coefficients:
        derivative = derivative * z + value
        value = value * z + c
        size = size * abs(z) + abs(c)
    return value, derivative, size


def roots_of(coefficients):
    """All roots of a polynomial, polished by Newton's method at 100 digits and checked."""
    roots = []
    for z in map(mpc, mpmath.polyroots(coefficients, maxsteps=2000, extraprec=600)):
        with mp.workdps(mp.dps + 40):
            for _ in range(20):
                value, derivative, _ = horner(coefficients, z)
                z -= value / derivative
                if abs(value / derivative) <= abs(z) * mpf(10) ** -(mp.dps + 30):
                    break
        value, _, size = horner(coefficients, z)
        assert abs(value) <= mpf(10) ** -45 * size, (coefficients, z)
        # Polished to 130 digits, two copies of one root would coincide: distinct roots, as
        # many as the degree, are all the roots.
        assert all(abs(z - other) > mpf(10) ** -20 * abs(z) for other in roots), z
        roots.append(z)
    assert len(roots) == len(coefficients) - 1
    return sorted(roots, key=lambda z: (z.real, z.imag))


def number(x, digits=18):
    return mpmath.nstr(x, digits, min_fixed=1, max_fixed=0, strip_zeros=digits < 18)


def case_lines(family, param, n):
    """The poly line of a case, if it has a polynomial, and one root line for each root."""
    coefficients = None
    if family in ("butterworth", "chebyshev"):
        roots = closed_form_poles(n, param if family == "chebyshev" else None)
    else:
        coefficients = {"bessel": bessel, "gaussian": lambda n, _: adjgauss(n, "-1"),
                        "adjgauss": adjgauss, "papoulis": papoulis}[family](n, param)
        roots = roots_of(coefficients)
        yield f"poly {family} {param} {n} {len(coefficients) - 1} " + " ".join(
            map(number, coefficients))
    for z in roots:
        if coefficients:
            _, derivative, size = horner(coefficients, z)
        kappa = size / (abs(z) * abs(derivative)) if coefficients else 1
        im = z.imag if abs(z.imag) > mpf(10) ** -50 * abs(z) else mpf(0)
        yield f"root {family} {param} {n} {number(z.real)} {number(im)} {number(kappa, 4)}"


REFERENCE_HEADER = """\
# Made by make_reference_roots.py, where the definitions are; do not edit, run it again.
#   optL N c_N ... c_0                            the optimum-L polynomial, highest power first
#   poly FAMILY PARAM N DEGREE c_0 ... c_DEGREE   the family polynomial, highest power first
#   root FAMILY PARAM N RE IM KAPPA               every root the builder delivers, any order
# PARAM is the ripple in dB, gamma (adjgauss) or 0. The adjgauss roots are the polynomial's,
# before the builder stretches imaginary parts by 1.1. KAPPA is the root's relative condition
# number sum_i |a_i| |r|^i / (|r| |p'(r)|), 1 for the closed forms."""


def reference_lines():
    yield REFERENCE_HEADER
    for n in ORDERS:
        yield f"optL {n} " + " ".join(map(str, optimum_l(n)))
    for family, params in (("butterworth", ("0",)), ("chebyshev", CHEBYSHEV_RIPPLES),
                           ("bessel", ("0",)), ("gaussian", ("0",)),
                           ("adjgauss", ADJGAUSS_GAMMAS), ("papoulis", PAPOULIS_RIPPLES)):
        for param in params:
            for n in ORDERS:
                yield from case_lines(family, param, n)


BESSEL_HEADER = """\
# Bessel sections 3 dB down at 1 rad/s as the classic tables list them, by damping; made by
# make_reference_roots.py, do not edit.
#   w3db N W3 W7071                where |H| of the reverse Bessel polynomial falls to
#                                  1/sqrt 2 and to 0.7071; the sections are its poles / W3
#   section N ORDER W0 DAMPING Q   ORDER 1 for the real pole, 2 for a conjugate pair"""


def crossing_frequency(roots, level):
    """Where |H(jw)| of the all-pole filter with these poles and H(0) = 1 falls to level."""
    def excess(w):
        return mp.fprod(abs(z) ** 2 / abs(mpc(0, w) - z) ** 2 for z in roots) - level ** 2
    hi = mpf(1)
    while excess(hi) > 0:
        hi *= 2
    w = mp.findroot(excess, hi / 2, tol=1e-50)
    assert abs(excess(w)) < mpf(10) ** -45
    # Magnitude falls monotonically for a Bessel filter, so the crossing found is the only one.
    assert excess(w * (1 - mpf(10) ** -6)) > 0
    return w


def bessel_lines():
    yield BESSEL_HEADER
    for n in ORDERS[1:]:
        roots = roots_of(bessel(n, None))
        w3 = crossing_frequency(roots, 1 / mp.sqrt(2))
        yield f"w3db {n} {number(w3)} {number(crossing_frequency(roots, mpf('0.7071')))}"
        real = [z for z in roots if abs(z.imag) <= mpf(10) ** -40 * abs(z)]
        sections = [(mpf(1), 1, abs(z) / w3) for z in real]
        sections += [(-z.real / abs(z), 2, abs(z) / w3)
                     for z in roots if z not in real and z.imag > 0]
        assert len(sections) == (n + 1) // 2
        for damping, order, w0 in sorted(sections, key=lambda item: -item[0]):
            yield f"section {n} {order} {number(w0)} {number(damping)} {number(1 / (2 * damping))}"


if __name__ == "__main__":
    assert bessel(3, None) == [1, 6, 15, 15]  # the textbook cubic
    for name, lines in (("reference_roots.txt", reference_lines()),
                        ("bessel_3db_poles.txt", bessel_lines())):
        with open(os.path.join(os.path.dirname(os.path.abspath(__file__)), name), "w") as out:
            out.write("\n".join(lines) + "\n")
