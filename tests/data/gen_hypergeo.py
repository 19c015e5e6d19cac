#!/usr/bin/env python3
"""Writes the reference tables of the hypergeometric kernel:

  hypergeo_df.txt         N  M  n  k  lower  upper  mass
                          with lower = P(X <= k), upper = P(X > k),
                          mass = P(X = k), X the successes in n draws without
                          replacement from N items of which M are successes
  hypergeo_quantiles.txt  kind  N  M  n  q  k  frac  step
                          kind 1: k the smallest count with P(X <= k) >= q,
                                  frac = (q - P(X <= k - 1)) / P(X = k);
                          kind 2: k the largest count with P(X >= k) >= q,
                                  frac = (q - P(X > k)) / P(X = k);
                          step 1 marks a q that is a cumulative probability
                          itself (rounded to a double), or lies within 1e-9
                          of the mass of one (frac below 1e-9 or above
                          1 - 1e-9), 0 any other q

The mass is C(M, k) C(N - M, n - k) / C(N, n) from mpmath's loggamma at 50
significant digits.  A tail is summed mass by mass away from the mode
floor((M + 1)(n + 1) / (N + 2)), the masses linked by the exact ratios of
neighbouring counts and added until a term falls below 1e-60 of the sum (a
sum that starts on the far side of the mode runs through it first); both
tails are summed so, and their total is checked to be 1 within 1e-38.  For N up to 400 every value is
also checked against exact rational sums of the binomial coefficients
(Python's integers and fractions) to 40 digits.  Quantiles are found by
brute-force summation: starting near the normal approximation, the cumulative
probability is summed as above and moved one count at a time, mass by mass,
until the defining inequality holds with q taken as the exact value of its
double.  Values are printed with 20 significant digits; q with 17.

Usage: python3 gen_hypergeo.py   (writes the two files beside itself)
"""
import math
import os
import statistics
from fractions import Fraction

import mpmath
from mpmath import mpf

mpmath.mp.dps = 50
DIGITS = 20
STOP = mpf(10) ** -60


def fmt(v):
    return mpmath.nstr(v, DIGITS, min_fixed=1, max_fixed=0)


class Hyper:
    def __init__(self, N, M, n):
        self.N, self.M, self.n = N, M, n
        self.lo = max(0, n + M - N)
        self.hi = min(M, n)
        self.mode = (M + 1) * (n + 1) // (N + 2)
        self.mode = min(max(self.mode, self.lo), self.hi)
        lg = mpmath.loggamma
        self.base = (lg(M + 1) + lg(N - M + 1) + lg(n + 1) + lg(N - n + 1) - lg(N + 1))

    def pmf(self, k):
        if k < self.lo or k > self.hi:
            return mpf(0)
        N, M, n = self.N, self.M, self.n
        lg = mpmath.loggamma
        return mpmath.exp(self.base - lg(k + 1) - lg(n - k + 1) - lg(M - k + 1)
                          - lg(N - M - n + k + 1))

    def up(self, j):
        """P(X = j + 1) / P(X = j) as a pair of integers."""
        N, M, n = self.N, self.M, self.n
        return (n - j) * (M - j), (j + 1) * (N - M - n + j + 1)

    def lower_sum(self, k):
        """P(X <= k) summed from k downward."""
        if k < self.lo:
            return mpf(0)
        t = self.pmf(k)
        s = t
        j = k
        while j > self.lo:
            den, num = self.up(j - 1)
            t = t * num / den
            j -= 1
            s += t
            if t < s * STOP:
                break
        return s

    def upper_sum(self, k):
        """P(X > k) summed from k + 1 upward."""
        if k >= self.hi:
            return mpf(0)
        j = k + 1
        t = self.pmf(j)
        s = t
        while j < self.hi:
            num, den = self.up(j)
            t = t * num / den
            j += 1
            s += t
            if t < s * STOP:
                break
        return s

    def tails(self, k):
        lower = self.lower_sum(k)
        upper = self.upper_sum(k)
        # The two sums are independent: they must add up to 1.
        assert abs(lower + upper - 1) < mpf(10) ** -38, (self.N, self.M, self.n, k)
        return lower, upper

    def exact(self, k):
        N, M, n = self.N, self.M, self.n
        tot = math.comb(N, n)
        lower = sum(math.comb(M, j) * math.comb(N - M, n - j) for j in range(self.lo, k + 1))
        return Fraction(lower, tot), Fraction(math.comb(M, k) * math.comb(N - M, n - k), tot)


def counts(N):
    out = {0, 1, N // 2, (N + 1) // 2, N - 1, N}
    for f in (0.013, 0.1, 0.37, 0.63, 0.9, 0.987):
        out.add(int(round(f * N)))
    return sorted(c for c in out if 0 <= c <= N)


POPULATIONS = [2, 3, 5, 10, 33, 100, 400, 4321, 50000, 1000000]


def df_rows():
    rows = []
    for N in POPULATIONS:
        for M in counts(N):
            for n in counts(N):
                h = Hyper(N, M, n)
                mean = mpf(n) * M / N
                var = mean * (N - M) * (N - n) / (mpf(N) * max(N - 1, 1))
                sd = mpmath.sqrt(var)
                ks = {h.lo, h.lo + 1, h.hi - 1, h.hi, h.mode}
                for c in (0, 0.5, 1, 2, 3, 5, 8, 13, 20, 27, 34, 38, 42):
                    for sgn in (-1, 1):
                        ks.add(int(mpmath.floor(mean + sgn * c * sd)))
                for k in sorted(ks):
                    if k < h.lo or k > h.hi:
                        continue
                    lower, upper = h.tails(k)
                    mass = h.pmf(k)
                    if N <= 400:
                        el, em = h.exact(k)
                        assert abs(lower - mpf(el.numerator) / el.denominator) < mpf(10) ** -40
                        assert abs(upper - (1 - mpf(el.numerator) / el.denominator)) < mpf(10) ** -40
                        emf = mpf(em.numerator) / em.denominator
                        assert abs(mass - emf) <= abs(emf) * mpf(10) ** -40
                    rows.append((N, M, n, k, lower, upper, mass))
    return rows


def quantile_rows():
    rows = []
    qs = [1e-12, 1e-9, 1e-6, 1e-3, 0.05, 0.25, 0.4999, 0.5]
    for N in (2, 5, 33, 400, 4321, 50000, 1000000):
        for M in counts(N):
            for n in counts(N):
                if not (0 < M < N and 0 < n < N):
                    continue
                h = Hyper(N, M, n)
                mean = float(n) * M / N
                var = mean * (N - M) * (N - n) / (N * max(N - 1, 1))
                sd = math.sqrt(var)
                cases = [(q, 0) for q in qs]
                # q exactly on a step of the lower and of the upper tail.
                for z in (-3.0, -1.0, 0.0):
                    k0 = min(max(int(round(mean + z * sd)), h.lo), h.hi)
                    c = float(h.tails(k0)[0])
                    if 1e-12 <= c <= 0.5:
                        cases.append((c, 1))
                    k0 = min(max(int(round(mean - z * sd)), h.lo), h.hi)
                    c = float(h.tails(k0 - 1)[1]) if k0 > h.lo else 1.0
                    if 1e-12 <= c <= 0.5:
                        cases.append((c, 2))
                for q, step in cases:
                    z = statistics.NormalDist().inv_cdf(q)
                    if step != 2:
                        k, frac = lower_quantile(h, q, mean + z * sd)
                        rows.append((1, N, M, n, q, k, frac, on_step(step, frac)))
                    if step != 1:
                        k, frac = upper_quantile(h, q, mean - z * sd)
                        rows.append((2, N, M, n, q, k, frac, on_step(step, frac)))
    return rows


def on_step(step, frac):
    eps = mpf(10) ** -9
    return 1 if step or frac < eps or frac > 1 - eps else 0


def lower_quantile(h, q, guess):
    qq = mpf(q)
    k = min(max(int(guess), h.lo), h.hi)
    cdf = h.tails(k)[0]
    mass = h.pmf(k)
    while k > h.lo and cdf - mass >= qq:
        cdf -= mass
        k -= 1
        mass = h.pmf(k)
    while cdf < qq:
        k += 1
        mass = h.pmf(k)
        cdf += mass
    return k, (qq - (cdf - mass)) / mass


def upper_quantile(h, q, guess):
    qq = mpf(q)
    k = min(max(int(guess), h.lo), h.hi)
    sf = h.tails(k - 1)[1] if k > h.lo else mpf(1)  # P(X >= k)
    mass = h.pmf(k)
    while k < h.hi and sf - mass >= qq:
        sf -= mass
        k += 1
        mass = h.pmf(k)
    while sf < qq:
        k -= 1
        mass = h.pmf(k)
        sf += mass
    return k, (qq - (sf - mass)) / mass


def main():
    here = os.path.dirname(os.path.abspath(__file__))
    rows = df_rows()
    with open(os.path.join(here, "hypergeo_df.txt"), "w") as f:
        f.write("# Hypergeometric distribution: written by gen_hypergeo.py (mpmath, 50 digits;\n")
        f.write("# tails summed mass by mass away from the mode, checked against exact\n")
        f.write("# rational sums for N <= 400)\n")
        f.write("# columns: N M n k lower=P(X<=k) upper=P(X>k) mass=P(X=k)\n")
        for N, M, n, k, lower, upper, mass in rows:
            f.write("%d %d %d %d %s %s %s\n" % (N, M, n, k, fmt(lower), fmt(upper), fmt(mass)))
    qrows = quantile_rows()
    with open(os.path.join(here, "hypergeo_quantiles.txt"), "w") as f:
        f.write("# Hypergeometric quantiles: written by gen_hypergeo.py (mpmath, 50 digits,\n")
        f.write("# brute-force summation of the mass; q taken as the exact value of its double)\n")
        f.write("# columns: kind N M n q k frac step\n")
        f.write("#   kind 1: smallest k with P(X<=k) >= q, frac = (q - P(X<=k-1))/P(X=k)\n")
        f.write("#   kind 2: largest k with P(X>=k) >= q, frac = (q - P(X>k))/P(X=k)\n")
        f.write("#   step 1: q is itself a cumulative probability rounded to a double\n")
        for kind, N, M, n, q, k, frac, step in qrows:
            f.write("%d %d %d %d %s %d %s %d\n" % (kind, N, M, n, repr(q), k, fmt(frac), step))


if __name__ == "__main__":
    main()
