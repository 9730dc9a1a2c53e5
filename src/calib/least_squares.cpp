// Normal equations and Cramer's rule.
#include "calib/least_squares.h"

namespace kine {

namespace {

double DeterminantOfColumns(const Vec3& u, const Vec3& v, const Vec3& w)
{
    return Dot(u, CrossProduct(v, w));
}

}  // namespace

void AddEquation(LinearSystem2& normal, double a0, double a1, double b)
{
    normal.n00 += a0 * a0;
    normal.n01 += a0 * a1;
    normal.n11 += a1 * a1;
    normal.r0 += a0 * b;
    normal.r1 += a1 * b;
}

double Determinant(const LinearSystem2& system) { return system.n00 * system.n11 - system.n01 * system.n01; }

Solution2 CramersRule(const LinearSystem2& system, double determinant)
{
    return {(system.r0 * system.n11 - system.r1 * system.n01) / determinant,
            (system.r1 * system.n00 - system.r0 * system.n01) / determinant};
}

void AddEquation(LinearSystem3& normal, const Vec3& row, double b)
{
    normal.column0 = normal.column0 + Scale(row.x, row);
    normal.column1 = normal.column1 + Scale(row.y, row);
    normal.column2 = normal.column2 + Scale(row.z, row);
    normal.right = normal.right + Scale(b, row);
}

double Determinant(const LinearSystem3& system)
{
    return DeterminantOfColumns(system.column0, system.column1, system.column2);
}

Vec3 CramersRule(const LinearSystem3& system, double determinant)
{
    const auto& [c0, c1, c2, right] = system;
    return {DeterminantOfColumns(right, c1, c2) / determinant,
            DeterminantOfColumns(c0, right, c2) / determinant,
            DeterminantOfColumns(c0, c1, right) / determinant};
}

}  // namespace kine
