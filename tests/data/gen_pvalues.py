#!/usr/bin/env python3
"""Reference values for the p-values and critical values of the continuous
test distributions (normal, chi-square, F, Student t), computed with mpmath
at 40 significant digits and printed to 17.

Writes, next to this script:
  pvalues_continuous.txt   family, x, p1, p2, alternative, p-value
  critvalues_continuous.txt family, prob, p1, p2, alternative, count, kind,
                            critical value

Families: 1 normal (p1, p2 unused, 0), 2 chi-square (p1 = df), 3 F
(p1 = numerator df, p2 = denominator df), 4 t (p1 = df).
Alternatives: -1 lower tail, 0 two-sided, 1 upper tail.  The two-sided
p-value is twice the smaller tail.
Critical values: kind 0 is the plain value (normal, chi-square, F), kind 1
the t with the size divided by the Bonferroni count, kind 2 the t with the
per-comparison size 1 - (1 - prob)^(1/count).  The normal and t critical
values of a one-sided test are the upper quantile of the size (a positive
magnitude), of a two-sided test the upper quantile of half the size; the
chi-square and F give the lower quantile of prob for a lower-tailed test and
the upper quantile for an upper-tailed one.  Quantiles are roots of a tail
found by bisection on log |x| to 1e-36.
"""
import os
import mpmath as mp

mp.mp.dps = 40
HERE = os.path.dirname(os.path.abspath(__file__))


def tails(fam, x, p1, p2):
    x = mp.mpf(x)
    if fam == 1:
        lo = mp.ncdf(x)
        return lo, mp.ncdf(-x)
    if fam == 2:
        k = mp.mpf(p1) / 2
        return (mp.gammainc(k, 0, x / 2, regularized=True),
                mp.gammainc(k, x / 2, mp.inf, regularized=True))
    if fam == 3:
        n, d = mp.mpf(p1), mp.mpf(p2)
        y = n * x / (n * x + d)
        return (mp.betainc(n / 2, d / 2, 0, y, regularized=True),
                mp.betainc(n / 2, d / 2, y, 1, regularized=True))
    df = mp.mpf(p1)
    y = df / (df + x * x)
    half = mp.betainc(df / 2, mp.mpf(1) / 2, 0, y, regularized=True) / 2
    return (half, 1 - half) if x < 0 else (1 - half, half)


def pvalue(fam, x, p1, p2, alt):
    lo, up = tails(fam, x, p1, p2)
    if alt < 0:
        return lo
    if alt > 0:
        return up
    return 2 * min(lo, up)


def positive_root(fam, p1, p2, prob, upper):
    """The positive x whose lower (or upper) tail is prob, by bisection on
    log x over [1e-300, 1e300]."""
    lo, hi = mp.log(mp.mpf(10) ** -300), mp.log(mp.mpf(10) ** 300)
    for _ in range(400):
        mid = (lo + hi) / 2
        lower, up = tails(fam, mp.exp(mid), p1, p2)
        below = (up > prob) if upper else (lower < prob)
        if below:
            lo = mid
        else:
            hi = mid
        if hi - lo < mp.mpf(10) ** -36:
            break
    return mp.exp((lo + hi) / 2)


def lower_quantile(fam, p, p1, p2):
    """x with P(X <= x) = p."""
    p = mp.mpf(p)
    if fam in (1, 4):
        if p == mp.mpf(1) / 2:
            return mp.mpf(0)
        if p < mp.mpf(1) / 2:
            return -positive_root(fam, p1, p2, p, True)
        return positive_root(fam, p1, p2, 1 - p, True)
    return positive_root(fam, p1, p2, p, False)


def critvalue(fam, prob, p1, p2, alt, count, kind):
    prob = mp.mpf(prob)
    if fam in (2, 3):
        return lower_quantile(fam, prob if alt < 0 else 1 - prob, p1, p2)
    if kind == 1:
        size = prob / count
    elif kind == 2:
        size = 1 - (1 - prob) ** (mp.mpf(1) / count)
    else:
        size = prob
    if alt == 0:
        size = size / 2
    # Upper quantile of the size, computed as minus the lower quantile.
    return -lower_quantile(fam, size, p1, p2)


def fmt(v):
    return mp.nstr(mp.mpf(v), 17, min_fixed=-3, max_fixed=3, strip_zeros=False) \
        if v != 0 else "0"


def main():
    prow = []
    for x in ["-8.5", "-3.1", "-1.96", "-0.25", "0.4", "1.6448536269514722", "2.5", "6", "12"]:
        for alt in (-1, 0, 1):
            prow.append((1, x, 0, 0, alt))
    for df in ("0.5", "1", "3", "10", "57.5"):
        for x in ("0.001", "0.3", "1", "2.5", "7.8", "20", "90"):
            for alt in (-1, 0, 1):
                prow.append((2, x, df, 0, alt))
    for n, d in (("1", "1"), ("2", "7"), ("5", "30"), ("12.5", "3")):
        for x in ("0.01", "0.5", "1", "2.7", "9", "60"):
            for alt in (-1, 0, 1):
                prow.append((3, x, n, d, alt))
    for df in ("1", "2.5", "10", "120"):
        for x in ("-40", "-2.2", "-0.7", "0.1", "1.3", "3", "25"):
            for alt in (-1, 0, 1):
                prow.append((4, x, df, 0, alt))

    crow = []
    for p in ("1e-10", "0.001", "0.01", "0.05", "0.3", "0.75", "0.99"):
        for alt in (-1, 0, 1):
            crow.append((1, p, 0, 0, alt, 1, 0))
        for df in ("1", "3", "10", "57.5"):
            for alt in (-1, 1):
                crow.append((2, p, df, 0, alt, 1, 0))
        for n, d in (("1", "1"), ("5", "30"), ("12.5", "3")):
            for alt in (-1, 1):
                crow.append((3, p, n, d, alt, 1, 0))
        for df in ("1", "2.5", "10", "120"):
            for alt in (-1, 0, 1):
                for count in (1, 3, 10):
                    for kind in (1, 2):
                        if kind == 2 and count == 1:
                            continue
                        crow.append((4, p, df, 0, alt, count, kind))

    with open(os.path.join(HERE, "pvalues_continuous.txt"), "w") as f:
        f.write("# Generated by gen_pvalues.py with mpmath at 40 digits.\n")
        f.write("# family(1 normal,2 chi-square,3 F,4 t) x p1 p2 alternative pvalue\n")
        for fam, x, p1, p2, alt in prow:
            v = pvalue(fam, x, p1, p2, alt)
            f.write("%d %s %s %s %d %s\n" % (fam, x, p1, p2, alt, fmt(v)))
    with open(os.path.join(HERE, "critvalues_continuous.txt"), "w") as f:
        f.write("# Generated by gen_pvalues.py with mpmath at 40 digits.\n")
        f.write("# family(1 normal,2 chi-square,3 F,4 t) prob p1 p2 alternative count"
                " kind(0 plain,1 Bonferroni,2 Sidak) critvalue\n")
        for fam, p, p1, p2, alt, count, kind in crow:
            v = critvalue(fam, p, p1, p2, alt, count, kind)
            f.write("%d %s %s %s %d %d %d %s\n" % (fam, p, p1, p2, alt, count, kind, fmt(v)))


if __name__ == "__main__":
    main()
