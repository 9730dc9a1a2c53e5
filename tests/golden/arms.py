"""The arms of the tables, as the doubles of their parameter records."""

FOUR_ARM_TYPES = (4, 4110)


def six_axis(a1, a2, a3, d4, d6, d1, lateral, errors=None, mount=(0, 0), weights=(0,) * 7, stiffness=(0, 0, 0)):
    e = {"alpha": (0, 0, 0, 0, 0), "beta2": 0, "d3": 0, "d5": 0, "a4": 0, "a5": 0}
    e.update(errors or {})
    twists = [t + d for t, d in zip((90.0, 0.0, 90.0, -90.0, 90.0), e["alpha"])]
    return floats([a1, a2, a3, d4, d6, d1, lateral, 0] + twists + [e["beta2"], lateral + e["d3"], e["d5"], e["a4"],
                  e["a5"]] + list(mount) + [0] * 4 + list(weights) + list(stiffness))


def four_axis(l1, l2, z0, lead, tilt1x=0, tilt2x=0, tilt1y=0, tilt2y=0):
    return floats([l1, l2, z0, lead, 0, 0, 0, 0, tilt1x, tilt2x, tilt1y, tilt2y])


def floats(values):
    return [float(v) for v in values]


PUMA = (0, 431.8, 20.3, 431.8, 0, 0, -150.05)
WRIST = (100, 705, 135, 755, 85, 615, 0)
CALIBRATION = {"alpha": (0.03, -0.02, 0.04, -0.05, 0.02), "beta2": 0.03, "d3": 0.35, "d5": -0.2, "a4": 0.15,
               "a5": -0.1}


def example_twists():
    arm = six_axis(100, 500, 50, 400, 80, 300, 0)
    arm[8:13] = [-90.0, 0.0, -90.0, 90.0, -90.0]
    return arm


ARMS = {
    "puma": (6, six_axis(*PUMA)),
    "puma_gravity": (6, six_axis(*PUMA, weights=(37234.7, 1024.2, 248.9, 8743.9, 28.25, 28.25, 0),
                                 stiffness=(3.0e4, 2.0e4, 5.0e3))),
    "wrist": (6, six_axis(*WRIST)),
    "wrist_calibrated": (6, six_axis(*WRIST, errors=CALIBRATION, mount=(2, -3),
                                     weights=(420000, -15000, 60000, 150000, 4000, 3500, 0),
                                     stiffness=(4.0e5, 2.5e5, 4.0e4))),
    # A base that leans far over.
    "wrist_leaning": (6, six_axis(*WRIST, mount=(40, -25), weights=(420000, -15000, 60000, 150000, 4000, 3500, 0),
                                  stiffness=(4.0e5, 2.5e5, 4.0e4))),
    # Round numbers: the payload torques of the stretched-out arm can be checked by hand.
    "gravity_check": (6, six_axis(100, 500, 50, 400, 80, 300, 0, stiffness=(2e5, 1e5, 3e4))),
    "example_twists": (6, example_twists()),
    "scara": (4, four_axis(325, 275, 50, 20)),
    "scara_tilted": (4, four_axis(325, 275, 50, 20, 0.4, -0.3, 0.2, 0.5)),
    "scara_long": (4, four_axis(425, 375, -120, 16)),
    "scara_steep": (4, four_axis(425, 375, 80, 25, -2.5, 3, 1.5, -2)),
}
