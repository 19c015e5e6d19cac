#!/usr/bin/env python3
"""Writes the reference tables of the Student t and F kernels:

  t_kernel_df.txt      df  t  lower  upper        of Student's t
  t_kernel_quant.txt   df  p  x                   x with upper tail p
  F_kernel_df.txt      df1  df2  x  lower  upper  of the central F
  F_kernel_ncdf.txt    df1  df2  delta  x  lower  upper  of the noncentral F

All values are computed with mpmath at 50 significant digits and printed with
20.  The regularised incomplete beta ratio I_y(a, b) is evaluated by the
continued fraction of Abramowitz and Stegun 26.5.8 (modified Lentz) on the
side where it converges (y below (a + 1)/(a + b + 2), else on the mirror
1 - y with the shapes exchanged), its prefactor y^a (1-y)^b / (a B(a, b))
from mpmath's loggamma.  Both tails are evaluated directly, never as 1 minus
the other.  Student's t: the two-sided tail at t is I_(df/(df+t^2))(df/2, 1/2);
the F distribution function at x is I_(u/(1+u))(df1/2, df2/2) with u = x df1/df2.
The noncentral F is the Poisson(delta/2) mixture of I(df1/2 + j, df2/2) over
j = 0 .. delta/2 + 40 sqrt(delta/2) + 150; the tails of neighbouring shapes are
linked by I_y(a, b) = I_y(a + 1, b) + y^a (1-y)^b / (a B(a, b)), the lower
tails added from the top index down, the upper tails from the bottom up.
Quantiles are found by bisection on log x followed by bracketing
(Anderson-Bjorck) steps on the log of the tail, in mpmath, and checked to satisfy the tail to 40
digits.  Every argument is rounded to a double first (printed with 17
significant digits) and the functions are evaluated at that double exactly.

Usage: python3 gen_t_kernels.py [t_df t_quant F_df F_ncdf]
(writes the files beside itself; all four without arguments)
"""
import os

import mpmath
from mpmath import mpf

mpmath.mp.dps = 50
DIGITS = 20
HERE = os.path.dirname(os.path.abspath(__file__))


def fmt(v):
    return mpmath.nstr(v, DIGITS, min_fixed=1, max_fixed=0)


def d17(v):
    return repr(float(v))


def log_prefactor(a, b, y, ym):
    """log of y^a ym^b / (a B(a, b)), ym = 1 - y."""
    return (a * mpmath.log(y) + b * mpmath.log(ym) - mpmath.log(a)
            + mpmath.loggamma(a + b) - mpmath.loggamma(a) - mpmath.loggamma(b))


def cf(a, b, y):
    """Continued fraction of A&S 26.5.8, modified Lentz."""
    tiny = mpf(10) ** (-300)
    eps = mpf(10) ** (-45)
    c = mpf(1)
    d = 1 - (a + b) * y / (a + 1)
    if abs(d) < tiny:
        d = tiny
    d = 1 / d
    f = d
    m = 1
    while True:
        num = m * (b - m) * y / ((a + 2 * m - 1) * (a + 2 * m))
        d = 1 + num * d
        d = tiny if abs(d) < tiny else d
        c = 1 + num / c
        c = tiny if abs(c) < tiny else c
        d = 1 / d
        f *= c * d
        num = -(a + m) * (a + b + m) * y / ((a + 2 * m) * (a + 2 * m + 1))
        d = 1 + num * d
        d = tiny if abs(d) < tiny else d
        c = 1 + num / c
        c = tiny if abs(c) < tiny else c
        d = 1 / d
        delta = c * d
        f *= delta
        if abs(delta - 1) < eps:
            return f
        m += 1
        if m > 10 ** 7:
            raise RuntimeError("continued fraction did not converge")


def beta_tails(a, b, y, ym=None):
    """(I_y(a, b), 1 - I_y(a, b)), each evaluated directly; ym is 1 - y when
    the caller has it without cancellation."""
    a, b, y = mpf(a), mpf(b), mpf(y)
    ym = 1 - y if ym is None else mpf(ym)
    if y <= 0:
        return mpf(0), mpf(1)
    if y >= 1:
        return mpf(1), mpf(0)
    if y < (a + 1) / (a + b + 2):
        lo = mpmath.exp(log_prefactor(a, b, y, ym)) * cf(a, b, y)
        # Below the mean the lower tail is not close to 1, so its complement
        # keeps all but a few of the 50 digits.
        up = 1 - lo
        return lo, up
    up = mpmath.exp(log_prefactor(b, a, ym, y)) * cf(b, a, ym)
    return 1 - up, up


def t_tails(t, df):
    t, df = mpf(t), mpf(df)
    u = t * t
    if u == 0:
        return mpf(1) / 2, mpf(1) / 2
    # Two-sided tail I_(df/(df+u))(df/2, 1/2) and its complement.
    two, rest = beta_tails(df / 2, mpf(1) / 2, df / (df + u), u / (df + u))
    h = two / 2
    if t > 0:
        return 1 - h, h
    return h, 1 - h


def F_tails(x, df1, df2):
    x, df1, df2 = mpf(x), mpf(df1), mpf(df2)
    u = x * df1 / df2
    return beta_tails(df1 / 2, df2 / 2, u / (1 + u), 1 / (1 + u))


def solve(tail, p, lo, hi):
    """x in (lo, hi) with tail(x) = p, tail decreasing; bisection on log x,
    then bracketing (Anderson-Bjorck) steps on log tail, in mpmath."""
    p = mpf(p)
    llo, lhi = mpmath.log(lo), mpmath.log(hi)
    for _ in range(200):
        mid = (llo + lhi) / 2
        if tail(mpmath.exp(mid)) > p:
            llo = mid
        else:
            lhi = mid
        if lhi - llo < mpf(10) ** -4:
            break
    f = lambda lx: mpmath.log(tail(mpmath.exp(lx))) - mpmath.log(p)
    r = mpmath.findroot(f, (llo, lhi), solver="anderson", tol=mpf(10) ** -60, verify=False)
    x = mpmath.exp(r)
    assert abs(tail(x) / p - 1) < mpf(10) ** -40, (p, x)
    return x


def write(name, header, rows):
    with open(os.path.join(HERE, name), "w") as f:
        for line in header:
            f.write("# " + line + "\n")
        for r in rows:
            f.write(" ".join(r) + "\n")


def gen_t_df():
    rows = []
    dfs = [0.1, 0.5, 1.0, 2.5, 3.0, 7.0, 30.5, 100.0, 1234.5, 1e5, 1e7]
    ts = [0.0, 1e-3, 0.3, 1.0, 2.5, 7.0, 30.0, 1e3, 1e8, 1e20, 1e80, 1e200, 1e300]
    for df in dfs:
        for tt in ts:
            for s in ([1] if tt == 0 else [1, -1]):
                t = float(s * tt)
                lo, up = t_tails(t, df)
                if min(lo, up) < mpf(10) ** -300:
                    continue
                rows.append([d17(df), d17(t), fmt(lo), fmt(up)])
    write("t_kernel_df.txt",
          ["Student t: P(T <= t) and P(T > t); generated by gen_t_kernels.py (mpmath, 50 digits)",
           "columns: df  t  lower  upper"], rows)


def gen_t_quant():
    rows = []
    dfs = [0.1, 0.5, 1.0, 2.5, 7.0, 30.5, 1234.5, 1e5, 1e7]
    ps = [1e-12, 1e-8, 1e-4, 0.01, 0.1, 0.25, 0.3, 0.45, 0.4999]
    for df in dfs:
        for p in ps:
            up = lambda x, df=df: t_tails(x, df)[1]
            x = solve(up, p, mpf(10) ** -20, mpf(10) ** 200)
            rows.append([d17(df), d17(p), fmt(x)])
    write("t_kernel_quant.txt",
          ["Student t quantiles: x with P(T > x) = p; generated by gen_t_kernels.py (mpmath, 50 digits)",
           "columns: df  p  x"], rows)


F_DFS = [(0.1, 1.0), (1.0, 0.1), (1.0, 1.0), (2.0, 5.0), (5.0, 2.0), (3.5, 50.5), (50.5, 3.5),
         (100.0, 100.0), (1e4, 20.0), (20.0, 1e4), (1e7, 1e7), (1e7, 3.0), (3.0, 1e7)]


def gen_F_df():
    rows = []
    xs = [1e-200, 1e-30, 1e-5, 0.01, 0.3, 0.9, 1.0, 1.1, 2.0, 5.0, 40.0, 1e4, 1e30, 1e200]
    for df1, df2 in F_DFS:
        for x in xs:
            lo, up = F_tails(x, df1, df2)
            if max(lo, up) < mpf(10) ** -280:
                continue
            rows.append([d17(df1), d17(df2), d17(x), fmt(lo), fmt(up)])
    write("F_kernel_df.txt",
          ["central F: P(X <= x) and P(X > x); generated by gen_t_kernels.py (mpmath, 50 digits)",
           "columns: df1  df2  x  lower  upper"], rows)


def nF_tails(x, df1, df2, delta):
    x, df1, df2, delta = mpf(x), mpf(df1), mpf(df2), mpf(delta)
    lam = delta / 2
    u = x * df1 / df2
    y = u / (1 + u)
    a, b = df1 / 2, df2 / 2
    top = int(lam + 40 * mpmath.sqrt(lam) + 150)
    w = [mpmath.exp(-lam + j * mpmath.log(lam) - mpmath.loggamma(j + 1)) for j in range(top + 1)]
    # term(s) = y^s (1-y)^b / (s B(s, b)) = I(s) - I(s + 1)
    term = lambda s: mpmath.exp(log_prefactor(s, b, y, 1 / (1 + u)))
    lower = mpf(0)
    I, _ = beta_tails(a + top, b, y, 1 / (1 + u))
    for j in range(top, -1, -1):
        lower += w[j] * I
        if j > 0:
            I += term(a + j - 1)
    upper = mpf(0)
    _, U = beta_tails(a, b, y, 1 / (1 + u))
    for j in range(0, top + 1):
        upper += w[j] * U
        U += term(a + j)
    # Weight missing beyond the top index goes to the upper tail.
    return lower, upper


def gen_F_ncdf():
    rows = []
    cases = [(1.0, 1.0), (3.0, 10.0), (10.0, 3.0), (5.5, 40.0), (50.0, 200.0)]
    deltas = [0.1, 2.0, 25.0, 120.0, 500.0]
    for df1, df2 in cases:
        for delta in deltas:
            mean = (df1 + delta) / df1 * df2 / max(df2 - 2, 1)
            for f in [0.02, 0.3, 1.0, 3.0, 12.0]:
                x = float(mean * f)
                lo, up = nF_tails(x, df1, df2, delta)
                rows.append([d17(df1), d17(df2), d17(delta), d17(x), fmt(lo), fmt(up)])
    write("F_kernel_ncdf.txt",
          ["noncentral F: P(X <= x) and P(X > x); generated by gen_t_kernels.py (mpmath, 50 digits)",
           "columns: df1  df2  delta  x  lower  upper"], rows)


if __name__ == "__main__":
    import sys
    parts = {"t_df": gen_t_df, "t_quant": gen_t_quant, "F_df": gen_F_df, "F_ncdf": gen_F_ncdf}
    for name in (sys.argv[1:] or list(parts)):
        parts[name]()
