#!/usr/bin/env python3
"""Fits the two functions from which environment/physical.cg computes how much a rough mirror reflects.

Usage: tools/lighting/fit_reflectance.py

A surface of microscopic mirrors, with the GGX distribution, Smith's shadowing for both directions and
the reflectance f at normal incidence, reflects f*( E - B ) + B of uniform light. E and B depend on the
cosine c of the angle between normal and eye, and on the roughness, whose square is a. They are integrated
numerically and approximated by polynomials in a and t = a/( a + c ), with the factor ( 1 - c )^5 for B.
The script prints the coefficients as Cg, and the largest errors. Run it manually after changing the model.
"""

from math import cos, pi, sin, sqrt

COSINES = [0.05, 0.075, 0.1, 0.15, 0.2, 0.3, 0.4, 0.5, 0.6, 0.7, 0.8, 0.9, 1.0]
ROUGHNESSES = [0.045, 0.1, 0.15, 0.2, 0.25, 0.3, 0.4, 0.5, 0.6, 0.7, 0.8, 0.9, 1.0]
SIDE = 32  # samples in each of two dimensions
DEGREE = 3
ROUNDS = 8


def integrate(cosine, roughness):
    """Returns (E, B), computed by sampling the visible normals."""
    alpha = roughness * roughness
    eye = (sqrt(1 - cosine * cosine), 0.0, cosine)
    length = sqrt((alpha * eye[0]) ** 2 + eye[2] ** 2)
    vx, vz = alpha * eye[0] / length, eye[2] / length
    whole = fresnel = 0.0
    for i in range(SIDE):
        radius = sqrt((i + 0.5) / SIDE)
        for j in range(SIDE):
            angle = 2 * pi * (j + 0.5 * (i % 2) + 0.25) / SIDE
            p1 = radius * cos(angle)
            p2 = radius * sin(angle)
            mix = 0.5 * (1 + vz)
            p2 = (1 - mix) * sqrt(max(0.0, 1 - p1 * p1)) + mix * p2
            p3 = sqrt(max(0.0, 1 - p1 * p1 - p2 * p2))
            nx, ny, nz = -p2 * vz + p3 * vx, p1, p2 * vx + p3 * vz
            hx, hy, hz = alpha * nx, alpha * ny, max(0.0, nz)
            size = sqrt(hx * hx + hy * hy + hz * hz)
            hx, hz = hx / size, hz / size
            eye_half = eye[0] * hx + eye[2] * hz
            light = 2 * eye_half * hz - eye[2]
            if light <= 0:
                continue
            lambda_light = sqrt(1 + alpha * alpha * (1 / (light * light) - 1))
            lambda_eye = sqrt(1 + alpha * alpha * (1 / (cosine * cosine) - 1))
            part = (1 + lambda_eye) / (lambda_eye + lambda_light)
            whole += part
            fresnel += part * (1 - eye_half) ** 5
    count = SIDE * SIDE
    return whole / count, fresnel / count


def solve(matrix, vector):
    """Solves a system of linear equations by elimination."""
    size = len(vector)
    rows = [row[:] + [value] for row, value in zip(matrix, vector)]
    for i in range(size):
        best = max(range(i, size), key=lambda k: abs(rows[k][i]))
        rows[i], rows[best] = rows[best], rows[i]
        for k in range(size):
            if k != i:
                factor = rows[k][i] / rows[i][i]
                rows[k] = [a - factor * b for a, b in zip(rows[k], rows[i])]
    return [rows[i][size] / rows[i][i] for i in range(size)]


def terms(cosine, roughness):
    a = roughness * roughness
    t = a / (a + cosine)
    return [t**i * a**j for i in range(DEGREE + 1) for j in range(DEGREE + 1)]


def fit(rows, values):
    """Returns coefficients with a small maximum error, and this error.

    Repeats a least-squares fit with weights that follow the errors.
    """
    size = len(rows[0])
    weights = [1.0] * len(rows)
    best, best_error = None, float("inf")
    for _ in range(ROUNDS):
        matrix = [[1e-13 * (i == j) for j in range(size)] for i in range(size)]
        vector = [0.0] * size
        for row, value, weight in zip(rows, values, weights):
            for i in range(size):
                vector[i] += weight * row[i] * value
                for j in range(size):
                    matrix[i][j] += weight * row[i] * row[j]
        coefficients = solve(matrix, vector)
        errors = [
            abs(sum(c * x for c, x in zip(coefficients, row)) - value)
            for row, value in zip(rows, values)
        ]
        worst = max(errors)
        if worst < best_error:
            best, best_error = coefficients, worst
        weights = [w * (0.4 + e / worst) for w, e in zip(weights, errors)]
        weights = [w / max(weights) for w in weights]
    return best, best_error


def as_cg(coefficients):
    """Formats coefficients, whose rows are powers of t and whose columns are powers of a."""
    lines = []
    for i in range(0, len(coefficients), DEGREE + 1):
        numbers = ", ".join(f"{c:.4f}" for c in coefficients[i : i + DEGREE + 1])
        lines.append(f"dot( float4( {numbers} ), a )")
    return "\n\t+ t*( ".join(lines) + " )" * DEGREE


def main():
    points = [(c, r) for c in COSINES for r in ROUGHNESSES]
    integrals = [integrate(*point) for point in points]
    rows = [[x / whole for x in terms(*p)] for p, (whole, _) in zip(points, integrals)]
    coefficients, error = fit(rows, [1.0] * len(rows))
    print(f"// E, with an error of at most {100 * error:.2f} %")
    print(as_cg(coefficients))
    rows = [[(1 - p[0]) ** 5 * x for x in terms(*p)] for p in points]
    coefficients, error = fit(rows, [grazing for _, grazing in integrals])
    print(f"// B/( 1 - c )^5, with an error of B of at most {error:.4f}")
    print(as_cg(coefficients))


if __name__ == "__main__":
    main()
