"""The library's uniform stream, replicated for the generators of reference
variates: three multiplicative congruential streams with L'Ecuyer's 1988
16-bit multipliers and moduli, their fractions summed as Wichmann and Hill
sum theirs.  Integer arithmetic is exact in Python, and the three divisions
and two additions are IEEE double operations in the library's order, so the
uniforms are the library's to the last bit."""

import math

M1, M2, M3 = 32363, 31727, 31657
A1, A2, A3 = 157, 146, 142


class UniformStream:
    def __init__(self, base):
        b = int(base)
        self.s3 = b % (M3 - 1) + 1
        self.s2 = (b // (M3 - 1)) % (M2 - 1) + 1
        self.s1 = b // ((M3 - 1) * (M2 - 1)) + 1
        self.count = 0

    def next(self):
        self.s1 = (A1 * self.s1) % M1
        self.s2 = (A2 * self.s2) % M2
        self.s3 = (A3 * self.s3) % M3
        self.count += 1
        u = float(self.s2) / float(M2) + float(self.s1) / float(M1)
        u = u + float(self.s3) / float(M3)
        return math.modf(u)[0]

    def base(self):
        return ((self.s1 - 1) * (M2 - 1) + (self.s2 - 1)) * (M3 - 1) + (self.s3 - 1)
