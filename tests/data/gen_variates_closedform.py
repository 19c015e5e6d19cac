#!/usr/bin/env python3
"""Writes variates_closedform.txt and variates_closedform_mvnormal.txt: the
first variates that the closed-form continuous distribution objects and the
multivariate normal object draw after the generator's base is set to 12345,
derived here from the replayed uniform stream (uniform_stream.py), not from
the library.

Routes, each written afresh from its published description:
  * inversion classes: the exact quantile at the uniform, with mpmath at 50
    significant digits, rounded to a double at the end;
  * uniform: U * (upper - lower) + lower in IEEE doubles;
  * normal: the polar method of Marsaglia and Bray, SIAM Review 6 (1964), in
    IEEE doubles (u, v uniform; x = 2u - 1, y = 2v - 1; s = y*y + x*x, a
    round repeated while s > 1; f = sqrt(log(s) * -2 / s); x*f now and y*f
    kept for the next call), then z * scale + location;
  * lognormal: exp of the normal variate (location, scale) plus threshold;
  * multivariate normal: L z + mean, L the lower Cholesky factor of the
    covariance (L = U', U'U = A) computed by mpmath at 50 digits, z standard
    normals from the polar method in order.

Class codes are those of the distribution enumeration:
   1 normal (location, scale)            2 lognormal (location, scale, threshold)
   4 smallest extreme value (loc, scale) 5 largest extreme value (loc, scale)
   6 Weibull (shape, scale, threshold)   8 exponential (scale, threshold)
  10 logistic (location, scale)         11 loglogistic (loc, scale, threshold)
  18 Cauchy (location, scale)           25 Tukey lambda (lambda, loc, scale)
  26 Laplace (location, scale)          31 uniform (lower, upper)
  32 triangular (lower, mode, upper)

Usage: python3 gen_variates_closedform.py   (writes both tables beside it)
"""
import math
import os

import mpmath
from mpmath import mpf

from uniform_stream import UniformStream

mpmath.mp.dps = 50

BASE = 12345
# Inversion classes take one uniform a variate; the normal's first rejected
# round at this base is its seventeenth, so the normal and lognormal rows
# run far enough to include two rejections.
COUNT = 12
COUNT_POLAR = 40

# (code, parameters in the order of the class's vector constructor)
CASES = [
    (1, (1.5, 2.0)),
    (1, (0.0, 1.0)),
    (2, (0.5, 0.75, 2.0)),
    (4, (3.0, 2.0)),
    (5, (3.0, 2.0)),
    (6, (1.7, 2.5, 1.0)),
    (8, (2.0, 1.0)),
    (10, (4.0, 1.5)),
    (11, (0.5, 0.4, 2.0)),
    (18, (5.0, 0.5)),
    (25, (0.14, 3.0, 1.0)),
    (25, (-0.3, 4.0, 2.0)),
    (26, (3.0, 1.25)),
    (31, (-1.0, 3.0)),
    (32, (1.0, 2.5, 4.0)),
    (32, (1.0, 1.0, 2.0)),
]

MV_MEAN = [1.0, -2.0, 0.5]
MV_COV = [[4.0, 1.2, -0.8],
          [1.2, 2.25, 0.6],
          [-0.8, 0.6, 1.0]]
MV_COUNT = 12


class PolarNormal:
    """Standard normal variates in pairs by the polar method, one spare kept."""

    def __init__(self, stream):
        self.stream = stream
        self.spare = None

    def next(self):
        if self.spare is not None:
            z, self.spare = self.spare, None
            return z
        while True:
            u = self.stream.next()
            v = self.stream.next()
            x = 2.0 * u - 1.0
            y = 2.0 * v - 1.0
            s = y * y + x * x
            if not s > 1.0:
                break
        f = math.sqrt(math.log(s) * -2.0 / s)
        self.spare = y * f
        return x * f


def quantile(code, p, a):
    """The exact quantile of family code at the double p, parameters a."""
    p = mpf(p)
    a = [mpf(x) for x in a]
    if code == 4:
        return a[0] + a[1] * mpmath.log(-mpmath.log(1 - p))
    if code == 5:
        return a[0] - a[1] * mpmath.log(-mpmath.log(p))
    if code == 6:
        return a[2] + a[1] * (-mpmath.log(1 - p)) ** (1 / a[0])
    if code == 8:
        return a[1] - a[0] * mpmath.log(1 - p)
    if code == 10:
        return a[0] + a[1] * mpmath.log(p / (1 - p))
    if code == 11:
        return a[2] + mpmath.exp(a[0] + a[1] * mpmath.log(p / (1 - p)))
    if code == 18:
        return a[0] + a[1] * mpmath.tan(mpmath.pi * (p - mpf(1) / 2))
    if code == 25:
        lam = a[0]
        return a[1] + a[2] * (p ** lam - (1 - p) ** lam) / lam
    if code == 26:
        if p < mpf(1) / 2:
            return a[0] + a[1] * mpmath.log(2 * p)
        return a[0] - a[1] * mpmath.log(2 * (1 - p))
    if code == 32:
        lo, mode, hi = a
        if p <= (mode - lo) / (hi - lo):
            return lo + mpmath.sqrt(p * (hi - lo) * (mode - lo))
        return hi - mpmath.sqrt((1 - p) * (hi - lo) * (hi - mode))
    raise ValueError(code)


def variates(code, params):
    """[(value, uniforms consumed so far)] for the first variates."""
    stream = UniformStream(BASE)
    out = []
    if code in (1, 2):
        normal = PolarNormal(stream)
        for _ in range(COUNT_POLAR):
            z = normal.next()
            x = z * params[1] + params[0]
            if code == 2:
                x = math.exp(x) + params[2]
            out.append((x, stream.count))
        return out
    for _ in range(COUNT):
        u = stream.next()
        if code == 31:
            x = u * (params[1] - params[0]) + params[0]
        else:
            x = float(quantile(code, u, params))
        out.append((x, stream.count))
    return out


def mv_variates():
    stream = UniformStream(BASE)
    normal = PolarNormal(stream)
    lower = mpmath.cholesky(mpmath.matrix(MV_COV))
    n = len(MV_MEAN)
    out = []
    for draw in range(MV_COUNT):
        z = [normal.next() for _ in range(n)]
        for i in range(n):
            s = mpf(MV_MEAN[i])
            for k in range(i + 1):
                s += lower[i, k] * mpf(z[k])
            out.append((draw, i, float(s), stream.count))
    return out


def main():
    here = os.path.dirname(os.path.abspath(__file__))
    with open(os.path.join(here, "variates_closedform.txt"), "w") as f:
        f.write("# Written by gen_variates_closedform.py: the first variates of the\n")
        f.write("# closed-form distribution objects after mSetBase(%d), from the replayed\n" % BASE)
        f.write("# uniform stream (inversion at 50 digits; uniform, normal and lognormal\n")
        f.write("# in IEEE doubles, the normal by the polar method).\n")
        f.write("# columns: class code, p1, p2, p3 (0 when unused), index (from 0),\n")
        f.write("#          variate, uniforms consumed after it\n")
        for code, params in CASES:
            padded = list(params) + [0.0] * (3 - len(params))
            for index, (x, used) in enumerate(variates(code, params)):
                f.write("%d %r %r %r %d %r %d\n" % (code, padded[0], padded[1], padded[2],
                                                    index, x, used))
    with open(os.path.join(here, "variates_closedform_mvnormal.txt"), "w") as f:
        f.write("# Written by gen_variates_closedform.py: the first vectors of the\n")
        f.write("# multivariate normal object after mSetBase(%d): L z + mean, L the lower\n" % BASE)
        f.write("# Cholesky factor by mpmath at 50 digits, z polar-method normals.\n")
        f.write("# mean %r\n" % (MV_MEAN,))
        f.write("# covariance %r\n" % (MV_COV,))
        f.write("# columns: draw (from 0), entry (from 0), value, uniforms consumed\n")
        f.write("#          after the draw\n")
        for draw, i, x, used in mv_variates():
            f.write("%d %d %r %d\n" % (draw, i, x, used))


if __name__ == "__main__":
    main()
