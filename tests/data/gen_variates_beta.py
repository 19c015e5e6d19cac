"""Reference variates of the beta, F and Student t distribution objects at
base 12345, written to variates_beta.txt.

The recorded uniform stream (uniform_stream.py) is replayed through the
published algorithms, transcribed afresh here:
  * beta: R. C. H. Cheng, Communications of the ACM 21 (1978), algorithms BB
    (smaller shape > 1) and BC (smaller shape <= 1) with the constants of
    that paper, in IEEE double arithmetic.  A round whose exponential exceeds
    exp(709) or whose logarithm meets 0 is abandoned (the library's guarded
    functions throw there); after 10000 fruitless rounds the variate is the
    limit that w = +infinity gives.
  * F(m, n): (n / m) b / (1 - b) for the beta(m / 2, n / 2) variate b, b held
    below 1 - 2^-52.
  * central t(df): sqrt of an F(1, df) variate, negative when the next
    uniform is >= 0.5.
  * noncentral t(df, delta): the quantile at one uniform, computed with mpmath
    at 40 digits: P(T <= t) = integral over s > 0 of Phi(t s - delta) times
    the density of s = sqrt(chi2_df / df), solved for t.

Run: python3 gen_variates_beta.py  (writes variates_beta.txt beside itself)
"""

import math
import os

import mpmath as mp

from uniform_stream import UniformStream

BASE = 12345
MAX_EXPONENT = 709.0
EPS = 2.0 ** -52
MAX_ROUNDS = 10000


class Overflow(Exception):
    pass


def guarded_exp(x):
    if x > MAX_EXPONENT:
        raise Overflow()
    if x < -MAX_EXPONENT:
        return 0.0
    return math.exp(x)


def guarded_log(x):
    if x == 0.0:
        raise Overflow()
    return math.log(x)


def cheng_bb(stream, a, b):
    """Smaller shape a > 1, larger b.  Returns (w, n) or None."""
    alpha = a + b
    beta = math.sqrt((alpha - 2.0) / (2.0 * a * b - alpha))
    gamma = a + 1.0 / beta
    log4 = math.log(4.0)
    k = math.log(5.0) + 1.0
    for _ in range(MAX_ROUNDS):
        u1 = stream.next()
        u2 = stream.next()
        try:
            v = beta * guarded_log(u1 / (1.0 - u1))
            w = guarded_exp(math.log(a) + v)
            z = u1 * u1 * u2
            r = gamma * v - log4
            s = r + a - w
            if 5.0 * z <= s + k:
                return w, b
            t = guarded_log(z)
            if t <= s:
                return w, b
            if guarded_log(alpha / (w + b)) * alpha + r < t:
                continue
            return w, b
        except Overflow:
            continue
    return None


def cheng_bc(stream, big_a, small_b):
    """Larger shape A, smaller B <= 1.  Returns (w, n) or None."""
    alpha = big_a + small_b
    beta = 1.0 / small_b
    delta = big_a + 1.0 - small_b
    k1 = (small_b * 0.0416667 + 0.0138889) * delta / (beta * big_a - 0.777778)
    k2 = 0.25 + small_b * (1.0 / delta * 0.25 + 0.5)
    log4 = math.log(4.0)
    for _ in range(MAX_ROUNDS):
        u1 = stream.next()
        u2 = stream.next()
        try:
            if u1 < 0.5:
                y = u1 * u2
                z = u1 * y
                if 0.25 * u2 + z - y >= k1:
                    continue
            else:
                z = u1 * u1 * u2
                if z <= 0.25:
                    v = beta * guarded_log(u1 / (1.0 - u1))
                    return guarded_exp(math.log(big_a) + v), small_b
                if z >= k2:
                    continue
            v = beta * guarded_log(u1 / (1.0 - u1))
            w = guarded_exp(math.log(big_a) + v)
            if (guarded_log(alpha / (w + small_b)) + v) * alpha - log4 >= guarded_log(z):
                return w, small_b
        except Overflow:
            continue
    return None


def beta_variate(stream, p, q):
    """(variate, algorithm): algorithm 1 for BB, 2 for BC."""
    small, large = min(p, q), max(p, q)
    if small > 1.0:
        first, algorithm = small, 1
        pair = cheng_bb(stream, small, large)
    else:
        first, algorithm = large, 2
        pair = cheng_bc(stream, large, small)
    first_is_p = first == p
    if pair is None:
        return (1.0 if first_is_p else 0.0), algorithm
    w, n = pair
    return (w if first_is_p else n) / (w + n), algorithm


def f_variate(stream, m, n):
    """(variate, beta variate before the clamp)."""
    b, _ = beta_variate(stream, m / 2.0, n / 2.0)
    held = min(b, 1.0 - EPS)
    return (n / m) * held / (1.0 - held), b


def t_variate(stream, df):
    """(variate, the sign's uniform)."""
    f, _ = f_variate(stream, 1.0, df)
    t = math.sqrt(f)
    u = stream.next()
    return (t if u < 0.5 else -t), u


def noncentral_t_cdf(t, df, delta):
    df = mp.mpf(df)
    delta = mp.mpf(delta)
    half = df / 2
    log_norm = half * mp.log(df) - (half - 1) * mp.log(2) - mp.loggamma(half)

    def integrand(s):
        if s == 0:
            return mp.mpf(0)
        density = mp.exp(log_norm + (df - 1) * mp.log(s) - df * s * s / 2)
        return mp.ncdf(t * s - delta) * density

    return mp.quad(integrand, [0, 0.5, 1, 1.5, 2, 4, mp.inf])


def noncentral_t_quantile(p, df, delta):
    p = mp.mpf(p)
    lo, hi = mp.mpf(-50), mp.mpf(50)
    # Bisection to a bracket, then the secant-like solver to full precision.
    for _ in range(60):
        mid = (lo + hi) / 2
        if noncentral_t_cdf(mid, df, delta) < p:
            lo = mid
        else:
            hi = mid
    return mp.findroot(lambda x: noncentral_t_cdf(x, df, delta) - p, (lo, hi),
                       solver='anderson', tol=mp.mpf(10) ** -30)


def main():
    mp.mp.dps = 40
    rows = []

    def emit(family, params, index, value, count, aux):
        p = list(params) + [0.0] * (3 - len(params))
        rows.append("%d %.17g %.17g %.17g %d %.17g %d %.17g"
                    % (family, p[0], p[1], p[2], index, value, count, aux))

    beta_sets = [(2.0, 3.0), (3.0, 2.0), (3.0, 3.0), (0.5, 3.0), (3.0, 0.5),
                 (0.5, 0.5), (1.0, 1.0), (20.0, 50.0)]
    for p, q in beta_sets:
        s = UniformStream(BASE)
        for i in range(1, 11):
            x, algorithm = beta_variate(s, p, q)
            emit(1, (p, q), i, x, s.count, algorithm)
    # A smaller shape so near 0 that every round overflows or is rejected.
    for p, q in [(2.0, 1e-300), (1e-300, 2.0)]:
        s = UniformStream(BASE)
        for i in range(1, 3):
            x, algorithm = beta_variate(s, p, q)
            emit(1, (p, q), i, x, s.count, algorithm)

    # F(2, 0.001): the beta(1, 0.0005) variate often rounds to 1.
    for m, n in [(3.0, 7.0), (1.0, 10.0), (2.0, 0.001)]:
        s = UniformStream(BASE)
        for i in range(1, 11):
            x, b = f_variate(s, m, n)
            emit(2, (m, n, 0.0), i, x, s.count, b)

    for df in [5.0, 1.0]:
        s = UniformStream(BASE)
        for i in range(1, 11):
            x, u = t_variate(s, df)
            emit(3, (df, 0.0), i, x, s.count, u)

    df, delta = 10.0, 1.5
    s = UniformStream(BASE)
    for i in range(1, 7):
        u = s.next()
        x = noncentral_t_quantile(u, df, delta)
        emit(3, (df, delta), i, float(x), s.count, u)

    here = os.path.dirname(os.path.abspath(__file__))
    with open(os.path.join(here, "variates_beta.txt"), "w") as out:
        out.write("# Reference variates of the beta, F and t distribution objects at base 12345,\n")
        out.write("# generated by gen_variates_beta.py from the replayed uniform stream\n")
        out.write("# (uniform_stream.py) through Cheng's BB/BC (CACM 21, 1978) in IEEE doubles;\n")
        out.write("# noncentral t quantiles by mpmath at 40 digits.\n")
        out.write("# columns: family (1 beta, 2 F, 3 t), p1, p2, p3 (0 when unused), index of\n")
        out.write("# the variate from the base (1 = first), expected variate, uniforms consumed\n")
        out.write("# from the base through this variate, aux: beta 1 = BB, 2 = BC; F the beta\n")
        out.write("# variate before it is held below 1 - eps; t the uniform of the sign (central)\n")
        out.write("# or of the quantile (noncentral).\n")
        for r in rows:
            out.write(r + "\n")


if __name__ == "__main__":
    main()
