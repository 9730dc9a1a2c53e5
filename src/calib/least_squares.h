// Small linear systems N x = r: their normal equations, gathered one equation row . x = b at a time, their
// determinant and their solution by Cramer's rule. The caller compares the determinant with its own limit.
#pragma once

#include "math/vec3.h"

namespace kine {

// Two unknowns, symmetric.
struct LinearSystem2
{
    double n00, n01, n11;
    double r0, r1;
};

struct Solution2
{
    double x0;
    double x1;
};

// Adds the equation a0 * x0 + a1 * x1 = b to normal equations.
void AddEquation(LinearSystem2& normal, double a0, double a1, double b);

double Determinant(const LinearSystem2& system);
Solution2 CramersRule(const LinearSystem2& system, double determinant);

// Three unknowns, by columns.
struct LinearSystem3
{
    Vec3 column0, column1, column2;
    Vec3 right;
};

// Adds the equation Dot(row, x) = b to normal equations.
void AddEquation(LinearSystem3& normal, const Vec3& row, double b);

double Determinant(const LinearSystem3& system);
Vec3 CramersRule(const LinearSystem3& system, double determinant);

}  // namespace kine
