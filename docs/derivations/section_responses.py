#!/usr/bin/python3
"""Derives the section responses of the MFB high pass and the notch, and checks the closed
forms of src/circuit/Sectionresponses.cpp against the node solution of each section circuit.

Run with Debian's interpreter and python3-sympy:

    /usr/bin/python3 docs/derivations/section_responses.py

Each circuit is solved by nodal analysis with the op amp as an internal node x held at
A*(v(p) - v(m)) behind the output resistance Ro. The current Ro carries is (x - v(out))/Ro; the
output node's equation is multiplied through by Ro so that Ro = 0 stays a polynomial case.

The script prints, for the MFB high pass (both orders) and the notch, the coefficients in the
grouped form the C++ uses, after checking that the grouping is the node solution and that it
tends to the ideal response as A grows with Ro = 0. For the other five circuits it checks the
routines' own coefficient forms: the VCVS low pass and both band passes must be the node
solution exactly; the MFB low pass and VCVS high pass forms differ from it, and the difference
printed here must vanish relative to the response as A grows.
"""

import sympy as sp

s, A, Ro = sp.symbols("s A Ro")
R1, R2, R3, R4, C1, C2 = sp.symbols("R1 R2 R3 R4 C1 C2", positive=True)


def conductance(r):
    return 1 / r


def capacitance(c):
    return s * c


def node_solution(parts, wires=()):
    """v(out)/v(in) as (N, D) polynomials in s; parts are (node, node, admittance), wires join
    nodes into one. The op amp's inputs are the nodes p and m."""
    parent = {}

    def find(n):
        while parent.get(n, n) != n:
            n = parent[n]
        return n

    for a, b in wires:
        ra, rb = find(a), find(b)
        if rb in ("gnd", "in", "out"):
            ra, rb = rb, ra
        if ra != rb:
            parent[rb] = ra
    parts = [(find(a), find(b), y) for a, b, y in parts]
    p, m = find("p"), find("m")
    nodes = {n for a, b, _ in parts for n in (a, b)} | {p, m, "out"}
    unknown = sorted(n for n in nodes if n not in ("gnd", "in"))
    v = {n: sp.Symbol("v_" + n) for n in unknown}
    v["gnd"], v["in"] = 0, 1
    equations = []
    for n in unknown:
        leaving = sum(y * (v[n] - v[b]) for a, b, y in parts if a == n)
        leaving += sum(y * (v[n] - v[a]) for a, b, y in parts if b == n)
        if n == "out":
            equations.append(sp.expand(Ro * leaving - (A * (v[p] - v[m]) - v["out"])))
        else:
            equations.append(leaving)
    solution = sp.solve(equations, [v[n] for n in unknown], dict=True)[0]
    return sp.fraction(sp.factor(sp.together(solution[v["out"]])))


def poly(coefficients):
    """coefficients from the highest power down to s^0."""
    return sum(c * s**k for k, c in enumerate(reversed(coefficients)))


def difference(form, exact):
    """N_form * D_exact - N_exact * D_form: zero when the two are the same response."""
    return sp.expand(form[0] * exact[1] - exact[0] * form[1])


def ideal_limit(form, given):
    n, d = form
    return sp.simplify(sp.limit((n / d).subs(Ro, 0), A, sp.oo).subs(given))


def check_exact(name, form, exact, ideal):
    assert difference(form, exact) == 0, name + ": not the node solution"
    assert sp.simplify(ideal_limit(form, {}) - ideal) == 0, name + ": wrong ideal limit"
    print(f"{name}: the node solution; ideal limit holds")


def check_asymptotic(name, form, exact, ideal):
    gap = difference(form, exact)
    assert gap != 0
    # Relative to N*D, which grows as A^2, the gap must grow more slowly.
    scale = sp.expand(exact[0] * exact[1])
    assert sp.degree(gap, A) < sp.degree(scale, A), name + ": gap does not vanish"
    assert sp.simplify(ideal_limit(form, {}) - ideal) == 0, name + ": wrong ideal limit"
    print(f"{name}: tends to the node solution; node solution minus the routine's form:")
    for letter, f, e in (("N", form[0], exact[0]), ("D", form[1], exact[1])):
        for k in range(sp.degree(sp.expand(e), s), -1, -1):
            gap = sp.factor(sp.expand(e - f).coeff(s, k))
            if gap != 0:
                print(f"    {letter}{k}: {gap}")


def print_coefficients(name, letter, coefficients):
    top = len(coefficients) - 1
    for k, c in enumerate(coefficients):
        print(f"    {letter}{top - k} = {sp.ccode(c)};")


def derive(name, exact, numerator, denominator, ideal, given=None):
    form = (poly(numerator), poly(denominator))
    assert sp.expand(form[0] * exact[1] - exact[0] * form[1]) == 0, name + ": grouping"
    assert sp.expand(form[1] - exact[1]) == 0, name + ": scale differs from the solve"
    given = given or {}
    assert sp.simplify(ideal_limit(form, given) - ideal.subs(given)) == 0, name + ": ideal"
    print(f"{name}: degree {len(numerator) - 1} / {len(denominator) - 1}")
    print_coefficients(name, "N", numerator)
    print_coefficients(name, "D", denominator)


# The two fixed forms that only tend to the node solution.
MFB_LOW_PASS_FORM = (
    poly([(R2 + R3) * Ro * C1, -(A * R2 + Ro)]),
    poly([R1 * C1 * C2 * (Ro * R3 + R2 * Ro + R2 * R3 * A),
          Ro * R1 * C2 + A * R1 * R2 * C1 + (R2 + R3) * Ro * C1 + A * (R1 + R2) * R3 * C1,
          A * R1 + Ro]))
VCVS_HIGH_PASS_FORM = (
    poly([(A * R1 + Ro) * (R3 + R4) * C1 * R2 * C2, (R3 + R4) * C1 * Ro, 0]),
    poly([C1 * R2 * C2 * ((R3 + R4) * Ro + (A * R3 + R3 + R4 + R1) * R1),
          ((R1 + R3 + R4) * C1 + (R1 + R2 + R3 + R4) * C2) * Ro
          + (A * R1 * R3 + R1 * R4 + R1 * R3) * C1
          + ((R3 + R4 - A * R4) * R2 + (A * R3 + R3 + R4) * R1) * C2,
          A * R3 + Ro + R3 + R4]))

# Where the fixed forms are pinned by value: (label, form, parts R1 R2 R3 R4 C1 C2 as decimal
# text, a follower's R3 left as None). Each is evaluated at every (w, A, Ro) below.
GOLDEN_SECTIONS = (
    ("MFB LPF gain 10", "MfbLowPassResponse", MFB_LOW_PASS_FORM,
     ("3046", "30460", "17690", None, "1e-9", "47e-9")),
    ("MFB LPF first order", "MfbLowPassResponse", MFB_LOW_PASS_FORM,
     ("15920", "15920", "0", None, "10e-9", "0")),
    ("VCVS HPF follower", "VcvsHighPassResponse", VCVS_HIGH_PASS_FORM,
     ("11250", "22510", None, "0", "10e-9", "10e-9")),
    ("VCVS HPF gain 2", "VcvsHighPassResponse", VCVS_HIGH_PASS_FORM,
     ("8277", "6323", "12650", "12650", "22e-9", "22e-9")),
)
GOLDEN_POINTS = (("6283", "1e5", "75"), ("6e4", "20", "75"), ("2e6", "1.5", "1e3"))


def print_golden_values():
    """The fixed forms by value at finite A and Ro > 0, where no node solution can check them:
    what the routines must give there, as C++ table rows."""
    print("Fixed forms by value:")
    symbols = (R1, R2, R3, R4, C1, C2)
    for label, routine, form, parts in GOLDEN_SECTIONS:
        for w, gain, ro in GOLDEN_POINTS:
            values = {Ro: sp.Rational(ro), A: sp.Rational(gain)}
            for symbol, text in zip(symbols, parts):
                # A follower's open R3 is simulated as (Ro + 1) * 10 kOhm.
                values[symbol] = (sp.Rational(text) if text is not None
                                  else (sp.Rational(ro) + 1) * 10000)
            w_exact = sp.Rational(w)
            n = form[0].subs(values).subs(s, sp.I * w_exact)
            d = form[1].subs(values).subs(s, sp.I * w_exact)
            h = sp.expand(sp.nsimplify(n / d))
            re, im = (float(sp.N(part, 30)) for part in (sp.re(h), sp.im(h)))
            shown = ", ".join("Open" if x is None and symbol == R3 else
                              "Absent" if x is None else x
                              for symbol, x in zip(symbols, parts))
            print(f'    {{"{label}", {routine}, {{{shown}}}, {w}, {gain}, {ro}, '
                  f"{{{re!r}, {im!r}}}}},")


def main():
    K = 1 + R4 / R3

    vcvs_lpf = node_solution(
        [("in", "a", conductance(R1)), ("a", "p", conductance(R2)), ("p", "gnd", capacitance(C1)),
         ("a", "out", capacitance(C2)), ("m", "gnd", conductance(R3)),
         ("out", "m", conductance(R4))])
    P = (R3 + Ro + A * R3 + R4) * R2
    Q = (R3 + R4) * Ro
    check_exact(
        "VCVS low pass",
        (poly([C1 * C2 * Ro * R2 * (R3 + R4), C2 * Ro * (R3 + R4), (R3 + R4) * A]),
         poly([((P + Q) * R1 + Q * R2) * C1 * C2,
               (((1 - A) * R4 + R3 + Ro) * R1 + (R3 + R4) * Ro) * C2
               + ((1 + A) * R3 + Ro + R4) * (R1 + R2) * C1,
               (A + 1) * R3 + R4 + Ro])),
        vcvs_lpf,
        K / (R1 * R2 * C1 * C2 * s**2 + ((R1 + R2) * C1 - (R4 / R3) * R1 * C2) * s + 1))

    mfb_lpf = node_solution(
        [("in", "a", conductance(R1)), ("a", "out", conductance(R2)), ("a", "m", conductance(R3)),
         ("a", "gnd", capacitance(C2)), ("m", "out", capacitance(C1))], wires=[("p", "gnd")])
    check_asymptotic(
        "MFB low pass", MFB_LOW_PASS_FORM, mfb_lpf,
        -(R2 / R1) / (R2 * R3 * C1 * C2 * s**2 + C1 * (R2 + R3 + R2 * R3 / R1) * s + 1))

    vcvs_hpf = node_solution(
        [("in", "a", capacitance(C1)), ("a", "p", capacitance(C2)), ("p", "gnd", conductance(R2)),
         ("a", "out", conductance(R1)), ("m", "gnd", conductance(R3)),
         ("out", "m", conductance(R4))])
    check_asymptotic(
        "VCVS high pass", VCVS_HIGH_PASS_FORM, vcvs_hpf,
        K * R1 * R2 * C1 * C2 * s**2
        / (R1 * R2 * C1 * C2 * s**2 + (R1 * C1 + R1 * C2 - (K - 1) * R2 * C2) * s + 1))

    vcvs_hpf1 = node_solution(
        [("in", "p", capacitance(C2)), ("p", "gnd", conductance(R2)),
         ("m", "gnd", conductance(R3)), ("out", "m", conductance(R4))])
    check_exact(
        "VCVS high pass, first order",
        (poly([(R3 + R4) * C2 * R2 * A, 0]),
         poly([(A * R3 + Ro + R3 + R4) * C2 * R2, A * R3 + Ro + R3 + R4])),
        vcvs_hpf1, K * R2 * C2 * s / (R2 * C2 * s + 1))

    C = C1
    vcvs_bpf = node_solution(
        [("in", "a", conductance(R1)), ("a", "gnd", capacitance(C)), ("a", "p", capacitance(C)),
         ("p", "gnd", conductance(R3)), ("a", "out", conductance(R2)),
         ("out", "m", conductance(R4)), ("m", "gnd", conductance(R4))])
    P = (2 * Ro + (A + 2) * R2 + (2 - A) * R3) * R1 + (2 * Ro + (A + 2) * R2) * R3
    Q = Ro * R1 * R3 + Ro * R1 * R2 + Ro * R2 * R3 + P * R4
    check_exact(
        "VCVS band pass",
        (poly([2 * (A * R2 + Ro) * R3 * R4 * C, 2 * R4 * Ro]),
         poly([C**2 * R1 * R3 * (Ro * R2 + (2 * Ro + 2 * R2 + A * R2) * R4),
               Q * C + (2 * Ro * R4 + Ro * R2 + (A + 2) * R2 * R4) * R1 * C,
               (2 * R4 + R2 + R1) * Ro + (A + 2) * (R1 + R2) * R4])),
        vcvs_bpf,
        (2 / (R1 * C)) * s
        / (s**2 + (1 / R1 + 2 / R3 - 1 / R2) * s / C + (R1 + R2) / (R1 * R2 * R3 * C**2)))

    mfb_bpf = node_solution(
        [("in", "a", conductance(R1)), ("a", "gnd", conductance(R2)),
         ("a", "m", capacitance(C2)), ("a", "out", capacitance(C1)),
         ("m", "out", conductance(R3))], wires=[("p", "gnd")])
    check_exact(
        "MFB band pass",
        (poly([C1 * C2 * R2 * R3 * Ro, (C1 * Ro + C2 * Ro - A * C2 * R3) * R2, 0]),
         poly([C1 * C2 * R3 * (Ro * R1 + Ro * R2 + A * R1 * R2 + R1 * R2),
               ((R1 + R2) * Ro + (A + 1) * R1 * R2) * C1
               + ((R1 + R2) * Ro + R2 * R3 + (A * R2 + R3 + R2) * R1) * C2,
               (R1 + R2) * (A + 1)])),
        mfb_bpf,
        -C2 * R2 * R3 * s
        / (C1 * C2 * R1 * R2 * R3 * s**2 + R1 * R2 * (C1 + C2) * s + (R1 + R2)))

    # MFB high pass: C1 in-a, the second C1 a-m, C2 a-out, R1 a-gnd, R2 m-out, p grounded.
    mfb_hpf = node_solution(
        [("in", "a", capacitance(C1)), ("a", "m", capacitance(C1)),
         ("a", "out", capacitance(C2)), ("a", "gnd", conductance(R1)),
         ("m", "out", conductance(R2))], wires=[("p", "gnd")])
    derive("MFB high pass", mfb_hpf,
           [C1 * C1 * C2 * R1 * R2 * Ro, C1 * R1 * ((C1 + C2) * Ro - A * C1 * R2), 0, 0],
           [C1 * C1 * C2 * R1 * R2 * Ro,
            C1 * ((A + 1) * C2 * R1 * R2 + C1 * R1 * R2 + (C1 + C2) * R1 * Ro + C2 * R2 * Ro),
            (A + 1) * (2 * C1 + C2) * R1 + C1 * R2 + (C1 + C2) * Ro,
            A + 1],
           -(C1 / C2) * s**2
           / (s**2 + (2 * C1 + C2) * s / (R2 * C1 * C2) + 1 / (R1 * R2 * C1 * C2)))

    # First order: the second C1 is a wire (a and m one node) and R1 is open.
    mfb_hpf1 = node_solution(
        [("in", "a", capacitance(C1)), ("a", "out", capacitance(C2)),
         ("m", "out", conductance(R2))], wires=[("a", "m"), ("p", "gnd")])
    derive("MFB high pass, first order", mfb_hpf1,
           [C1 * C2 * R2 * Ro, C1 * (Ro - A * R2), 0],
           [C1 * C2 * R2 * Ro, (A + 1) * C2 * R2 + C1 * (R2 + Ro), A + 1],
           -R2 * C1 * s / (R2 * C2 * s + 1))

    # Notch: R1 in-a, R2 a-p, the shunt 2*C1 a-gnd, C1 in-b, C1 b-p, R3 b-out, m tied to out.
    notch = node_solution(
        [("in", "a", conductance(R1)), ("a", "p", conductance(R2)),
         ("a", "gnd", capacitance(2 * C1)), ("in", "b", capacitance(C1)),
         ("b", "p", capacitance(C1)), ("b", "out", conductance(R3))], wires=[("m", "out")])
    derive("Notch", notch,
           [2 * C1**3 * R1 * R2 * (A * R3 + Ro),
            C1**2 * (A * (R1 + R2) * R3 + (3 * R1 + R2) * Ro),
            2 * C1 * (A * R3 + Ro),
            A],
           [2 * C1**3 * R1 * R2 * ((A + 1) * R3 + Ro),
            C1**2 * ((A + 1) * (5 * R1 + R2) * R3 + 2 * R1 * R2 + (5 * R1 + R2) * Ro),
            C1 * (2 * (A + 1) * (R1 + R3) + R1 + R2 + 2 * Ro),
            A + 1],
           # With R3 = R1 R2 / (R1 + R2) the ideal limit is the notch of w0 = 1/(C1 sqrt(R1 R2))
           # and w0/Q = 2/(C1 R2), times a pole and a zero at -1/(2 C1 R3) that cancel.
           ((C1**2 * R1 * R2 * s**2 + 1) * (2 * C1 * R3 * s + 1))
           / ((C1**2 * R1 * R2 * s**2 + 2 * C1 * R1 * s + 1)
              * (2 * C1 * R3 * s + 1)),
           given={R3: R1 * R2 / (R1 + R2)})

    print_golden_values()


main()
