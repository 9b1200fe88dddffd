// The problem that kelmar-host opens when no problem file is given.
#pragma once

#include "ProblemFile.h"

namespace kelmarhost {

// Choosing a site for a regional warehouse: six candidate sites judged on
// five attributes, with earlier value functions on every attribute.
Problem sampleProblem();

}  // namespace kelmarhost
