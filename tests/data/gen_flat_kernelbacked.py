#!/usr/bin/env python3
"""Reference values for the kernel-backed continuous flat functions (beta,
chi-square, gamma, F and Student t), computed with mpmath at 40 significant
digits and printed to 17.

Writes, next to this script:
  flat_kernelbacked_cdf.txt       family, x, p1, p2, p3, lower tail, upper tail
  flat_kernelbacked_pdf.txt       family, x, p1, p2, p3, density
  flat_kernelbacked_quantile.txt  family, prob, p1, p2, p3, quantile

Families and parameters:
  1 beta        p1 = a, p2 = b, p3 unused (0)
  2 chi-square  p1 = degrees of freedom, p2 = noncentrality, p3 unused (0)
  3 gamma       p1 = shape, p2 = scale, p3 = threshold
  4 F           p1 = numerator df, p2 = denominator df, p3 = noncentrality
  5 t           p1 = degrees of freedom, p2 = noncentrality, p3 unused (0)

Noncentral chi-square and F are Poisson(nc / 2) mixtures of central
distributions; the noncentral t distribution function is the integral of
the normal distribution function against the chi distribution.  Quantiles are
roots of the distribution function found by bisection to 32 digits.
"""
import os
import mpmath as mp

mp.mp.dps = 40
HERE = os.path.dirname(os.path.abspath(__file__))


def beta_tails(x, a, b):
    lo = mp.betainc(a, b, 0, x, regularized=True)
    up = mp.betainc(a, b, x, 1, regularized=True)
    return lo, up


def gamma_tails(z, a):
    return mp.gammainc(a, 0, z, regularized=True), mp.gammainc(a, z, mp.inf, regularized=True)


def poisson_mixture(lam, term):
    """Sum of Poisson(lam) weights times term(j), both tails."""
    lo = mp.mpf(0)
    up = mp.mpf(0)
    if lam == 0:
        return term(0)
    centre = int(lam)
    j = 0
    total_w = mp.mpf(0)
    # Sum outward far enough that the remaining weight is negligible.
    jmax = centre + 40 + int(12 * mp.sqrt(lam + 1))
    for j in range(0, jmax + 1):
        w = mp.exp(-lam + j * mp.log(lam) - mp.loggamma(j + 1))
        l, u = term(j)
        lo += w * l
        up += w * u
        total_w += w
    return lo, up


def chisq_tails(x, df, nc):
    return poisson_mixture(mp.mpf(nc) / 2,
                           lambda j: gamma_tails(mp.mpf(x) / 2, mp.mpf(df) / 2 + j))


def f_tails(x, n, d, nc):
    y = mp.mpf(n) * x / (mp.mpf(n) * x + d)
    return poisson_mixture(mp.mpf(nc) / 2,
                           lambda j: beta_tails(y, mp.mpf(n) / 2 + j, mp.mpf(d) / 2))


def t_tails(x, df, nc):
    x = mp.mpf(x)
    df = mp.mpf(df)
    nc = mp.mpf(nc)
    if nc == 0:
        y = df / (df + x * x)
        half = mp.betainc(df / 2, mp.mpf(1) / 2, 0, y, regularized=True) / 2
        return (half, 1 - half) if x < 0 else (1 - half, half)

    # P(T <= x) = integral over s of Phi(x s / sqrt(df) - nc) f_chi(s; df).
    def chi_pdf(s):
        return mp.exp((df - 1) * mp.log(s) - s * s / 2 - (df / 2 - 1) * mp.log(2)
                      - mp.loggamma(df / 2))

    def lower_integrand(s):
        return mp.ncdf(x * s / mp.sqrt(df) - nc) * chi_pdf(s)

    def upper_integrand(s):
        return mp.ncdf(nc - x * s / mp.sqrt(df)) * chi_pdf(s)

    peak = mp.sqrt(df)
    pts = [0, peak / 4, peak / 2, peak, 2 * peak, 4 * peak + 10, mp.inf]
    return mp.quad(lower_integrand, pts), mp.quad(upper_integrand, pts)


def tails(fam, x, p1, p2, p3):
    if fam == 1:
        return beta_tails(x, p1, p2)
    if fam == 2:
        return chisq_tails(x, p1, p2)
    if fam == 3:
        return gamma_tails((mp.mpf(x) - p3) / p2, p1)
    if fam == 4:
        return f_tails(x, p1, p2, p3)
    return t_tails(x, p1, p2)


def density(fam, x, p1, p2, p3):
    x = mp.mpf(x)
    if fam == 1:
        return x ** (p1 - 1) * (1 - x) ** (p2 - 1) / mp.beta(p1, p2)
    if fam == 2:
        k = mp.mpf(p1) / 2
        return mp.exp((k - 1) * mp.log(x) - x / 2 - k * mp.log(2) - mp.loggamma(k))
    if fam == 3:
        z = (x - p3) / p2
        return mp.exp((p1 - 1) * mp.log(z) - z - mp.loggamma(p1)) / p2
    if fam == 4:
        n, d = mp.mpf(p1), mp.mpf(p2)
        return mp.exp(mp.loggamma((n + d) / 2) - mp.loggamma(n / 2) - mp.loggamma(d / 2)
                      + n / 2 * mp.log(n / d) + (n / 2 - 1) * mp.log(x)
                      - (n + d) / 2 * mp.log(1 + n * x / d))
    df, nc = mp.mpf(p1), mp.mpf(p2)
    if nc == 0:
        return mp.exp(mp.loggamma((df + 1) / 2) - mp.loggamma(df / 2)
                      - mp.log(mp.sqrt(mp.pi * df)) - (df + 1) / 2 * mp.log(1 + x * x / df))
    return mp.diff(lambda u: t_tails(u, df, nc)[0], x)


def quantile(fam, p, p1, p2, p3):
    p = mp.mpf(p)
    if fam == 1:
        lo, hi = mp.mpf(0), mp.mpf(1)
    elif fam == 5:
        lo, hi = mp.mpf(-1e4), mp.mpf(1e4)
    elif fam == 3:
        lo, hi = mp.mpf(p3), p3 + p2 * mp.mpf(1e5)
    else:
        lo, hi = mp.mpf(0), mp.mpf(1e5)
    # Bisection on the monotone distribution function to 1e-30 of the bracket.
    for _ in range(200):
        mid = (lo + hi) / 2
        if tails(fam, mid, p1, p2, p3)[0] < p:
            lo = mid
        else:
            hi = mid
        if hi - lo <= mp.mpf(10) ** -32 * max(1, abs(mid)):
            break
    return (lo + hi) / 2


CDF_ROWS = [
    # beta
    (1, 0.3, 2, 3, 0), (1, 0.01, 0.5, 0.5, 0), (1, 0.99, 0.5, 0.5, 0), (1, 0.5, 10, 10, 0),
    (1, 0.2, 1, 1, 0), (1, 0.9, 50, 5, 0), (1, 1e-5, 0.1, 2, 0), (1, 0.7, 200, 80, 0),
    (1, 0.05, 3, 40, 0), (1, 0.45, 1000, 1200, 0),
    # chi-square, central and noncentral
    (2, 0.5, 1, 0, 0), (2, 3.84, 1, 0, 0), (2, 7.81, 3, 0, 0), (2, 100, 80, 0, 0),
    (2, 1e-4, 2, 0, 0), (2, 60, 10, 0, 0), (2, 0.2, 0.5, 0, 0), (2, 2000, 2000, 0, 0),
    (2, 5, 3, 2, 0), (2, 20, 4, 10, 0), (2, 1, 2, 0.5, 0), (2, 150, 10, 100, 0),
    (2, 40, 5, 5, 0),
    # gamma with scale and threshold
    (3, 2.5, 2, 1, 0), (3, 0.1, 0.5, 1, 0), (3, 30, 3, 2, 5), (3, 1e-3, 1, 1, 0),
    (3, 120, 100, 1, 0), (3, 7, 2.5, 0.5, 1), (3, 0.05, 0.2, 3, 0), (3, 900, 1000, 1, 0),
    # F, central and noncentral
    (4, 1, 2, 3, 0), (4, 3.5, 5, 10, 0), (4, 0.2, 1, 1, 0), (4, 2, 10, 40, 0),
    (4, 0.05, 3, 7, 0), (4, 50, 4, 6, 0), (4, 2, 3, 8, 2), (4, 5, 5, 20, 10),
    # t, central and noncentral
    (5, 1.5, 3, 0, 0), (5, -2, 10, 0, 0), (5, 0.3, 1, 0, 0), (5, 40, 5, 0, 0),
    (5, -0.1, 100, 0, 0), (5, 2, 5, 1, 0), (5, -1, 8, 0.5, 0), (5, 4, 12, 3, 0),
    (5, 0.5, 20, -1.5, 0),
]

PDF_ROWS = [
    (1, 0.3, 2, 3, 0), (1, 0.01, 0.5, 0.5, 0), (1, 0.5, 10, 10, 0), (1, 0.9, 50, 5, 0),
    (2, 0.5, 1, 0, 0), (2, 7.81, 3, 0, 0), (2, 100, 80, 0, 0), (2, 1e-4, 2, 0, 0),
    (3, 2.5, 2, 1, 0), (3, 30, 3, 2, 5), (3, 0.05, 0.2, 3, 0), (3, 120, 100, 1, 0),
    (4, 1, 2, 3, 0), (4, 3.5, 5, 10, 0), (4, 0.05, 3, 7, 0),
    (5, 1.5, 3, 0, 0), (5, -2, 10, 0, 0), (5, 0.3, 1, 0, 0), (5, 2, 5, 1, 0),
]

QUANTILE_ROWS = [
    (1, 0.1, 2, 3, 0), (1, 0.5, 0.5, 0.5, 0), (1, 0.95, 10, 10, 0), (1, 0.001, 50, 5, 0),
    (1, 0.999, 0.1, 2, 0), (1, 0.3, 200, 80, 0),
    (2, 0.05, 1, 0, 0), (2, 0.95, 1, 0, 0), (2, 0.9, 3, 0, 0), (2, 0.5, 80, 0, 0),
    (2, 1e-6, 2, 0, 0), (2, 0.999, 10, 0, 0), (2, 0.2, 0.5, 0, 0),
    (2, 0.5, 3, 2, 0), (2, 0.95, 4, 10, 0), (2, 0.01, 10, 100, 0),
    (3, 0.1, 2, 1, 0), (3, 0.5, 0.5, 1, 0), (3, 0.95, 3, 2, 5), (3, 0.999, 100, 1, 0),
    (3, 1e-5, 2.5, 0.5, 1), (3, 0.7, 0.2, 3, 0),
    (4, 0.05, 2, 3, 0), (4, 0.95, 5, 10, 0), (4, 0.5, 1, 1, 0), (4, 0.9, 3, 8, 2),
    (5, 0.975, 3, 0, 0), (5, 0.025, 10, 0, 0), (5, 0.7, 1, 0, 0), (5, 0.9, 5, 1, 0),
    (5, 0.1, 8, 0.5, 0),
]

HEADER = """# Generated by tests/data/gen_flat_kernelbacked.py with mpmath at 40 digits;
# do not edit by hand.
# Families: 1 beta (a, b), 2 chi-square (df, noncentrality), 3 gamma (shape,
# scale, threshold), 4 F (numerator df, denominator df, noncentrality),
# 5 t (df, noncentrality); unused parameters are 0.
"""


def fmt(v):
    return mp.nstr(mp.mpf(v), 17, min_fixed=-1, max_fixed=-1) if v != 0 else "0"


def write(name, columns, rows):
    with open(os.path.join(HERE, name), "w") as f:
        f.write(HEADER)
        f.write("# Columns: " + columns + "\n")
        for r in rows:
            f.write(" ".join(fmt(v) for v in r) + "\n")


def main():
    cdf = []
    for fam, x, p1, p2, p3 in CDF_ROWS:
        lo, up = tails(fam, mp.mpf(x), mp.mpf(p1), mp.mpf(p2), mp.mpf(p3))
        cdf.append((fam, x, p1, p2, p3, lo, up))
    write("flat_kernelbacked_cdf.txt", "family x p1 p2 p3 lower upper", cdf)
    pdf = []
    for fam, x, p1, p2, p3 in PDF_ROWS:
        pdf.append((fam, x, p1, p2, p3,
                    density(fam, mp.mpf(x), mp.mpf(p1), mp.mpf(p2), mp.mpf(p3))))
    write("flat_kernelbacked_pdf.txt", "family x p1 p2 p3 density", pdf)
    qua = []
    for fam, p, p1, p2, p3 in QUANTILE_ROWS:
        qua.append((fam, p, p1, p2, p3,
                    quantile(fam, p, mp.mpf(p1), mp.mpf(p2), mp.mpf(p3))))
    write("flat_kernelbacked_quantile.txt", "family prob p1 p2 p3 quantile", qua)


if __name__ == "__main__":
    main()
