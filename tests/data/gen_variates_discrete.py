#!/usr/bin/env python3
"""Reference variates of the discrete distribution objects and of the
multinomial counts, replayed from the library's uniform stream at base 12345.

Each generator is written here afresh from its published description:
  * Bernoulli and binomial: a trial succeeds when its uniform is at or below
    the success probability (one uniform a trial); the binomial counts them.
  * Hypergeometric: sequential sampling without replacement; the next member
    of the sample is a success when (successes left) / (population left) is
    at or above its uniform; the draw stops early when no success is left or
    when every member left is a success.
  * Integer uniform and Poisson: inversion, the smallest count whose
    distribution function reaches the uniform.  The integer uniform's count
    is found in exact rational arithmetic, the Poisson's by summing the mass
    at 50 digits with mpmath; the script refuses a uniform that lies within
    1e-9 (relative to the step) of a step of the distribution function, where
    rounding could decide the count.
  * General discrete: the alias method of A. J. Walker, ACM TOMS 3 (1977),
    with the table built in IEEE double operations in the order the library
    states (cutoff = p * n / T; Small when below 1 - eps; the last Small
    entry filled from the last Large one), and a draw x = U n, k = floor(x),
    slot k when 1 + k - x <= cutoff[k], else its alias.  The variate is the
    slot (the rank of the value), not the value.
  * Multinomial: cumulative probabilities with the last forced to 1, the
    uniforms of one batch in the order drawn, one cursor never moved back.

Writes variates_discrete.txt and variates_discrete_multinomial.txt beside
this script.
"""
import os
import sys
from fractions import Fraction

import mpmath

sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))
from uniform_stream import UniformStream  # noqa: E402

mpmath.mp.dps = 50
HERE = os.path.dirname(os.path.abspath(__file__))
BASE = 12345
COUNT = 25
EPS = 2.0 ** -52

# Class codes (those of the distribution types).
BERNOULLI, BINOMIAL, DISCRETE, HYPERGEOMETRIC, INTEGER, POISSON = 16, 17, 20, 23, 24, 29

# The general discrete cases: (values, probabilities) in the order given to
# the constructor.  The C++ test builds the same objects from the case id.
DISCRETE_CASES = {
    1: ([10.0, 20.0, 30.0], [0.5, 0.25, 0.25]),
    2: ([1.5, 2.0, 4.0, 7.0, 11.0, 20.0], [0.05, 0.1, 0.15, 0.2, 0.22, 0.28]),
    3: ([-2.0, 0.0, 3.0, 5.0, 8.0], [3.5, 1.0, 0.25, 2.0, 7.0]),
    4: ([5.0, 1.0, 3.0], [0.2, 0.5, 0.3]),
}


def bernoulli(stream, p):
    return 1.0 if stream.next() <= p else 0.0


def binomial(stream, n, p):
    hits = 0
    for _ in range(n):
        if stream.next() <= p:
            hits += 1
    return float(hits)


def hypergeometric(stream, pop, succ, sample):
    if sample < 1:
        return 0.0
    hits, drawn = 0, 0
    while True:
        left = succ - hits
        pop_left = pop - drawn
        if left == 0:
            return float(hits)
        if pop_left == left:
            return float(hits + sample - drawn)
        u = stream.next()
        if float(left) / float(pop_left) >= u:
            hits += 1
        drawn += 1
        if drawn >= sample:
            return float(hits)


def integer_uniform(stream, lo, hi):
    u = Fraction(stream.next())
    m = hi - lo + 1
    scaled = m * u
    # The count is lo - 1 + ceil(m u): refuse a product near a whole number.
    nearest = round(scaled)
    if scaled != 0 and abs(scaled - nearest) <= Fraction(1, 10**9):
        raise SystemExit("integer uniform: uniform %r on a step" % float(u))
    k = lo - 1 + -((-scaled.numerator) // scaled.denominator)
    return float(max(lo, k))


def poisson(stream, mu):
    u = mpmath.mpf(stream.next())  # exact: a double fits 50 digits
    m = mpmath.mpf(mu)
    mass = mpmath.exp(-m)
    below = mpmath.mpf(0)
    k = 0
    while below + mass < u:
        below += mass
        k += 1
        mass = mass * m / k
    frac = (u - below) / mass
    if frac <= mpmath.mpf("1e-9") or frac >= 1 - mpmath.mpf("1e-9"):
        raise SystemExit("Poisson: uniform %r on a step" % float(u))
    return float(k)


def alias_table(values, probs):
    # Map semantics: the first occurrence of a value wins, keys ascending.
    first = {}
    for i, v in enumerate(values):
        if v not in first:
            first[v] = probs[i] if i < len(probs) else 0.0
    pairs = sorted(first.items())
    n = len(pairs)
    total = 0.0
    for _, p in pairs:
        total += p
    cut = [0.0] * n
    alias = [-1.0] * n
    small, large = [], []
    for i, (_, p) in enumerate(pairs):
        c = p * float(n) / total
        cut[i] = c
        alias[i] = float(i)
        (small if c < 1.0 - EPS else large).append(i)
    while small and large:
        s = small.pop()
        c = cut[s]
        g = large[-1]
        alias[s] = float(g)
        cut[g] = cut[g] - (1.0 - c)
        if cut[g] < 1.0 - EPS:
            large.pop()
            small.append(g)
    return cut, alias


def discrete(stream, table):
    cut, alias = table
    n = len(cut)
    x = stream.next() * float(n)
    k = int(x // 1.0)
    y = 1.0 + float(k) - x
    return float(k) if y <= cut[k] else alias[k]


def multinomial(stream, trials, probs):
    k = len(probs)
    cum = []
    run = 0.0
    for p in probs:
        run += p
        cum.append(run)
    if k:
        cum[-1] = 1.0
    counts = [0] * k
    us = [stream.next() for _ in range(max(trials, 0))]
    j = 0
    for u in us:
        while j < k:
            if cum[j] >= u:
                counts[j] += 1
                break
            j += 1
    return counts


def fmt(x):
    return repr(float(x))


def main():
    rows = []
    cases = [
        (BERNOULLI, (0.3, 0, 0), lambda s: bernoulli(s, 0.3)),
        (BERNOULLI, (0.75, 0, 0), lambda s: bernoulli(s, 0.75)),
        (BINOMIAL, (1, 0.5, 0), lambda s: binomial(s, 1, 0.5)),
        (BINOMIAL, (10, 0.35, 0), lambda s: binomial(s, 10, 0.35)),
        (BINOMIAL, (25, 0.9, 0), lambda s: binomial(s, 25, 0.9)),
        (HYPERGEOMETRIC, (20, 7, 5), lambda s: hypergeometric(s, 20, 7, 5)),
        (HYPERGEOMETRIC, (50, 30, 45), lambda s: hypergeometric(s, 50, 30, 45)),
        (HYPERGEOMETRIC, (12, 11, 6), lambda s: hypergeometric(s, 12, 11, 6)),
        (HYPERGEOMETRIC, (10, 10, 3), lambda s: hypergeometric(s, 10, 10, 3)),
        (HYPERGEOMETRIC, (10, 0, 3), lambda s: hypergeometric(s, 10, 0, 3)),
        (INTEGER, (-3, 4, 0), lambda s: integer_uniform(s, -3, 4)),
        (INTEGER, (1, 6, 0), lambda s: integer_uniform(s, 1, 6)),
        (INTEGER, (5, 5, 0), lambda s: integer_uniform(s, 5, 5)),
        (POISSON, (0.5, 0, 0), lambda s: poisson(s, 0.5)),
        (POISSON, (3.7, 0, 0), lambda s: poisson(s, 3.7)),
        (POISSON, (40.0, 0, 0), lambda s: poisson(s, 40.0)),
    ]
    for cid, (values, probs) in DISCRETE_CASES.items():
        table = alias_table(values, probs)
        cases.append((DISCRETE, (cid, len(table[0]), 0),
                      lambda s, t=table: discrete(s, t)))
    for code, params, draw in cases:
        stream = UniformStream(BASE)
        for i in range(1, COUNT + 1):
            x = draw(stream)
            rows.append("%d %s %s %s %d %s %d" % (code, fmt(params[0]), fmt(params[1]),
                                                  fmt(params[2]), i, fmt(x), stream.count))
    with open(os.path.join(HERE, "variates_discrete.txt"), "w") as f:
        f.write("# Variates of the discrete distribution objects after mSetBase(12345), each\n")
        f.write("# case from a fresh stream, written by gen_variates_discrete.py from the\n")
        f.write("# uniform stream of uniform_stream.py through the algorithms written afresh\n")
        f.write("# there (inversion counts exact or at 50 digits with mpmath).\n")
        f.write("# columns: class p1 p2 p3 index variate uniforms_consumed_so_far\n")
        f.write("# class 16 Bernoulli (p), 17 binomial (trials, p), 23 hypergeometric\n")
        f.write("# (N, M, n), 24 integer uniform (lower, upper), 29 Poisson (mean),\n")
        f.write("# 20 general discrete (case id, number of values); the variate of class 20\n")
        f.write("# is the slot.  Discrete cases (values; probabilities):\n")
        for cid, (values, probs) in DISCRETE_CASES.items():
            f.write("#   %d: %s; %s\n" % (cid, values, probs))
        for r in rows:
            f.write(r + "\n")

    mrows = []
    mcases = [
        (1, 12, [0.2, 0.3, 0.5]),
        (2, 8, [0.1, 0.1, 0.1, 0.2]),
        (3, 40, [0.25, 0.25, 0.25, 0.25]),
        (4, 0, [0.5, 0.5]),
        (5, 5, []),
    ]
    for cid, trials, probs in mcases:
        stream = UniformStream(BASE)
        counts = multinomial(stream, trials, probs)
        for j, c in enumerate(counts):
            mrows.append("%d %d %d %d %d %d" % (cid, trials, len(probs), j, c, stream.count))
        if not counts:
            mrows.append("%d %d 0 -1 0 %d" % (cid, trials, stream.count))
    with open(os.path.join(HERE, "variates_discrete_multinomial.txt"), "w") as f:
        f.write("# Multinomial counts after mSetBase(12345), each case from a fresh stream,\n")
        f.write("# written by gen_variates_discrete.py (uniforms of uniform_stream.py in the\n")
        f.write("# order drawn, one cursor over the cumulative probabilities).\n")
        f.write("# columns: case trials categories category count uniforms_consumed\n")
        f.write("# (a case without categories has one row with category -1 and count 0).\n")
        f.write("# Cases (probabilities):\n")
        for cid, trials, probs in mcases:
            f.write("#   %d: %s\n" % (cid, probs))
        for r in mrows:
            f.write(r + "\n")


if __name__ == "__main__":
    main()
