"""The parameters of the arms, with the names of the header in snake_case: lengths in mm, angles in degrees."""

from __future__ import annotations

import ctypes
from ctypes import c_double
from typing import Optional

from ._fields import Doubles, Numbers, Record, record

_SIX_AXIS = (
    "a1 a2 a3 d4 d6 d1 lateral_offset reserved0 alpha1 alpha2 alpha3 alpha4 alpha5 beta2 d3 d5 a4 a5 mount_x mount_y"
)


@record
class SixAxisParam(Record):
    """Parameters of arm type 6 (KineSixAxisParam): lengths in mm, angles in degrees.

    Not given, the twists alpha1 to alpha5 are those of every nominal arm, (90, 0, 90, -90, 90), and d3 is the lateral
    offset, as in every nominal arm. g holds weight coefficients in N mm, k2, k3 and k5 the stiffness of joints 2, 3
    and 5 in N m / rad; 0 switches the deflection of a joint off.
    """

    _fields_ = [
        *((name, c_double) for name in _SIX_AXIS.split()),
        ("reserved1", c_double * 4),
        ("g", c_double * 7),
        ("k2", c_double),
        ("k3", c_double),
        ("k5", c_double),
    ]
    a1: float
    a2: float
    a3: float
    d4: float
    d6: float
    d1: float
    lateral_offset: float
    alpha1: float
    alpha2: float
    alpha3: float
    alpha4: float
    alpha5: float
    beta2: float
    d3: float
    d5: float
    a4: float
    a5: float
    mount_x: float
    mount_y: float
    g: Doubles
    k2: float
    k3: float
    k5: float

    def __init__(
        self,
        *,
        a1: float = 0.0,
        a2: float = 0.0,
        a3: float = 0.0,
        d4: float = 0.0,
        d6: float = 0.0,
        d1: float = 0.0,
        lateral_offset: float = 0.0,
        alpha1: float = 90.0,
        alpha2: float = 0.0,
        alpha3: float = 90.0,
        alpha4: float = -90.0,
        alpha5: float = 90.0,
        beta2: float = 0.0,
        d3: Optional[float] = None,
        d5: float = 0.0,
        a4: float = 0.0,
        a5: float = 0.0,
        mount_x: float = 0.0,
        mount_y: float = 0.0,
        g: Numbers = (),
        k2: float = 0.0,
        k3: float = 0.0,
        k5: float = 0.0,
    ) -> None:
        super().__init__(a1, a2, a3, d4, d6, d1, lateral_offset, 0.0, alpha1, alpha2, alpha3, alpha4, alpha5, beta2)
        self.d3 = lateral_offset if d3 is None else d3
        self.d5, self.a4, self.a5 = d5, a4, a5
        self.mount_x, self.mount_y = mount_x, mount_y
        self.g = g
        self.k2, self.k3, self.k5 = k2, k3, k5


@record
class FourAxisParam(Record):
    """Parameters of arm types 4 and 4110 (KineFourAxisParam): lengths in mm, the lead in mm per turn, tilts in deg."""

    _fields_ = [
        *((name, c_double) for name in ("link1_length", "link2_length", "z_offset", "screw_lead")),
        ("reserved0", c_double * 4),
        *((name, c_double) for name in ("link1_tilt_x", "link2_tilt_x", "link1_tilt_y", "link2_tilt_y")),
    ]
    link1_length: float
    link2_length: float
    z_offset: float
    screw_lead: float
    link1_tilt_x: float
    link2_tilt_x: float
    link1_tilt_y: float
    link2_tilt_y: float

    def __init__(
        self,
        *,
        link1_length: float = 0.0,
        link2_length: float = 0.0,
        z_offset: float = 0.0,
        screw_lead: float = 0.0,
        link1_tilt_x: float = 0.0,
        link2_tilt_x: float = 0.0,
        link1_tilt_y: float = 0.0,
        link2_tilt_y: float = 0.0,
    ) -> None:
        tilts = link1_tilt_x, link2_tilt_x, link1_tilt_y, link2_tilt_y
        super().__init__(link1_length, link2_length, z_offset, screw_lead, (), *tilts)


class KinematicParam(ctypes.Union):
    """The parameters of any arm (KineKinematicParam): the record of the arm type in use."""

    _fields_ = [("six_axis", SixAxisParam), ("four_axis", FourAxisParam)]
    six_axis: SixAxisParam
    four_axis: FourAxisParam
