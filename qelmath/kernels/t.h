// The Student t kernels: central tails and quantiles through the beta kernel,
// and the noncentral distribution function with the routes it chooses among
// (a noncentral-beta sum, a saddlepoint tail, Owen's recursion for integer
// degrees of freedom, closed forms of the far lower tail).
// Reports go through the kernel error state (kernel_protocol.h).
//
// Routes of t_ncdf (kernel_method_code):
//   t delta >= 0: the noncentral-beta form, 0 (df >= t^2) or 1000 (df < t^2)
//     plus the route of the odd sum formed last (11, 12, 13 descending;
//     21, 22, 23, 24 ascending; see t_noncentral_sums.cpp), + 100 when the
//     first sum passed 0.9 and the opposite one was formed;
//   1 t < 0 < delta with delta above 21.3: the lower tail is 0;
//   2 the noncentral-beta sum kept its digits (t < 0 < delta);
//   3 t = 0, or a sum that lost some digits and stands (n = 0, or 7 to 12
//     with -25 <= t <= -2, or 13 and more);
//   2000 the saddlepoint value is 0; 2001 df >= 1000, the saddlepoint value;
//   2002 / 2003 the sum lost all its digits and the saddlepoint value stands
//     (2003 when df <= 30);
//   3000 / 3001 closed form of the far lower tail, n = 2..6 / 7..12;
//   4000 / 4001 / 4002 Owen's recursion, n = 1 / 2..6 / 7..12;
//   + 10000 the sum lost three to six digits but stands.
#pragma once

// Lower and upper tails of Student's t with df degrees of freedom at t.
void t_df(double t, double df, double* lower, double* upper);

// Lower and upper tails of the noncentral t with df degrees of freedom and
// noncentrality delta (the mean of the normal numerator) at t.
void t_ncdf(double t, double df, double delta, double* lower, double* upper);

// The x with upper (lower) tail p of Student's t, for 1e-12 <= p <= 0.5 and
// 0.002 <= df <= 189812530; otherwise x = -1.7976931348623157e+308, code 2.
void t_upper_qt(double p, double df, double* x);
void t_lower_qt(double p, double df, double* x);

// The routes of t_ncdf, internal to it; exposed for the tests.
//
// The noncentral-beta form (Lenth, Applied Statistics AS 243): stores the
// lower and upper tails in *lower and *upper.  fallback is the value put in
// place of a lower tail whose digits were all lost; *accurate is set to 1 when
// the result kept its digits and left as it was otherwise.
void t_ncdf_beta(double t, double df, double delta, double fallback, int* accurate,
                 double* lower, double* upper);
// Saddlepoint value of the lower tail for t < 0 < delta.
double t_ncdf_left(double t, double df, double delta);
// Owen's recursion (Biometrika 1965) for integer n = trunc(df); -1 on failure.
double t_ncdf_owen(double t, double df, double delta);
// Closed form of the far lower tail for integer n = trunc(df) in 1..12; -1 on
// failure (code 4 forced).
double t_ncdf_table(double t, double df, double delta);

// The four Poisson-weighted sums of the odd part of the noncentral-beta form:
// ql = sum of w(j) I(j), qu = sum of w(j) (1 - I(j)), w(j) the gamma density at
// L of shape j + 3/2, I(j) the lower tail of Beta(j + 1, h) at y (the _i2 /
// _j2 forms: of the mirrored beta, second shape as index, at y = df/(df+t^2)).
// c is ql + qu; each returns the sum, and the code 0, or 4 on failure, in *code.
double t_ncdf_low_i(double y, double h, double L, double c, int* code);
double t_ncdf_up_j(double y, double h, double L, double c, int* code);
double t_ncdf_low_i2(double y, double h, double L, double c, int* code);
double t_ncdf_up_j2(double y, double h, double L, double c, int* code);

// Owen's T-type function V(h, a) = P(X > h, Y > a X) for independent standard
// normals and a > 0, into *out.  Each returns 0, or 4 on failure.
int owen_tail(double h, double a, double* out);
int owen_large(double h, double a, double* out);
int owen_near_one(double h, double a, double* out);
