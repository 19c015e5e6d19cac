// QelMath: the numerics library of the statistics package.  This header
// gathers the public interface.
#pragma once

#include "qel/qelexport.h"
#include "qel/qelbt.h"
#include "qel/qelexceptions.h"
#include "qel/qelmessaging.h"
#include "qel/qelmsg.h"
#include "qel/qelstrings.h"
#include "qel/checkedcast.h"
#include "qel/elementary.h"
#include "qel/fuzzy.h"
#include "qel/combinatorics.h"
#include "qel/ranks.h"
#include "qel/uniformgenerator.h"
#include "qel/realfunction.h"
#include "qel/rootsandoptima.h"
#include "qel/normal.h"
#include "qel/closedform.h"
#include "qel/kernelbacked.h"
#include "qel/specialroutines.h"
#include "qel/specialfunctions.h"
#include "qel/incompletebeta.h"
#include "qel/qelstreams.h"
#include "qel/matrix.h"
#include "qel/qelmathlinearalgebra.h"
#include "qel/matrixstreams.h"
#include "qel/matrixarithmetic.h"
#include "qel/persistentmatrixarithmetic.h"
#include "qel/matrixfactorisations.h"

#define QELMATH_VERSION_STRING "0.1.0"

QEL_API const char* mGetQelMathVersion();
#include "qel/discrete.h"
#include "qel/pvalues.h"
