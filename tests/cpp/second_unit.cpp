// A second translation unit that includes KineDll.hpp, and the headers of the library's own sources beside
// it: their namespace has modes and records of the same names.
#include "cpp/second_unit.h"

#include "motion/align.h"
#include "motion/inch.h"

static_assert(static_cast<int>(kine::InchMode::kTool) == static_cast<int>(kinedll::InchMode::kTool));
static_assert(static_cast<int>(kine::AlignMode::kWobj) == static_cast<int>(kinedll::AlignMode::kWobj));

const kinedll::CodeText* CodesInSecondUnit() { return kinedll::kCodeTexts; }
PosDifWrapper WrapperInSecondUnit() { return &kinedll::CalcPosDif; }
