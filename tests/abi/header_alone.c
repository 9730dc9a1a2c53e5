/* The header needs nothing before it. */
#include "KineDll.h"
