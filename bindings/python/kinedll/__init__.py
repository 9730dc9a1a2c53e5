"""KineDll for Python: kinematics of industrial robot arms.

    from kinedll import Arm, SixAxisParam, Tool

    with Arm(SixAxisParam(a2=431.8, a3=20.3, d4=431.8, lateral_offset=-150.05)) as arm:
        tool = Tool((0, 0, 100, 0, 0, 0))
        pose = arm.joint_to_wobj_pos([180, 45, 180, 0, -45, 0], tool)
        joints = arm.wobj_pos_to_joint(pose, tool)

Millimetres and degrees throughout. The methods of Arm are the functions of the library, their names in snake_case;
a result code is raised as KineError.
"""

from ._calibration import ToolCalibration, WobjCalibration
from ._codes import ResultCode
from ._loading import find_library
from ._motion import ToolAndWobj
from .arm import Arm
from .errors import KineError, LibraryError
from .modes import AlignMode, ArmType, CrdMode, InchMode
from .parameters import FourAxisParam, KinematicParam, SixAxisParam
from .records import (
    ArmConfig,
    CalibError,
    ExtAxisParam,
    Frame,
    InchDir,
    Joints,
    Load,
    MechUnit,
    Pose,
    Tool,
    Wobj,
)

__version__ = "1.0.0"

__all__ = [
    "AlignMode",
    "Arm",
    "ArmConfig",
    "ArmType",
    "CalibError",
    "CrdMode",
    "ExtAxisParam",
    "FourAxisParam",
    "Frame",
    "InchDir",
    "InchMode",
    "Joints",
    "KineError",
    "KinematicParam",
    "LibraryError",
    "Load",
    "MechUnit",
    "Pose",
    "ResultCode",
    "SixAxisParam",
    "Tool",
    "ToolAndWobj",
    "ToolCalibration",
    "Wobj",
    "WobjCalibration",
    "find_library",
]
