#!/usr/bin/env python3
"""Reference values of the regularised incomplete beta function I_x(a, b) and
of its complement 1 - I_x(a, b), by mpmath at 40 significant digits.

Writes two tables beside this script:
  incbeta_grid.txt      shapes from 1e-2 to 1e5, balanced and very unbalanced
                        pairs, x over (0, 1) with both ends' neighbourhoods and
                        points placed around the mean in standard deviations;
                        then random arguments (fixed seed) with shapes
                        log-uniform or just either side of the thresholds
                        where the method changes;
  incbeta_branches.txt  one or more arguments for each regime of the
                        computation (labelled by a number in the first column),
                        including shapes far below 1e-2.

Method.  With X the tail variable below the mean a / (a + b),
    I_X(a, b) = X^a (1 - X)^b / (a B(a, b)) * 2F1(a + b, 1; a + 1; X),
a hypergeometric series of positive terms, so without cancellation; the other
tail is 1 minus it, which loses nothing there because that tail is not small.
Above the mean the roles of (a, X) and (b, 1 - X) are exchanged.  The prefactor
is formed in logarithms (mpmath loggamma), so it is right far below the
smallest double.  A self-check compares, on every tenth row, the two tails
each summed by its own series when both series are affordable.

Arguments.  x and y = 1 - x are both given to the routine, and both are
doubles with x + y == 1 exactly in double arithmetic.  The smaller of the two
is taken as exact and the larger as 1 minus it, since the computation works
with the smaller tail variable.

Usage: python3 gen_incbeta.py   (takes about a minute)
"""
import math
import os
import random
import sys

import mpmath
from mpmath import mp, mpf

mp.dps = 40
HERE = os.path.dirname(os.path.abspath(__file__))


def lower_by_series(a, b, X, Y):
    """I_X(a, b) by the positive series, with Y = 1 - X given separately so
    that a tiny Y keeps its digits.  Meant for X below the mean, where every
    term is smaller than the one before."""
    a = mpf(a)
    b = mpf(b)
    if X == 0:
        return mpf(0)
    log_pre = (a * mp.log(X) + b * mp.log(Y) - mp.log(a)
               - (mp.loggamma(a) + mp.loggamma(b) - mp.loggamma(a + b)))
    eps = mpf(10) ** (-mp.dps - 3)
    total = mpf(1)
    term = mpf(1)
    n = 0
    while True:
        term *= (a + b + n) * X / (a + 1 + n)
        total += term
        n += 1
        ratio = (a + b + n) * X / (a + 1 + n)
        if ratio < 1 and term < eps * total * (1 - ratio):
            break
    return mp.exp(log_pre) * total


def exact_pair(x, y):
    """(X, 1 - X) as mpf numbers, the smaller of x, y taken as exact."""
    if x <= y:
        X = mpf(x)
        return X, 1 - X
    Y = mpf(y)
    return 1 - Y, Y


def tails(a, b, x, y):
    """(I_x(a, b), 1 - I_x(a, b)).  The tail below the mean comes from the
    series; when its variable is close to 1 (where the series would need too
    many terms) it is 1 minus the other tail, summed at a precision raised by
    the digits that the subtraction cancels."""
    X, Y = exact_pair(x, y)
    am = mpf(a)
    bm = mpf(b)
    if X <= am / (am + bm):
        if X <= 0.9:
            lo = lower_by_series(a, b, X, Y)
            return lo, 1 - lo
        extra = 0
        while True:
            with mp.extradps(extra):
                X2, Y2 = exact_pair(x, y)
                lo = 1 - lower_by_series(b, a, Y2, X2)
            if lo > 0:
                lost = -int(mp.floor(mp.log10(lo)))
                if lost + 5 <= extra:
                    return +lo, 1 - lo
            if extra >= 360:
                # Below 1e-350, beneath the smallest double: written as 0.
                return mpf(0), mpf(1)
            lost = -int(mp.floor(mp.log10(lo))) if lo > 0 else mp.dps + extra
            extra = min(max(lost + 10, extra + 40), 360)
    if Y <= 0.9:
        up = lower_by_series(b, a, Y, X)
        return 1 - up, up
    lo, up = tails(b, a, y, x)
    return up, lo


def split(x):
    """A double x and y = 1 - x, both doubles, with x + y == 1 exactly."""
    if x > 0.5:
        y = 1.0 - x
        x = 1.0 - y
    else:
        y = 1.0 - x
        if x + y != 1.0:
            x = 1.0 - y
    assert x + y == 1.0
    return x, y


def split_upper(y):
    """The same from a given small y (x rounds to the double nearest 1 - y)."""
    x = 1.0 - y
    if x + y != 1.0:
        y = 1.0 - x
    assert x + y == 1.0
    return x, y


def fmt(v):
    return "%.17g" % v


def fmt_ref(v):
    return mpmath.nstr(v, 22, min_fixed=1, max_fixed=0)


SHAPES = [0.01, 0.1, 0.5, 0.99, 1.0, 1.5, 3.0, 8.5, 14.7, 16.0, 39.5, 45.0,
          120.0, 1000.0, 1.0e4, 1.0e5]
FIXED_X = [1e-300, 1e-200, 1e-100, 1e-30, 1e-12, 1e-6, 1e-3, 0.01, 0.05, 0.1,
           0.2, 0.3, 0.4, 0.5, 0.6, 0.7, 0.8, 0.9, 0.95, 0.99]
FIXED_Y = [1e-3, 1e-6, 1e-12, 1e-30, 1e-100, 1e-300]
SD_STEPS = [-10.0, -5.0, -2.0, -0.5, 0.0, 0.5, 2.0, 5.0, 10.0]
RANDOM_ROWS = 1500
THRESHOLD_SHAPES = [0.2, 0.999999, 1.000001, 7.99, 8.01, 14.99, 15.01, 39.99,
                    40.01, 99.99, 100.01]


def grid_points(a, b):
    pts = [split(x) for x in FIXED_X] + [split_upper(y) for y in FIXED_Y]
    mean = a / (a + b)
    sd = math.sqrt(a * b / ((a + b) ** 2 * (a + b + 1.0)))
    for k in SD_STEPS:
        x = mean + k * sd
        if 0.0 < x < 1.0:
            pts.append(split(x) if x <= 0.5 else split_upper(1.0 - x))
    seen = set()
    out = []
    for p in pts:
        if p not in seen and p[0] > 0.0 and p[1] > 0.0:
            seen.add(p)
            out.append(p)
    return out


HEADER = """# Generated by tests/data/gen_incbeta.py with mpmath %s at %d digits; do not edit.
# I_x(a, b) by the positive hypergeometric series
#   X^a (1 - X)^b / (a B(a, b)) 2F1(a + b, 1; a + 1; X) in the tail below the mean,
# the other tail as 1 minus it.  x + y == 1 exactly in doubles; the smaller of
# x and y is taken as exact.  A tail written as 0 is below 1e-350.
"""


def self_check(a, b, x, y, lo, up):
    """Both tails by their own series, where both series are cheap and neither
    variable is so close to 1 that its complement has lost digits, and
    against mpmath's own betainc there."""
    X, Y = exact_pair(x, y)
    if max(a, b) > 2000 or min(X, Y) < 0.05:
        return
    lo2 = lower_by_series(a, b, X, Y)
    up2 = lower_by_series(b, a, Y, X)
    lo3 = mpmath.betainc(a, b, 0, X, regularized=True)
    if abs(lo3 - lo2) > mpf(10) ** -28 * max(abs(lo2), mpf(10) ** -200):
        sys.exit("betainc disagrees at a=%r b=%r x=%r" % (a, b, x))
    if abs(lo2 + up2 - 1) > mpf(10) ** -30:
        sys.exit("self-check failed at a=%r b=%r x=%r" % (a, b, x))
    for ref, alt in ((lo, lo2), (up, up2)):
        if ref != 0 and abs(alt / ref - 1) > mpf(10) ** -25 and ref > mpf(10) ** -290:
            sys.exit("self-check failed at a=%r b=%r x=%r" % (a, b, x))


def write_grid():
    path = os.path.join(HERE, "incbeta_grid.txt")
    count = 0
    with open(path, "w") as f:
        f.write(HEADER % (mpmath.__version__, mp.dps))
        f.write("# Rows: the grid of %d shapes in all ordered pairs, then %d random\n"
                "# arguments (seed 708).\n" % (len(SHAPES), RANDOM_ROWS))
        f.write("# columns: a b x y I_x(a,b) 1-I_x(a,b)\n")
        for a in SHAPES:
            for b in SHAPES:
                if "-v" in sys.argv:
                    print("pair", a, b, file=sys.stderr, flush=True)
                for (x, y) in grid_points(a, b):
                    lo, up = tails(a, b, x, y)
                    if count % 10 == 0:
                        self_check(a, b, x, y, lo, up)
                    f.write("%s %s %s %s %s %s\n" % (fmt(a), fmt(b), fmt(x), fmt(y),
                                                     fmt_ref(lo), fmt_ref(up)))
                    count += 1
        # Random arguments (fixed seed): shapes log-uniform over [1e-2, 1e5] or
        # just either side of a threshold where the method changes; x uniform,
        # about the mean, or close to either end.
        rng = random.Random(708)
        for _ in range(RANDOM_ROWS):
            a, b = (rng.choice(THRESHOLD_SHAPES) if rng.random() < 0.3
                    else 10.0 ** rng.uniform(-2.0, 5.0) for _ in range(2))
            kind = rng.randrange(4)
            if kind == 0:
                x, y = split(rng.uniform(0.0, 1.0))
            elif kind == 1:
                mean = a / (a + b)
                sd = math.sqrt(a * b / ((a + b) ** 2 * (a + b + 1.0)))
                x = mean + rng.gauss(0.0, 3.0) * sd
                if not 0.0 < x < 1.0:
                    x = mean
                x, y = split(x) if x <= 0.5 else split_upper(1.0 - x)
            elif kind == 2:
                x, y = split(10.0 ** rng.uniform(-300.0, -1.0))
            else:
                x, y = split_upper(10.0 ** rng.uniform(-300.0, -1.0))
            if x <= 0.0 or y <= 0.0:
                continue
            lo, up = tails(a, b, x, y)
            f.write("%s %s %s %s %s %s\n" % (fmt(a), fmt(b), fmt(x), fmt(y),
                                             fmt_ref(lo), fmt_ref(up)))
            count += 1
    print("%s: %d rows" % (path, count))


# (label, a, b, x): arguments that reach each regime; the labels are those of
# the branch tests of tests/numeric/bratio_test.cpp.
BRANCH_CASES = [
    (1, 0.5, 1e-20, 0.3),        # b tiny: FPSER
    (1, 1e-20, 0.5, 0.7),        # the same after the swap for x > 0.5
    (2, 1e-20, 0.5, 0.3),        # a tiny, b x <= 1: APSER, psi form of c
    (2, 1e-18, 2.0, 0.4),
    (2, 1e-17, 1e14, 5e-15),     # b eps > 0.02: the logarithmic form of c
    (3, 0.5, 0.5, 0.3),          # a0, b0 <= 1, a0 >= min(0.2, b0): BPSER
    (3, 0.1, 0.5, 1e-3),         # a0, b0 <= 1, x^a <= 0.9: BPSER
    (4, 0.1, 0.5, 0.45),         # a0, b0 <= 1, x >= 0.3: 1 - BPSER swapped
    (5, 0.05, 0.9, 0.2),         # a0, b0 <= 1, otherwise: BUP (n = 20), BGRAT
    (6, 5.0, 0.5, 0.2),          # b0 <= 1 < a0: BPSER
    (6, 0.5, 5.0, 0.8),          # the same after the swap
    (7, 0.5, 3.0, 0.35),         # a0 <= 1 < b0, x0 >= 0.3: 1 - BPSER swapped
    (8, 0.5, 5.0, 0.05),         # x0 < 0.1, (x0 b0)^a0 <= 0.7: BPSER
    (9, 0.5, 20.0, 0.2),         # b0 > 15: BGRAT alone
    (9, 0.2, 100.0, 0.05),       # b0 > 15, x0 < 0.1, (x0 b0)^a0 > 0.7
    (10, 0.5, 10.0, 0.2),        # b0 <= 15: BUP (n = 20), then BGRAT
    (11, 3.0, 5.0, 0.1),         # a0, b0 > 1, b0 < 40, b0 x0 <= 0.7: BPSER
    (12, 5.0, 3.0, 0.9),         # lambda < 0: swapped, then BPSER
    (13, 30.0, 20.0, 0.3),       # b0 < 40, x0 <= 0.7: BUP then BPSER, whole b0
    (13, 30.0, 20.5, 0.3),       # the same with a fractional b0
    (14, 14.0, 2.0, 0.75),       # b0 < 40, x0 > 0.7, a0 <= 15: BUP, BUP, BGRAT
    (14, 14.0, 2.5, 0.78),
    (15, 20.0, 3.5, 0.82),       # b0 < 40, x0 > 0.7, a0 > 15: BUP then BGRAT
    (16, 200.0, 60.0, 0.5),      # a0 > b0, 40 <= b0 <= 100: BFRAC
    (17, 300.0, 200.0, 0.5),     # a0 > b0 > 100, lambda > 0.03 b0: BFRAC
    (18, 300.0, 200.0, 0.595),   # a0 > b0 > 100, lambda <= 0.03 b0: BASYM
    (19, 50.0, 60.0, 0.3),       # a0 <= b0, a0 <= 100: BFRAC
    (20, 200.0, 300.0, 0.3),     # a0 <= b0, a0 > 100, lambda > 0.03 a0: BFRAC
    (21, 200.0, 300.0, 0.395),   # a0 <= b0, a0 > 100, lambda <= 0.03 a0: BASYM
    (22, 1e-300, 1e-300, 0.3),   # both shapes below 0.001 eps: b / (a + b)
    (22, 1e-300, 3e-300, 0.9),
]


def write_branches():
    path = os.path.join(HERE, "incbeta_branches.txt")
    with open(path, "w") as f:
        f.write(HEADER % (mpmath.__version__, mp.dps))
        f.write("# Arguments for each regime of the computation; for label 22 the limit\n")
        f.write("# b / (a + b) of vanishing shapes is the reference.\n")
        f.write("# columns: label a b x y I_x(a,b) 1-I_x(a,b)\n")
        for (label, a, b, x) in BRANCH_CASES:
            x, y = split(x)
            if label == 22:
                lo = mpf(b) / (mpf(a) + mpf(b))
                up = mpf(a) / (mpf(a) + mpf(b))
            else:
                lo, up = tails(a, b, x, y)
            f.write("%d %s %s %s %s %s %s\n" % (label, fmt(a), fmt(b), fmt(x), fmt(y),
                                                fmt_ref(lo), fmt_ref(up)))
    print("%s: %d rows" % (path, len(BRANCH_CASES)))


if __name__ == "__main__":
    write_branches()
    if "--branches-only" not in sys.argv:
        write_grid()
