// What the second translation unit of the tests sees of KineDll.hpp.
#pragma once

#include "KineDll.hpp"

const kinedll::CodeText* CodesInSecondUnit();

using PosDifWrapper = kinedll::Result<KineFrame> (*)(const KinePose&, const KinePose&,
                                                     kinedll::PosDifFrame) noexcept;
PosDifWrapper WrapperInSecondUnit();
