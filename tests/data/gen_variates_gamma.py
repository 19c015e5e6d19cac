"""Reference variates of the gamma, chi-square, negative binomial and
geometric distribution objects at base 12345.

The recorded uniform stream (uniform_stream.py) is replayed through the
published algorithms, written here afresh: the exponential by inversion for
shape 1; Ahrens and Dieter's GS (Computing 12, 1974) below 1; the two-piece
envelope with a constant part on [0, alpha] and an exponential part beyond
for shapes 1 to 4; the normal body with an exponential tail from shape 4 on,
its normals by the polar method of Marsaglia and Bray (SIAM Review 6, 1964)
keeping the spare of each pair.  These are sequences of IEEE double
operations, so plain floats are used, with the library's guards on the
logarithm, exponential and power (an overflow abandons a round).  The
negative binomial and geometric variates are Poisson quantiles at one
uniform with the mixing gamma (exponential) variate as the mean; those
quantiles are computed with mpmath at 50 digits, and a row whose uniform
lies within 1e-6 of a step of the Poisson distribution function (relative to
the step) is refused, so that no row depends on rounding.

One more row starts from another base: the first variate of the small-shape
scheme at the (invalid) shape -0.01 from the first base at which its first
round overflows and is abandoned.

Usage: python3 gen_variates_gamma.py > variates_gamma.txt
"""

import math

import mpmath

from uniform_stream import UniformStream

BASE = 12345
COUNT = 20
MAX_EXPONENT = 709.0


class Overflow(Exception):
    pass


def glog(x):
    if x > 0.0:
        return math.log(x)
    if x == 0.0:
        raise Overflow()
    if x < 0.0:
        raise ValueError("log of a negative argument")
    return x


def gexp(x):
    if x > MAX_EXPONENT:
        raise Overflow()
    if x < -MAX_EXPONENT:
        return 0.0
    return math.exp(x)


def gpow(base, e):
    if base < 0.0:
        raise ValueError("negative base")
    if base == 0.0:
        if e > 0.0:
            return 0.0
        if e == 0.0:
            return 1.0
        raise ValueError("zero to a negative power")
    lr = math.log(base) * e
    if lr < -MAX_EXPONENT:
        return 0.0
    if lr > MAX_EXPONENT:
        raise Overflow()
    return math.pow(base, e)


class Exponential:
    """Scale 1, threshold 0, by inversion."""

    def __init__(self, rng):
        self.rng = rng

    def draw(self):
        u = self.rng.next()
        return 0.0 - 1.0 * glog(1.0 - u)


class SmallShape:
    """Ahrens and Dieter's GS for a < 1."""

    def __init__(self, rng, a):
        self.rng = rng
        self.a = a
        self.b = (a + math.e) / math.e
        self.abandoned = 0

    def draw(self):
        a, b = self.a, self.b
        while True:
            try:
                p = self.rng.next() * b
                if p > 1.0:
                    x = -glog((b - p) / a)
                    v = self.rng.next()
                    if gpow(x, a - 1.0) >= v:
                        return x
                else:
                    x = gpow(p, 1.0 / a)
                    v = self.rng.next()
                    if gexp(-x) >= v:
                        return x
            except Overflow:
                self.abandoned += 1


class MiddleShape:
    """Two-piece envelope for 1 < a < 4."""

    def __init__(self, rng, a):
        self.rng = rng
        al = a - 1.0
        lam = (math.sqrt(1.0 + 4.0 * al) - 1.0) / (2.0 * al)
        if not lam < 1.0:
            lam = 2.0 / (math.sqrt(1.0 + 4.0 * al) + 1.0)
        self.al = al
        self.lam = lam
        self.oml = 1.0 - lam
        self.power = gpow(self.oml, al)
        self.area = gexp(-lam * al) / lam + al * self.power
        self.cut = al * self.power / self.area
        self.log2 = math.log(2.0)

    def draw(self):
        al, lam = self.al, self.lam
        while True:
            try:
                e = -glog(self.rng.next())
                w = self.rng.next()
                if w <= self.cut:
                    x = w * self.area * (1.0 / self.power)
                    if al * self.log2 - x > e:
                        continue
                    t = glog(al) * al - al - glog(x) * al + x
                else:
                    x = glog((1.0 - w) * lam * self.area) * (-1.0 / lam)
                    t = glog(al / (x * self.oml)) * al + x * self.oml - al
                if t <= e:
                    return x
            except Overflow:
                pass


class Normal:
    """Polar method, the spare of each pair kept for the next call."""

    def __init__(self, rng):
        self.rng = rng
        self.spare = None

    def draw(self):
        if self.spare is not None:
            z, self.spare = self.spare, None
            return z * 1.0 + 0.0
        while True:
            x = 2.0 * self.rng.next() - 1.0
            y = 2.0 * self.rng.next() - 1.0
            s = y * y + x * x
            if not s > 1.0:
                break
        f = math.sqrt(math.log(s) * -2.0 / s)
        self.spare = y * f
        return x * f * 1.0 + 0.0


class LargeShape:
    """Normal body and exponential tail for a >= 4."""

    P = 0.009572265238289

    def __init__(self, rng, a):
        self.rng = rng
        self.b = a - 1.0
        self.s = math.sqrt(a)
        q = math.sqrt(8.0 / 3.0) * math.sqrt(a) + a
        self.g = math.sqrt(q)
        self.r = q / self.b
        self.w = math.sqrt(6.0) * math.sqrt(q)
        self.t = self.w + self.b
        p = self.P
        self.c = -math.log(math.sqrt(2.0 * math.pi) * p / (1.0 - p))
        self.normal = Normal(rng)

    def round(self):
        p, t, w, b, r, s, c, g = self.P, self.t, self.w, self.b, self.r, self.s, self.c, self.g
        u = self.rng.next()
        if u < p:
            x = (-glog(self.rng.next()) / w + 1.0) * t
            v = self.rng.next()
            y = (glog(x / b) + 2.0 - x / t) * b + c - t
            return x, y - glog(g * w / t) >= glog(v)
        z = self.normal.draw()
        x = g * z + b
        if x < 0.0 or x > t:
            return x, False
        v = self.rng.next()
        h = z * z * 0.5
        if z >= 0.0:
            if 1.0 - (r - 1.0) * h >= v:
                return x, True
        elif 1.0 - ((1.0 - 2.0 * z / s) * r - 1.0) * h >= v:
            return x, True
        return x, (glog(x / b) + 1.0) * b - x + h >= glog(v)

    def draw(self):
        while True:
            try:
                x, ok = self.round()
                if ok:
                    return x
            except Overflow:
                pass


def standard_gamma(rng, a):
    # Shape 1 within the library's fuzz (eps times the larger magnitude).
    if abs(a - 1.0) <= 1e-30 + 2.0 ** -52 * max(abs(a), 1.0):
        return Exponential(rng)
    if a >= 4.0:
        return LargeShape(rng, a)
    if a >= 1.0:
        return MiddleShape(rng, a)
    return SmallShape(rng, a)


mpmath.mp.dps = 50


def poisson_quantile(u, mean):
    """Smallest k with P(X <= k) >= u, refusing a u near a step."""
    if mean == 0.0:
        return 0
    lam = mpmath.mpf(mean)
    uu = mpmath.mpf(u)
    term = mpmath.exp(-lam)
    cdf = term
    k = 0
    while cdf < uu:
        k += 1
        term = term * lam / k
        cdf += term
    below = cdf - term
    if (uu - below) / term < 1e-6 or (cdf - uu) / term < 1e-6:
        raise RuntimeError("uniform %r on a step at mean %r" % (u, mean))
    return k


def main():
    rows = []
    gamma_cases = [
        (0.5, 2.0, 1.0),
        (1.0, 3.0, -1.0),
        (1.5, 0.5, 0.0),
        (3.9, 1.25, 2.0),
        (4.0, 2.0, 0.0),
        (10.0, 0.1, 5.0),
        (100.0, 1.0, 0.0),
    ]
    for shape, scale, threshold in gamma_cases:
        rng = UniformStream(BASE)
        gen = standard_gamma(rng, shape)
        for i in range(COUNT):
            x = gen.draw() * scale + threshold
            rows.append((1, shape, scale, threshold, i, x, rng.count))
    for df in (1.0, 2.0, 5.0, 12.0):
        rng = UniformStream(BASE)
        gen = standard_gamma(rng, df / 2.0)
        for i in range(COUNT):
            x = gen.draw() * 2.0 + 0.0
            rows.append((2, df, 0.0, 0.0, i, x, rng.count))
    for p, r, failures in ((0.3, 2.5, 1), (0.3, 2.5, 0), (0.6, 0.4, 1), (0.2, 7.0, 0)):
        rng = UniformStream(BASE)
        gen = standard_gamma(rng, r)
        scale = (1.0 - p) / p
        for i in range(COUNT):
            mean = gen.draw() * scale + 0.0
            k = poisson_quantile(rng.next(), mean)
            rows.append((3, p, r, failures, i, float(k if failures else k + r), rng.count))
    for p, failures in ((0.25, 0), (0.7, 1)):
        rng = UniformStream(BASE)
        gen = Exponential(rng)
        scale = (1.0 - p) / p
        for i in range(COUNT):
            u = rng.next()
            mean = 0.0 - scale * glog(1.0 - u)
            k = poisson_quantile(rng.next(), mean)
            rows.append((4, p, 1.0, failures, i, float(k if failures else k + 1), rng.count))

    # An overflow that abandons a round: the (invalid) shape -0.01 raises p to
    # the power -100, which overflows for p < exp(-7.09); the first base from
    # 1 on whose first uniform does so, and the variate drawn there.
    shape = -0.01
    base = 1
    while True:
        rng = UniformStream(base)
        try:
            gpow(rng.next() * ((shape + math.e) / math.e), 1.0 / shape)
        except Overflow:
            break
        base += 1
    rng = UniformStream(base)
    gen = SmallShape(rng, shape)
    x = gen.draw()
    rows.append((5, shape, float(base), float(gen.abandoned), 0, x, rng.count))

    print("# Reference variates at base 12345, generated by gen_variates_gamma.py:")
    print("# the recorded uniform stream replayed through the published algorithms in")
    print("# IEEE doubles (Poisson quantiles of the mixtures by mpmath, 50 digits).")
    print("# Each case starts from a fresh object at base 12345.")
    print("# kind 1 gamma: p1 shape, p2 scale, p3 threshold")
    print("# kind 2 chi-square: p1 degrees of freedom")
    print("# kind 3 negative binomial: p1 probability, p2 r, p3 1 when failures are counted")
    print("# kind 4 geometric: p1 probability, p3 1 when failures are counted")
    print("# kind 5 gamma below shape 1 with rounds abandoned on overflow: p1 shape,")
    print("#   p2 the base it starts from (not 12345), p3 the rounds abandoned")
    print("# columns: kind p1 p2 p3 index variate uniforms_consumed_so_far")
    for row in rows:
        print("%d %r %r %r %d %s %d" % (row[0], row[1], row[2], row[3], row[4], repr(row[5]), row[6]))


if __name__ == "__main__":
    main()
